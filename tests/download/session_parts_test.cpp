#include "download/session_parts.h"

#include <gtest/gtest.h>

#include <limits>

#include "base/error.h"
#include "support/fixed_clock.h"

namespace {

constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();

TEST(ManualRange, TakesWhatIsANumberUpToAHundredThousand) {
  const struct {
    std::string begin, end;
    std::optional<NumberRange> want;
  } cases[] = {
      {"5", "5", NumberRange{5, 5}},
      {"6", "5", NumberRange{6, 5}},
      {"1", "100000", NumberRange{1, 100000}},
      {"100001", "1", {}},
      {"1", "100001", {}},
      {"1", "100000.5", {}},
      {"0", "5", {}},
      {"5", "", {}},
      {"x", "5", {}},
      {" 1 2 ", "15abc", NumberRange{12, 15}},
      {"-3", "5", NumberRange{-3, 5}},  // only 0 and too large ones are refused
      {"1.9", "2.9", NumberRange{1, 2}},
  };
  for (const auto& c : cases) {
    const auto range = ManualRange({.automatic = false, .begin = c.begin, .end = c.end});
    ASSERT_EQ(range.has_value(), c.want.has_value()) << c.begin << " to " << c.end;
    if (!range) continue;
    EXPECT_EQ(range->first, c.want->first) << c.begin;
    EXPECT_EQ(range->last, c.want->last) << c.end;
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
  const struct {
    CivilTime time;
    std::string_view want;
  } cases[] = {
      {{2002, 3, 8, 9, 5, 7}, "\r\n9:05:07 - x"},
      {{2002, 3, 8, 23, 59, 59}, "\r\n23:59:59 - x"},
      {{2002, 3, 8, 0, 0, 0}, "\r\n0:00:00 - x"},
  };
  for (const auto& c : cases) EXPECT_EQ(LogLine(FixedClock(ole_date::FromCivil(c.time)), "x"), c.want);
}

}  // namespace
