#pragma once

#include "base/clock.h"

/// A clock that stands still.
class FixedClock : public Clock {
 public:
  explicit FixedClock(OleDate now) : now_(now) {}
  FixedClock(int year, int month, int day) : now_(ole_date::FromCivil({.year = year, .month = month, .day = day})) {}
  OleDate Now() const override { return now_; }

 private:
  OleDate now_;
};
