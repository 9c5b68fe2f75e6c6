#include "cli/chosen_clock.h"

#include "base/cat.h"
#include "base/cp1251.h"
#include "base/ru_literal.h"
#include "cli/command.h"
#include "text/dates.h"

namespace cli {

ChosenClock::ChosenClock(const std::optional<std::string>& now, const Clock& real) : real_(real) {
  if (!now) return;
  moment_ = text::ParseDate(cp1251::FromUtf8(*now), real);
  if (!moment_) throw UsageError(Cat("Не дата: "_ru, cp1251::FromUtf8(*now)));
}

}  // namespace cli
