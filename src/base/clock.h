#pragma once

#include "base/ole_date.h"

/// What time it is, for everything that depends on today. Tests stop it.
class Clock {
 public:
  virtual ~Clock() = default;
  /// Local wall-clock time in whole seconds.
  virtual OleDate Now() const = 0;
};

class SystemClock : public Clock {
 public:
  OleDate Now() const override;
};
