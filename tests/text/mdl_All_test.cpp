#include "text/mdl_All.h"

#include <gtest/gtest.h>

#include "base/cp1251.h"
#include "base/ru_literal.h"

namespace {

TEST(MonthNumber, TheFirstNameOfTheListDecides) {
  const struct {
    std::string_view date, want;
  } cases[] = {
      {"", "01"},
      {"2001-13-01", "01"},
      {"12 мая 2001"_ru, "05"},
      {"5 Марта"_ru, "03"},
      {"03 Dec 2001 12:00", "12"},
      {"JAN", "01"},
      {"янв"_ru, "01"},
      {"Sep Янв"_ru, "01"},   // Russian names come first
      {"Mail, 5 Oct", "05"},  // part of another word counts, earlier in the list
      {"сентября, программа"_ru, "05"},
      {"March", "03"},
      {"May", "05"},
      {"ФЕВРАЛЯ"_ru, "02"},
      {"апр"_ru, "04"},
      {"июня"_ru, "06"},
      {"июля"_ru, "07"},
      {"авг"_ru, "08"},
      {"сент."_ru, "09"},
      {"окт"_ru, "10"},
      {"ноября"_ru, "11"},
      {"дек"_ru, "12"},
      {"feb", "02"},
      {"april", "04"},
      {"june", "06"},
      {"JULY", "07"},
      {"aug", "08"},
      {"sept", "09"},
      {"oct", "10"},
      {"nov", "11"},
  };
  for (const auto& c : cases) EXPECT_EQ(mdl_All::MonthNumber(c.date), c.want) << cp1251::ToUtf8(c.date);
}

TEST(TextBetween, TrimsOnlyWhenTheEndIsThere) {
  const struct {
    std::string_view text, start, end, want;
  } cases[] = {
      {"", "(", ")", ""},
      {"База ( kdv.mdb )"_ru, "(", ")", "kdv.mdb"},
      {"База ( kdv.mdb "_ru, "(", ")", " kdv.mdb "},
      {"a)b", "(", ")", ""},
      {"x)a( b )c)", "(", ")", "b"},
      {"<B> x </b>", "<b>", "</B>", "x"},
      {"a(\t)", "(", ")", "\t"},
      {"a(", "(", ")", ""},
      {"a()", "(", ")", ""},
  };
  for (const auto& c : cases) EXPECT_EQ(mdl_All::TextBetween(c.text, c.start, c.end), c.want) << cp1251::ToUtf8(c.text);
}

}  // namespace
