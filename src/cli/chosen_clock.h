#pragma once

#include <optional>
#include <string>

#include "base/clock.h"

namespace cli {

/// The moment that the option --now names, else the real one.
class ChosenClock : public Clock {
 public:
  /// @param real  outlives this object. @throws UsageError when `now` is no date
  ChosenClock(const std::optional<std::string>& now, const Clock& real);
  OleDate Now() const override { return moment_ ? *moment_ : real_.Now(); }

 private:
  const Clock& real_;
  std::optional<OleDate> moment_;
};

}  // namespace cli
