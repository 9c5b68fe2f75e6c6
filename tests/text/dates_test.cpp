#include "text/dates.h"

#include <gtest/gtest.h>

#include "base/cp1251.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "support/error_of.h"
#include "support/fixed_clock.h"
#include "text/strings.h"

namespace {

const FixedClock kClock(2002, 6, 15);
constexpr CivilTime kJuly{2001, 7, 5, 9, 5, 7};

OleDate Moment(const CivilTime& time) { return ole_date::FromCivil(time); }

// Only the first "m" behind an hour means minutes.
TEST(FormatDate, FollowsThePatternInRussian) {
  const struct {
    std::string_view pattern, want;
  } cases[] = {{"dd.mm.yy", "05.07.01"},     {"d-m-yyyy h:m:s", "5-7-2001 9:5:7"},
               {"dd/mm/yy", "05.07.01"},     {"DDDD, DD mmmm YYyy", "четверг, 05 Июль 2001"_ru},
               {"mmmm", "Июль"_ru},          {"YYYY-MM-DD HH:MM:SS", "2001-07-05 09:05:07"},
               {"yyyy-mm-dd", "2001-07-05"}, {"hh:mm mm ss:mm", "09:05 07 07:07"},
               {"hh mm", "09 05"},           {"№ г. (\u00A0)"_ru, "№ г. (\u00A0)"_ru}};
  for (const auto& c : cases) EXPECT_EQ(text::FormatDate(Moment(kJuly), c.pattern), c.want) << c.pattern;
  EXPECT_EQ(text::FormatDate(Moment({2001, 9, 1}), "mmmm dddd"), "Сентябрь суббота"_ru);
  EXPECT_EQ(text::FormatDate(Moment({123, 1, 2}), "yyyy yy"), "0123 23");
  EXPECT_EQ(text::FormatDate(OleDate{}, "dd/mm/yy"), "30.12.99");
  EXPECT_EQ(text::FormatDate(OleDate{}, ""), "");
  EXPECT_EQ(text::FormatDate(std::nullopt, "dd/mm/yy"), "");
}

TEST(DateText, LeavesOutMidnightAndTheZeroDay) {
  EXPECT_EQ(text::DateText(Moment(kJuly)), "05.07.2001 9:05:07");
  EXPECT_EQ(text::DateText(Moment({2001, 7, 5})), "05.07.2001");
  EXPECT_EQ(text::DateText({9.0 / 24}), "9:00:00");
  EXPECT_EQ(text::DateText({0}), "0:00:00");
  EXPECT_EQ(text::DateText({-1.25}), "29.12.1899 6:00:00");
}

TEST(ParseDate, TakesTheFirstOrderThatIsADate) {
  const struct {
    CivilTime want;
    std::string_view texts;  // with "|" between them
  } cases[] = {{{2002, 5, 1}, "1-05-02"},     {{2001, 5, 12}, "12-05-2001|12.05.2001|12/5/2001|12 05 2001"},
               {{1930, 2, 1}, "30-02-01"},    {{2001, 5, 12}, " 12 - 05 , 2001 |12 мая 2001|12МАЯ2001"_ru},
               {{2029, 2, 1}, "29-02-01"},    {{2002, 3, 15}, "2002-03-15|пятница, 15 Март 2002|Пт 15 мар 2002"_ru},
               {{2000, 2, 29}, "29-02-00"},   {{2002, 3, 5}, "2002-03-05|5 мар 02|5-марта-02|Март 5, 2002"_ru},
               {{2004, 2, 29}, "29-02-2004"}, {{2001, 5, 13}, "05-13-2001|2001-13-05"},
               {{2029, 1, 1}, "1-1-29"},      {{1931, 4, 1}, "31-04-01|31 апреля"_ru},
               {{1930, 1, 1}, "1-1-30"},      {{2002, 5, 12}, "12-05|12 мая|мая 12"_ru},
               {{100, 1, 1}, "1-1-100"},      {{2001, 12, 1}, "12-2001|2001-12"},
               {{2002, 5, 13}, "05-13"},      {{2001, 5, 12, 9, 5, 0}, "12-05-2001 9:05|9:05 12 мая 2001"_ru},
               {{2001, 5, 1}, "май 2001"_ru}, {{2001, 5, 12, 23, 59, 59}, "23:59:59 12-05-2001"},
               {{1899, 12, 30}, "0:00"},      {{1899, 12, 30, 9, 5, 7}, "9:05:07"}};
  for (const auto& c : cases)
    for (const std::string_view text : text::Split(c.texts, "|")) {
      const auto date = text::ParseDate(text, kClock);
      ASSERT_TRUE(date) << cp1251::ToUtf8(text);
      EXPECT_EQ(ole_date::ToCivil(*date), c.want) << cp1251::ToUtf8(text);
    }
}

TEST(ParseDate, RefusesWhatIsNoDate) {
  constexpr std::string_view kNoDates =
      "|   |,|13|вчера|мая|пятница|12 мая 2001 г.|12 май 5 мар 2001|12 майка 2001|12 May 2001|"_ru
      "31-04-2001|29-02-2001|13-13-2001|0-05-2001|12-0-2001|13-13|29-02-10000|1-1-99999999999999999999|"_ru
      "--|12-05-|12-|-12-05-2001|12--05|12-05-2001-1|1 2 3 4|12 2001 мая|12\t05\t2001|12-05-2001\0|12\u00A005|"_ru
      "24:00|9:60|9:05:60|9:|:9|9:05:|9:05:07:01|9:05 9:05|13 9:05|12-05 9:05 2001|12-9:05|12-05-2001 9:05 PM"_ru;
  for (const std::string_view text : text::Split(kNoDates, "|"))
    EXPECT_FALSE(text::IsDate(text, kClock)) << cp1251::ToUtf8(text);
}

TEST(ParseDate, ReadsBackEveryDayAsTheProgramWritesIt) {
  for (long day = ole_date::DayNumber(1000, 1, 1); day < 2'958'466; day += 97) {
    const OleDate date{static_cast<double>(day)}, noon{date.days + (day < 0 ? -0.5 : 0.5)};
    EXPECT_EQ(text::ParseDate(text::FormatDate(date, "yyyy-mm-dd"), kClock), date);
    EXPECT_EQ(text::ParseDate(text::DateText(noon), kClock), noon);
  }
}

TEST(DateFromParts, MonthsAndDaysRollOver) {
  const struct {
    int year, month, day;
    CivilTime want;
  } cases[] = {{2002, 4, 31, {2002, 5, 1}},     {2002, 13, 1, {2003, 1, 1}},  {2002, 3, 0, {2002, 2, 28}},
               {2002, 0, 1, {2001, 12, 1}},     {2002, -11, 1, {2001, 1, 1}}, {2003, 2, 29, {2003, 3, 1}},
               {0, 1, 1, {2000, 1, 1}},         {29, 1, 1, {2029, 1, 1}},     {30, 1, 1, {1930, 1, 1}},
               {99, 12, 31, {1999, 12, 31}},    {100, 1, 1, {100, 1, 1}},     {9999, 12, 31, {9999, 12, 31}},
               {2002, 1, 32767, {2091, 9, 17}}, {2002, 1, -1, {2001, 12, 30}}};
  for (const auto& c : cases)
    EXPECT_EQ(ole_date::ToCivil(text::DateFromParts(c.year, c.month, c.day)), c.want) << c.year << " " << c.month;
}

TEST(DateFromParts, OutOfRangeIsAnError) {
  constexpr int kBad = error_number::kBadArgument, kOverflow = error_number::kOverflow;
  const struct {
    int year, month, day, error;
  } cases[] = {
      {-1, 1, 1, kBad},         {100, 0, 1, kBad},           {100, 1, 0, kBad},           {100, -32768, 1, kBad},
      {9999, 12, 32, kBad},     {9999, 13, 1, kBad},         {32767, 32767, 32767, kBad}, {10'000, -32768, -32768, 0},
      {32768, 1, 1, kOverflow}, {2001, 1, 40'000, kOverflow}};
  for (const auto& c : cases)
    EXPECT_EQ(ErrorOf([&] { text::DateFromParts(c.year, c.month, c.day); }), c.error) << c.year << " " << c.month;
}

}  // namespace
