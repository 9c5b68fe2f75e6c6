#include "download_configured/mdl_PTRV.h"

#include <gtest/gtest.h>

#include "base/cat.h"
#include "base/cp1251.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "support/fixed_clock.h"

namespace {

using namespace mdl_PTRV;

const FixedClock kClock(2002, 6, 15);

struct Case {
  std::string_view page, want;
};

// What a field is read as; "error 9" when that fails.
std::string Field(std::string_view page, std::string_view field) {
  try {
    return ParsePtrvField(page, field, kClock);
  } catch (const Error& error) {
    return Cat("error ", error.number());
  }
}

template <std::size_t N>
void ExpectField(std::string_view field, const Case (&cases)[N]) {
  for (const auto& c : cases) EXPECT_EQ(Field(c.page, field), c.want) << cp1251::ToUtf8(c.page);
}

TEST(Ptrv, SubjectIsTheDecodedTitle) {
  ExpectField("Тема"_ru,
              {{"", ""}, {"<TITLE> a&nbsp;&NBSP;b &amp;lt; </title>", " ab &lt; "}, {"<title>&amp;nbsp;", "&nbsp;"}});
}

TEST(Ptrv, AuthorStandsBehindTheLastEqualsSign) {
  ExpectField("Автор"_ru, {{"<input name=previousname value=\"Вася Пупкин\">"_ru, "Вася Пупкин"_ru},
                           {"<input name=\"PreviousName\" value=\"a=b\">", "b"},
                           {"<input name=previousname value=\"\">", ""},
                           {"<input name=previousname>", "error 9"},
                           {"<html>", "error 9"}});
}

TEST(Ptrv, EmailIsTheFirstLinkOfTheDivision) {
  ExpectField("АвторMail"_ru,
              {{"<html>", ""},
               {"<DIV class=message>no link</div>", ""},
               {"<div CLASS=message><A href=\"mailto:a@b.ru\">A</A> x", "a@b.ru"},
               {"<DIV class=message><A href=\"MAILTO:a@b.ru\">A</A>", ""},
               {"<DIV class=message><A href=\"user?mail=mailto:a@b.ru\">A</A>", "a@b.ru"},
               {"<DIV class=message><A href=\"x mailto:a\">A</A>", "o:a"},  // seven characters go, wherever it stands
               {"<DIV class=message><A href=\"mailto:a@b.ru\">A</a>", ""},  // links end with a capital letter here
               {"<DIV class=message><A href=\"http://x\">A</A>", ""},
               {"<DIV class=message><b>A</A>", "error 9"}});
}

TEST(Ptrv, ReplyToIsTheLastLinkOfTheDivision) {
  ExpectField("Вответ"_ru,
              {{"<html>", "0"},
               {"<DIV class=message>no link</div>", "0"},
               {"<DIV class=message><A href=\"mailto:a@b.ru\">A</A> x</DIV>", "0"},
               {"<DIV class=message><A href=\"mailto:a\">A</A><A href=\"x?msg=123\">B</A> x</DIV>", "123"},
               {"<DIV class=message><A href=\"a=1\">A</A><A href=\"b=2\">B</A><A href=\"c=3\">C</A></DIV>", "3"},
               {"<DIV class=message><A href=\"a=1\">A</A></DIV><A href=\"b=2\">B</A>", "1"},
               {"<DIV class=message><A href=\"msg=12 34th\">A</A>", "1234"},
               {"<DIV class=message><A href=\"msg=x\">A</A>", "0"},
               {"<DIV class=message>x</A>", "error 9"}});
}

TEST(Ptrv, BodyBeginsBehindTheLastTime) {
  ExpectField("Текст"_ru, {{"<html>", " "},
                           {"<DIV class=message></DIV>", " "},
                           {"<DIV class=message>1234567890</DIV>", "7890"},  // without a time six characters are lost
                           {"<DIV class=message>123456</DIV>", " "},
                           {"<DIV class=message>head 1:30 pm: <BR><br>Text</DIV>", "Text"},
                           {"<DIV class=message><A href=\"x\">A</A> 1:30 pm: <P></P>Text</DIV>", "Text"},
                           {"<DIV class=message>1:30 pm: <BR><BR>a 2:30 AM: 345 b</DIV>", "b"},
                           {"<DIV class=message>m: <BR>only one break: 1</DIV>", "nly one break: 1"},
                           {"<DIV class=message>m:345678</DIV>", "78"},  // a time at the very start is not seen
                           {"<DIV class=message>xm:3456789</DIV>", "789"},
                           {"<DIV class=message>1m:</DIV>", " "},
                           {"<DIV class=message></A>pm: <BR><BR><A href=\"u\">L</A> &lt;b&gt; <I>i</I></DIV>",
                            "href=\"u\">L <b> <I>i</I>"},
                           {"<DIV class=message>pm: <BR><BR>&nbsp;\t<BR> x <BR>&nbsp;</DIV>", "x"},
                           {"<DIV class=message>pm: <BR><BR>no end", "no end"},
                           {"<DIV class=message>lost</A>pm: <BR><BR>a</A>b</DIV>", "ab"}});
}

TEST(Ptrv, DateGetsTheYearThatFitsTheWeekday) {
  ExpectField("Дата"_ru, {{"<html>", ""},
                          {"<input name=previousdate value=\"\">", ""},
                          {"<input name=previousdate value=\"Friday, March 15\">", "2002-03-15"},
                          {"<input name=previousdate value=\"Fri,\tMarch   1 \">", "2002-03-01"},
                          {"<input name=previousdate value=\"Thursday, March 1\">", "2001-03-01"},
                          {"<input name=previousdate value=\"Sunday, December 29\">", "2002-12-29"},
                          {"<input name=previousdate value=\"Friday, March 1st\">", "2002-03-01"},
                          {"<input name=previousdate value=\"March 15\">", "error 9"},
                          {"<input name=previousdate value=\"Friday, March\">", "error 9"},
                          {"<input name=previousdate value=\"Friday, \">", "error 9"},
                          {"<input name=previousdate value=\"day, March 15\">", "error 5"},
                          {"<input name=previousdate value=\"Friday, March 99999\">", "error 6"}});
}

TEST(Ptrv, OtherFieldsAreEmpty) { EXPECT_EQ(Field("<title>x</title>", "Картинка"_ru), ""); }

TEST(DayOfWeekNumber, FindsEnglishNames) {
  const struct {
    std::string_view text;
    int want;
  } cases[] = {{"", 0},    {"Sunday", 1}, {"MON", 2},        {"x tue x", 3}, {"Wednesday", 4}, {"Thu", 5},
               {"Fri", 6}, {"sat", 7},    {"Суббота"_ru, 0}, {"Sat Sun", 1}};  // the first of the week, not of the text
  for (const auto& c : cases) EXPECT_EQ(DayOfWeekNumber(c.text), c.want) << cp1251::ToUtf8(c.text);
}

TEST(FindYearForWeekday, TakesTheLatestYearThatFits) {
  const struct {
    int this_year, month, day, weekday, want;
  } cases[] = {{2002, 3, 1, 6, 2002},                                                   // a Friday
               {2003, 3, 1, 6, 2002},  {2001, 3, 1, 6, 1996}, {2002, 12, 31, 3, 2002},  // after today, in this year
               {2003, 2, 29, 7, 2003},                                                  // rolls over to 1 March
               {2000, 2, 29, 3, 2000}};
  for (const auto& c : cases)
    EXPECT_EQ(FindYearForWeekday(c.month, c.day, c.weekday, FixedClock(c.this_year, 6, 15)), c.want) << c.this_year;
  EXPECT_EQ(Field("<input name=previousdate value=\"Sat, February 29\">", "Дата"_ru), "1997-03-01");
}

}  // namespace
