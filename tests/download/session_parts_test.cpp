#include "download/session_parts.h"

#include <gtest/gtest.h>

#include <limits>

#include "base/cat.h"
#include "base/error.h"
#include "support/fixed_clock.h"

namespace {

constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();

TEST(ManualRange, TakesWhatIsANumberUpToAHundredThousand) {
  const struct {
    std::string begin, end, want;
  } cases[] = {
      {"5", "5", "5 to 5"},
      {"6", "5", "6 to 5"},
      {"1", "100000", "1 to 100000"},
      {"100001", "1", "none"},
      {"1", "100001", "none"},
      {"1", "100000.5", "none"},
      {"0", "5", "none"},
      {"5", "", "none"},
      {"x", "5", "none"},
      {" 1 2 ", "15abc", "12 to 15"},
      {"-3", "5", "-3 to 5"},  // only 0 and too large ones are refused
      {"1.9", "2.9", "1 to 2"},
  };
  for (const auto& c : cases) {
    const auto range = ManualRange({.automatic = false, .begin = c.begin, .end = c.end});
    EXPECT_EQ(range ? Cat(range->first, " to ", range->last) : "none", c.want) << c.begin << " to " << c.end;
  }
  EXPECT_THROW(ManualRange({.automatic = false, .begin = "-3000000000", .end = "5"}), Error);
}

TEST(Percent, IsTheShareBeforeTheNumber) {
  const struct {
    std::int32_t number;
    NumberRange range;
    int want;
  } cases[] = {
      {5, {5, 5}, 0}, {10, {1, 10}, 90}, {2, {1, 3}, 33}, {0, {-kMost, kMost}, 49}, {kMost, {-kMost, kMost}, 99},
  };
  for (const auto& c : cases) EXPECT_EQ(Percent(c.number, c.range), c.want) << c.number;
}

TEST(Counters, AFullOneIsAnError) {
  std::int32_t counter = kMost - 1;
  CountOne(counter);
  EXPECT_THROW(CountOne(counter), Error);
  EXPECT_EQ(counter, kMost);
}

TEST(LogLine, ShowsTheTimeOfDayWithoutTheDay) {
  const auto at = [](CivilTime time) { return LogLine(FixedClock(ole_date::FromCivil(time)), "x"); };
  EXPECT_EQ(at({2002, 3, 8, 9, 5, 7}), "\r\n9:05:07 - x");
  EXPECT_EQ(at({2002, 3, 8, 0, 0, 0}), "\r\n0:00:00 - x");
}

}  // namespace
