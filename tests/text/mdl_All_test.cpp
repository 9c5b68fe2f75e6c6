#include "text/mdl_All.h"

#include <gtest/gtest.h>

#include "base/cp1251.h"
#include "base/ru_literal.h"
#include "text/strings.h"

namespace {

TEST(MonthNumber, TheFirstNameOfTheListDecides) {
  const struct {
    std::string_view want, dates;                         // with "|" between them
  } cases[] = {{"01", "|2001-13-01|JAN|янв|Sep Янв"_ru},  // Russian names come first
               {"02", "ФЕВРАЛЯ|feb"_ru},
               {"03", "5 Марта|March"_ru},
               {"04", "апр|april"_ru},
               // Part of another word counts, earlier in the list.
               {"05", "12 мая 2001|May|Mail, 5 Oct|сентября, программа"_ru},
               {"06", "июня|june"_ru},
               {"07", "июля|JULY"_ru},
               {"08", "авг|aug"_ru},
               {"09", "сент.|sept"_ru},
               {"10", "окт|oct"_ru},
               {"11", "ноября|nov"_ru},
               {"12", "дек|03 Dec 2001 12:00"_ru}};
  for (const auto& c : cases)
    for (const std::string_view date : text::Split(c.dates, "|"))
      EXPECT_EQ(mdl_All::MonthNumber(date), c.want) << cp1251::ToUtf8(date);
}

TEST(TextBetween, TrimsOnlyWhenTheEndIsThere) {
  const struct {
    std::string_view text, start, end, want;
  } cases[] = {{"", "(", ")", ""},    {"x)a( b )c)", "(", ")", "b"}, {"База ( kdv.mdb )"_ru, "(", ")", "kdv.mdb"},
               {"a)b", "(", ")", ""}, {"a()", "(", ")", ""},         {"База ( kdv.mdb "_ru, "(", ")", " kdv.mdb "},
               {"a(", "(", ")", ""},  {"a(\t)", "(", ")", "\t"},     {"<B> x </b>", "<b>", "</B>", "x"}};
  for (const auto& c : cases) EXPECT_EQ(mdl_All::TextBetween(c.text, c.start, c.end), c.want) << cp1251::ToUtf8(c.text);
}

}  // namespace
