#include "text/dates.h"

#include <gtest/gtest.h>

#include "base/cp1251.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "support/fixed_clock.h"

namespace {

const FixedClock kClock(2002, 6, 15);

OleDate Moment(const CivilTime& time) { return ole_date::FromCivil(time); }

TEST(FormatDate, FollowsThePatternInRussian) {
  const OleDate july = Moment({2001, 7, 5, 9, 5, 7}), zero{};
  const struct {
    OleDate date;
    std::string_view pattern, want;
  } cases[] = {
      {july, "", ""},
      {july, "dd.mm.yy", "05.07.01"},
      {july, "dd/mm/yy", "05.07.01"},
      {zero, "dd/mm/yy", "30.12.99"},
      {july, "d-m-yyyy", "5-7-2001"},
      {july, "DDDD, DD mmmm YYyy", "четверг, 05 Июль 2001"_ru},
      {july, "mmmm", "Июль"_ru},
      {july, "yyyy-mm-dd", "2001-07-05"},
      {july, "YYYY-MM-DD HH:MM:SS", "2001-07-05 09:05:07"},
      {july, "h:m:s", "9:5:7"},
      {july, "hh:mm mm", "09:05 07"},  // only the first "m" behind an hour means minutes
      {july, "ss:mm", "07:07"},
      {july, "hh mm", "09 05"},
      {Moment({2001, 9, 1, 0, 0, 0}), "mmmm dddd", "Сентябрь суббота"_ru},
      {Moment({123, 1, 2, 0, 0, 0}), "yyyy yy", "0123 23"},
      {july, "№ г. (\u00A0)"_ru, "№ г. (\u00A0)"_ru},
  };
  for (const auto& c : cases) EXPECT_EQ(text::FormatDate(c.date, c.pattern), c.want) << c.pattern;
  EXPECT_EQ(text::FormatDate(std::nullopt, "dd/mm/yy"), "");
}

TEST(DateText, LeavesOutMidnightAndTheZeroDay) {
  EXPECT_EQ(text::DateText(Moment({2001, 7, 5, 9, 5, 7})), "05.07.2001 9:05:07");
  EXPECT_EQ(text::DateText(Moment({2001, 7, 5, 0, 0, 0})), "05.07.2001");
  EXPECT_EQ(text::DateText({9.0 / 24}), "9:00:00");
  EXPECT_EQ(text::DateText({0}), "0:00:00");
  EXPECT_EQ(text::DateText({-1.25}), "29.12.1899 6:00:00");
}

TEST(ParseDate, TakesTheFirstOrderThatIsADate) {
  const struct {
    std::string_view text;
    CivilTime want;
  } cases[] = {
      {"12-05-2001", {2001, 5, 12}},
      {"1-05-02", {2002, 5, 1}},
      {"12.05.2001", {2001, 5, 12}},
      {"12/5/2001", {2001, 5, 12}},
      {"12 05 2001", {2001, 5, 12}},
      {" 12 - 05 , 2001 ", {2001, 5, 12}},
      {"2002-03-15", {2002, 3, 15}},
      {"2002-03-05", {2002, 3, 5}},
      {"05-13-2001", {2001, 5, 13}},
      {"2001-13-05", {2001, 5, 13}},
      {"31-04-01", {1931, 4, 1}},
      {"30-02-01", {1930, 2, 1}},
      {"29-02-01", {2029, 2, 1}},
      {"29-02-00", {2000, 2, 29}},
      {"29-02-2004", {2004, 2, 29}},
      {"1-1-29", {2029, 1, 1}},
      {"1-1-30", {1930, 1, 1}},
      {"1-1-100", {100, 1, 1}},
      {"12 мая 2001"_ru, {2001, 5, 12}},
      {"12МАЯ2001"_ru, {2001, 5, 12}},
      {"5 мар 02"_ru, {2002, 3, 5}},
      {"5-марта-02"_ru, {2002, 3, 5}},
      {"Март 5, 2002"_ru, {2002, 3, 5}},
      {"пятница, 15 Март 2002"_ru, {2002, 3, 15}},
      {"Пт 15 мар 2002"_ru, {2002, 3, 15}},
      {"12-05", {2002, 5, 12}},
      {"05-13", {2002, 5, 13}},
      {"12 мая"_ru, {2002, 5, 12}},
      {"мая 12"_ru, {2002, 5, 12}},
      {"12-2001", {2001, 12, 1}},
      {"2001-12", {2001, 12, 1}},
      {"май 2001"_ru, {2001, 5, 1}},
      {"31 апреля"_ru, {1931, 4, 1}},
      {"12-05-2001 9:05", {2001, 5, 12, 9, 5, 0}},
      {"23:59:59 12-05-2001", {2001, 5, 12, 23, 59, 59}},
      {"9:05 12 мая 2001"_ru, {2001, 5, 12, 9, 5, 0}},
      {"0:00", {1899, 12, 30}},
      {"9:05:07", {1899, 12, 30, 9, 5, 7}},
  };
  for (const auto& c : cases) {
    const auto date = text::ParseDate(c.text, kClock);
    ASSERT_TRUE(date) << cp1251::ToUtf8(c.text);
    EXPECT_EQ(ole_date::ToCivil(*date), c.want) << cp1251::ToUtf8(c.text);
  }
}

TEST(ParseDate, RefusesWhatIsNoDate) {
  for (const std::string_view text : {""_ru,
                                      "   "_ru,
                                      ","_ru,
                                      "13"_ru,
                                      "вчера"_ru,
                                      "мая"_ru,
                                      "пятница"_ru,
                                      "12 мая 2001 г."_ru,
                                      "12 май 5 мар 2001"_ru,
                                      "12 майка 2001"_ru,
                                      "12 May 2001"_ru,
                                      "31-04-2001"_ru,
                                      "29-02-2001"_ru,
                                      "13-13-2001"_ru,
                                      "0-05-2001"_ru,
                                      "12-0-2001"_ru,
                                      "13-13"_ru,
                                      "29-02-10000"_ru,
                                      "1-1-99999999999999999999"_ru,
                                      "--"_ru,
                                      "12-05-"_ru,
                                      "12-"_ru,
                                      "-12-05-2001"_ru,
                                      "12--05"_ru,
                                      "12-05-2001-1"_ru,
                                      "1 2 3 4"_ru,
                                      "24:00"_ru,
                                      "9:60"_ru,
                                      "9:05:60"_ru,
                                      "9:"_ru,
                                      ":9"_ru,
                                      "9:05:"_ru,
                                      "9:05:07:01"_ru,
                                      "9:05 9:05"_ru,
                                      "13 9:05"_ru,
                                      "12-05 9:05 2001"_ru,
                                      "12-9:05"_ru,
                                      "12 2001 мая"_ru,
                                      "12\t05\t2001"_ru,
                                      "12-05-2001\0"_ru,
                                      "12\u00A005"_ru,
                                      "12-05-2001 9:05 PM"_ru})
    EXPECT_FALSE(text::IsDate(text, kClock)) << cp1251::ToUtf8(text);
}

TEST(ParseDate, ReadsBackEveryDayAsTheProgramWritesIt) {
  for (long day = -657'434; day < 2'958'466; day += 97) {
    const OleDate date{static_cast<double>(day)};
    if (ole_date::ToCivil(date).year >= 1000) {
      EXPECT_EQ(text::ParseDate(text::FormatDate(date, "yyyy-mm-dd"), kClock), date);
      EXPECT_EQ(text::ParseDate(text::DateText({date.days + (day < 0 ? -0.5 : 0.5)}), kClock)->days,
                date.days + (day < 0 ? -0.5 : 0.5));
    }
  }
}

TEST(DateFromParts, MonthsAndDaysRollOver) {
  const struct {
    int year, month, day;
    CivilTime want;
  } cases[] = {
      {2002, 4, 31, {2002, 5, 1}},     {2002, 13, 1, {2003, 1, 1}},   {2002, 3, 0, {2002, 2, 28}},
      {2002, 0, 1, {2001, 12, 1}},     {2002, -11, 1, {2001, 1, 1}},  {2003, 2, 29, {2003, 3, 1}},
      {0, 1, 1, {2000, 1, 1}},         {29, 1, 1, {2029, 1, 1}},      {30, 1, 1, {1930, 1, 1}},
      {99, 12, 31, {1999, 12, 31}},    {100, 1, 1, {100, 1, 1}},      {9999, 12, 31, {9999, 12, 31}},
      {2002, 1, 32767, {2091, 9, 17}}, {2002, 1, -1, {2001, 12, 30}},
  };
  for (const auto& c : cases)
    EXPECT_EQ(ole_date::ToCivil(text::DateFromParts(c.year, c.month, c.day)), c.want) << c.year << " " << c.month;
}

TEST(DateFromParts, OutOfRangeIsAnError) {
  const struct {
    int year, month, day, error;
  } cases[] = {
      {-1, 1, 1, error_number::kBadArgument},
      {100, 0, 1, error_number::kBadArgument},
      {100, 1, 0, error_number::kBadArgument},
      {100, -32768, 1, error_number::kBadArgument},
      {9999, 12, 32, error_number::kBadArgument},
      {9999, 13, 1, error_number::kBadArgument},
      {32767, 32767, 32767, error_number::kBadArgument},
      {10'000, -32768, -32768, 0},
      {32768, 1, 1, error_number::kOverflow},
      {2001, 1, 40'000, error_number::kOverflow},
  };
  for (const auto& c : cases) {
    int number = 0;
    try {
      text::DateFromParts(c.year, c.month, c.day);
    } catch (const Error& error) {
      number = error.number();
    }
    EXPECT_EQ(number, c.error) << c.year << " " << c.month << " " << c.day;
  }
}

}  // namespace
