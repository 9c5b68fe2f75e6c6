#include "base/ole_date.h"

#include <gtest/gtest.h>

#include <cmath>

#include "base/error.h"

namespace {

constexpr double kSecond = 1.0 / 86'400;

// The time counts forward before the zero day too.
TEST(OleDate, KnownDays) {
  const struct {
    CivilTime time;
    double days;
  } cases[] = {{{1899, 12, 30, 0, 0, 0}, 0},     {{1899, 12, 29, 6, 0, 0}, -1.25},
               {{1899, 12, 30, 6, 0, 0}, 0.25},  {{2002, 2, 22, 13, 5, 0}, 37309 + 47'100 * kSecond},
               {{1899, 12, 31, 18, 0, 0}, 1.75}, {{2000, 2, 29, 23, 59, 59}, 36585 + 86'399 * kSecond},
               {{1899, 12, 29, 0, 0, 0}, -1},    {{100, 1, 1, 0, 0, 0}, -657'434},
               {{2001, 5, 12, 0, 0, 0}, 37023},  {{9999, 12, 31, 23, 59, 59}, 2'958'465 + 86'399 * kSecond},
               {{2002, 3, 15, 0, 0, 0}, 37330}};
  for (const auto& c : cases) {
    EXPECT_DOUBLE_EQ(ole_date::FromCivil(c.time).days, c.days);
    EXPECT_EQ(ole_date::ToCivil({c.days}), c.time) << c.days;
  }
}

TEST(OleDate, EverySecondOfADayReadsBack) {
  for (const double day : {37'330.0, -2.0, 0.0})
    for (int second = 0; second < 86'400; ++second) {
      const CivilTime time = ole_date::ToCivil({day < 0 ? day - second * kSecond : day + second * kSecond});
      ASSERT_EQ((time.hour * 60 + time.minute) * 60 + time.second, second) << day;
    }
}

TEST(OleDate, RoundsToTheNearestSecondAndIntoTheNextDay) {
  EXPECT_EQ(ole_date::ToCivil({37'330 + 0.4 * kSecond}), (CivilTime{2002, 3, 15}));
  EXPECT_EQ(ole_date::ToCivil({37'330 + 0.6 * kSecond}), (CivilTime{2002, 3, 15, 0, 0, 1}));
  EXPECT_EQ(ole_date::ToCivil({37'331 - 0.4 * kSecond}), (CivilTime{2002, 3, 16}));
  EXPECT_EQ(ole_date::ToCivil({-1 - (1 - 0.4 * kSecond)}), (CivilTime{1899, 12, 30}));
}

TEST(OleDate, WhatIsNoMomentIsRefused) {
  const CivilTime bad[] = {{2001, 2, 29}, {2001, 4, 31},          {1900, 2, 29}, {10'000, 1, 1},
                           {2001, 0, 1},  {2001, 1, 1, 24, 0, 0}, {2001, 13, 1}, {2001, 1, 1, 0, 60, 0},
                           {2001, 4, 0},  {2001, 1, 1, 0, 0, 60}, {99, 12, 31},  {2001, 1, 1, -1, 0, 0}};
  for (const CivilTime& time : bad) EXPECT_THROW(ole_date::FromCivil(time), ConversionError);
  for (const double days : {-657'435.0, 2'958'466.0, 1e300, -1e300, std::nan("")}) {
    EXPECT_FALSE(ole_date::InRange({days}));
    EXPECT_THROW(ole_date::ToCivil({days}), ConversionError) << days;
  }
  EXPECT_TRUE(ole_date::InRange({-657'434.75}));  // 18:00 on the first day
}

TEST(OleDate, WeekdaysCountFromSunday) {
  EXPECT_EQ(ole_date::Weekday({0}), 7);  // 30 December 1899 was a Saturday
  EXPECT_EQ(ole_date::Weekday({1}), 1);
  EXPECT_EQ(ole_date::Weekday({-1.25}), 6);
  EXPECT_EQ(ole_date::Weekday({37'330.9}), 6);  // Friday 15 March 2002
}

}  // namespace
