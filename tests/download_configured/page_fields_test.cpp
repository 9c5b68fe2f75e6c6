// What the parsers read in the pages of each forum, oddities included.

#include "download_configured/page_fields.h"

#include <gtest/gtest.h>

#include "base/cat.h"
#include "base/cp1251.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "download_configured/mdl_GELIUM.h"
#include "download_configured/mdl_MSHA.h"
#include "download_configured/mdl_OWS.h"
#include "download_configured/mdl_PTRV.h"
#include "support/fixed_clock.h"

namespace {

struct FieldCase {
  std::string_view field, page, want;  // "error 9" and the like when the page breaks the parser
};

/// Expects a parser to read the fields so.
template <typename Parse, std::size_t N>
void ExpectFields(const Parse& parse, const FieldCase (&cases)[N]) {
  const auto read = [&](const FieldCase& c) -> std::string {
    try {
      return parse(c.page, c.field);
    } catch (const Error& error) {
      return Cat("error ", error.number());
    }
  };
  for (const FieldCase& c : cases) EXPECT_EQ(read(c), c.want) << cp1251::ToUtf8(c.page);
}

std::string ParsePtrv(std::string_view page, std::string_view field) {
  return mdl_PTRV::ParsePtrvField(page, field, FixedClock(2002, 6, 15));
}

TEST(Ptrv, FieldsStandBetweenTheirMarkers) {
  constexpr FieldCase kCases[] = {
      // The decoded title.
      {"Тема"_ru, "", ""},
      {"Тема"_ru, "<TITLE> a&nbsp;&NBSP;b &amp;lt; </title>", " ab &lt; "},
      {"Тема"_ru, "<title>&amp;nbsp;", "&nbsp;"},
      // Behind the last equals sign.
      {"Автор"_ru, "<input name=previousname value=\"Вася Пупкин\">"_ru, "Вася Пупкин"_ru},
      {"Автор"_ru, "<input name=\"PreviousName\" value=\"a=b\">", "b"},
      {"Автор"_ru, "<input name=previousname value=\"\">", ""},
      {"Автор"_ru, "<input name=previousname>", "error 9"},
      {"Автор"_ru, "<html>", "error 9"},
      // The first link of the division.
      {"АвторMail"_ru, "<html>", ""},
      {"АвторMail"_ru, "<DIV class=message>no link</div>", ""},
      {"АвторMail"_ru, "<div CLASS=message><A href=\"mailto:a@b.ru\">A</A> x", "a@b.ru"},
      {"АвторMail"_ru, "<DIV class=message><A href=\"MAILTO:a@b.ru\">A</A>", ""},
      {"АвторMail"_ru, "<DIV class=message><A href=\"user?mail=mailto:a@b.ru\">A</A>", "a@b.ru"},
      {"АвторMail"_ru, "<DIV class=message><A href=\"x mailto:a\">A</A>", "o:a"},  // seven characters go
      {"АвторMail"_ru, "<DIV class=message><A href=\"mailto:a@b.ru\">A</a>", ""},  // not "</A>"
      {"АвторMail"_ru, "<DIV class=message><A href=\"http://x\">A</A>", ""},
      {"АвторMail"_ru, "<DIV class=message><b>A</A>", "error 9"},
      // The last link of the division.
      {"Вответ"_ru, "<html>", "0"},
      {"Вответ"_ru, "<DIV class=message>no link</div>", "0"},
      {"Вответ"_ru, "<DIV class=message><A href=\"mailto:a@b.ru\">A</A> x</DIV>", "0"},
      {"Вответ"_ru, "<DIV class=message><A href=\"mailto:a\">A</A><A href=\"x?msg=123\">B</A> x</DIV>", "123"},
      {"Вответ"_ru, "<DIV class=message><A href=\"a=1\">A</A><A href=\"b=2\">B</A><A href=\"c=3\">C</A></DIV>", "3"},
      {"Вответ"_ru, "<DIV class=message><A href=\"a=1\">A</A></DIV><A href=\"b=2\">B</A>", "1"},
      {"Вответ"_ru, "<DIV class=message><A href=\"msg=12 34th\">A</A>", "1234"},
      {"Вответ"_ru, "<DIV class=message><A href=\"msg=x\">A</A>", "0"},
      {"Вответ"_ru, "<DIV class=message>x</A>", "error 9"},
  };
  ExpectFields(ParsePtrv, kCases);
}

TEST(Ptrv, BodyBeginsBehindTheLastTime) {
  constexpr FieldCase kCases[] = {
      {"Текст"_ru, "<html>", " "},
      {"Текст"_ru, "<DIV class=message></DIV>", " "},
      {"Текст"_ru, "<DIV class=message>1234567890</DIV>", "7890"},  // without a time six characters are lost
      {"Текст"_ru, "<DIV class=message>123456</DIV>", " "},
      {"Текст"_ru, "<DIV class=message>head 1:30 pm: <BR><br>Text</DIV>", "Text"},
      {"Текст"_ru, "<DIV class=message><A href=\"x\">A</A> 1:30 pm: <P></P>Text</DIV>", "Text"},
      {"Текст"_ru, "<DIV class=message>1:30 pm: <BR><BR>a 2:30 AM: 345 b</DIV>", "b"},
      {"Текст"_ru, "<DIV class=message>m: <BR>only one break: 1</DIV>", "nly one break: 1"},
      {"Текст"_ru, "<DIV class=message>m:345678</DIV>", "78"},  // a time at the very start is not seen
      {"Текст"_ru, "<DIV class=message>xm:3456789</DIV>", "789"},
      {"Текст"_ru, "<DIV class=message>1m:</DIV>", " "},
      {"Текст"_ru, "<DIV class=message></A>pm: <BR><BR><A href=\"u\">L</A> &lt;b&gt; <I>i</I></DIV>",
       "href=\"u\">L <b> <I>i</I>"},
      {"Текст"_ru, "<DIV class=message>pm: <BR><BR>&nbsp;\t<BR> x <BR>&nbsp;</DIV>", "x"},
      {"Текст"_ru, "<DIV class=message>pm: <BR><BR>no end", "no end"},
      {"Текст"_ru, "<DIV class=message>lost</A>pm: <BR><BR>a</A>b</DIV>", "ab"},
  };
  ExpectFields(ParsePtrv, kCases);
}

TEST(Ptrv, DateGetsTheYearThatFitsTheWeekday) {
  constexpr FieldCase kCases[] = {
      {"Дата"_ru, "<html>", ""},
      {"Дата"_ru, "<input name=previousdate value=\"\">", ""},
      {"Дата"_ru, "<input name=previousdate value=\"Friday, March 15\">", "2002-03-15"},
      {"Дата"_ru, "<input name=previousdate value=\"Fri,\tMarch   1 \">", "2002-03-01"},
      {"Дата"_ru, "<input name=previousdate value=\"Thursday, March 1\">", "2001-03-01"},
      {"Дата"_ru, "<input name=previousdate value=\"Sunday, December 29\">", "2002-12-29"},
      {"Дата"_ru, "<input name=previousdate value=\"Friday, March 1st\">", "2002-03-01"},
      {"Дата"_ru, "<input name=previousdate value=\"Sat, February 29\">", "1997-03-01"},   // rolls over
      {"Дата"_ru, "<input name=previousdate value=\"x SAT SUN, June 9\">", "2002-06-09"},  // the first of a week
      {"Дата"_ru, "<input name=previousdate value=\"March 15\">", "error 9"},
      {"Дата"_ru, "<input name=previousdate value=\"Friday, March\">", "error 9"},
      {"Дата"_ru, "<input name=previousdate value=\"Friday, \">", "error 9"},
      {"Дата"_ru, "<input name=previousdate value=\"day, March 15\">", "error 5"},
      {"Дата"_ru, "<input name=previousdate value=\"Friday, March 99999\">", "error 6"},
  };
  ExpectFields(ParsePtrv, kCases);
}

TEST(FindYearForWeekday, TakesTheLatestYearThatFits) {
  const auto year = [](int this_year, int month, int day, int weekday) {
    return mdl_PTRV::FindYearForWeekday(month, day, weekday, FixedClock(this_year, 6, 15));
  };
  EXPECT_EQ(year(2003, 3, 1, 6), 2002);
  EXPECT_EQ(year(2001, 3, 1, 6), 1996);
  EXPECT_EQ(year(2000, 2, 29, 3), 2000);
}

std::string ParseOws(std::string_view page, std::string_view field) {
  return mdl_OWS::ParseOwsField(mdl_STR::WinToKoi8(page), field);
}

TEST(Ows, FieldsStandBetweenTheirMarkers) {
  constexpr FieldCase kCases[] = {
      {"Тема"_ru, "", ""},
      {"Тема"_ru, "Views: 5 <b> О рынке </B> [<small>"_ru, "О рынке"_ru},
      {"Тема"_ru, "Views: <B><IMG src=\"a.gif\">О рынке</B>[<small>"_ru, "О рынке"_ru},
      {"Тема"_ru, "Views: <B><img src=\"a.gif\">О рынке</B>[<small>"_ru, "О рынке"_ru},
      {"Тема"_ru, "Views: <B><img src=a.gif>О рынке</B>[<small>"_ru, "О рынке"_ru},  // only "<IMG" is an icon
      {"Тема"_ru, "Views: <IMG src=a.gif>О рынке</B>[<small>"_ru, ""},
      {"Тема"_ru, "Views: <B>a  b   c\r\nd&nbsp;&nbsp;e</B>[<small>", "ab cd  e"},
      {"Тема"_ru, "Views: [<small><B>x</B>", ""},
      {"Вответ"_ru, "", "0"},
      {"Вответ"_ru, "[<small><a href=\"?read=1;post=123;x\">y</a></small>]", "123"},
      {"Вответ"_ru, "[<small><a href=\"?read=1;post=12", "12"},
      {"Вответ"_ru, "[<small></small>] post=5;", "0"},
      {"Автор"_ru, "<big><a href=x> Вася &amp; Ко </a></big>"_ru, "Вася & Ко"_ru},
      {"Автор"_ru, "<BIG>Ёж«»</BIG>"_ru, "Ёж«»"_ru},
      {"АвторMail"_ru, "<a href=\"MAILTO:a@b.ru\">", "a@b.ru"},
      {"АвторMail"_ru, "<html>", ""},
      {"Текст"_ru, "<HR SIZE=1><FONT size=2>О рынке</FONT></TBODY></TABLE><BR>"_ru, "О рынке"_ru},
      {"Текст"_ru, "<hr size=1><font>\r\n                  a<br>\r\n                  b   c</font>", "a\r\nb   c"},
      {"Текст"_ru, "<HR SIZE=1><FONT>a                    b</FONT>", "a  b"},  // twenty blanks
      {"Текст"_ru, "<HR SIZE=1><FONT>&nbsp;<BR></FONT>", ""},
      {"Текст"_ru, "<HR SIZE=1></TABLE><BR><FONT>x</FONT>", ""},
      {"Дата"_ru, "</big> <br><br> March&nbsp;15,&nbsp;2002 <br><br> x <BR>Views:", "2002-03-15"},
      {"Дата"_ru, "</big><BR><BR>\r\nMay&nbsp;3,&nbsp;99\r\n<br><br><br>views:", "1999-05-03"},
      {"Дата"_ru, "</big><br><br>Feb&nbsp;30,&nbsp;2002<br><br>", "2002-03-02"},
      {"Дата"_ru, "</big><br><br>March 15, 2002<br><br>", "error 9"},
      {"Дата"_ru, "</big><br><br>March&nbsp;x&nbsp;2002<br><br>", "error 13"},
      {"Дата"_ru, "", "error 9"},
  };
  ExpectFields(ParseOws, kCases);
}

TEST(ShtmlPages, BothForumsReadTheSameFields) {
  constexpr FieldCase kCases[] = {
      {"Тема"_ru, "<title> &lt;a&gt; &amp;quot; </title>", " <a> \" "},
      {"Вответ"_ru, "", "0"},
      {"Вответ"_ru, "<div align=left>Ответ на: <a href=\"/b/messages/123.shtml\">x</a></div>"_ru, "123"},
      {"Вответ"_ru, "<DIV ALIGN=LEFT>: <A HREF=45.SHTML>x</A></DIV>", "45"},
      {"Вответ"_ru, "<div align=left>: <a href=x.shtml></div>", "0"},
      {"Вответ"_ru, "<div align=left>: <a href=/7/x.shtml></div>", "0"},
      {"Вответ"_ru, "<div align=left>: <a href=\"\".shtml></div>", "0"},
      {"Вответ"_ru, "<div align=left>no link</div>: <a href=5.shtml", "0"},
      {"Автор"_ru, "<b> Вася </b>"_ru, "Вася"_ru},
      {"Автор"_ru, "<B><a href=x> Вася </a></B>"_ru, "Вася"_ru},
      {"Автор"_ru, "<b><a href=x></a></b>", "<a href=x></a>"},
      {"Автор"_ru, "<b>&lt;", "&lt;"},
      {"АвторMail"_ru, "<b>Вася</b>"_ru, ""},
      {"АвторMail"_ru, "<b><a href=\"MailTo:a@b.ru\">x</a></b>", "a@b.ru"},
      {"АвторMail"_ru, "<b><a href=mailto:a@b.ru>x</a></b>", "a@b.ru"},
      {"АвторMail"_ru, "<b><a href=\"/user\">x</a></b>", ""},
      {"Дата"_ru, "<i>15/03/02</i>", "2002-03-15"},
      {"Дата"_ru, "<I>Пятница 12:30 15/3/2002</I>"_ru, "2002-03-15"},
      {"Дата"_ru, "<i>31/04/02</i>", "2002-05-01"},
      {"Дата"_ru, "<i>1/1/30</i>", "1930-01-01"},
      {"Дата"_ru, "<i>1/1/02\r\n</i>", "2002-01-01"},
      {"Дата"_ru, "<i>1/1/02/9</i>", "2002-01-01"},
      {"Дата"_ru, "", "error 9"},
      {"Дата"_ru, "<i>1/1</i>", "error 9"},
      {"Дата"_ru, "<i>1/1/02 </i>", "error 9"},  // the last word is empty
      {"Дата"_ru, "<i>1/x/02</i>", "error 13"},
      {"Дата"_ru, "<i>1/1/99999</i>", "error 6"},
      {"Дата"_ru, "<i>1/1/-2</i>", "error 5"},
  };
  ExpectFields(mdl_MSHA::ParseMoyshaField, kCases);
  ExpectFields(mdl_GELIUM::ParseGeliumField, kCases);
}

TEST(Moysha, BodyLosesTheForumsMarkup) {
  constexpr FieldCase kBodies[] = {
      {"Текст"_ru, "", " "},
      {"Текст"_ru, " \r\n<P>&nbsp;<p> ", " "},
      {"Текст"_ru, "a<P>b<br>c", "a\r\nbc"},
      {"Текст"_ru, "<ul><LI>a</li><li>b</li></ul>", "a\r\nb"},
      {"Текст"_ru, "<I>q</I><DD>r</DD>s", "qr\r\ns"},
      {"Текст"_ru, "see <A href=\"http://x\">link</A>!", "see  href=\"http://x\">link!"},
      {"Текст"_ru, "ok<font face=Wingdings>J</font>", "ok :-)"},
      {"Текст"_ru, "a &lt;b&gt; &amp;lt;", "a <b> &lt;"},
      {"Текст"_ru, "a < b", "a < b"},
      {"Текст"_ru, "a < b and c > d", "a  d"},
  };
  const auto parse_body = [](std::string_view body, std::string_view field) {
    return mdl_MSHA::ParseMoyshaField(Cat("<dd>x</dd><DIV class=divMessage>y<dd>", body, "<hr>z</div>"), field);
  };
  ExpectFields(parse_body, kBodies);
  EXPECT_EQ(mdl_MSHA::ParseMoyshaField("<dd>x<hr>", "Текст"_ru), " ");
}

TEST(Gelium, BodyEndsAtTheDivisionAndLosesItsHeading) {
  constexpr FieldCase kCases[] = {
      {"Текст"_ru, "", " "},
      {"Текст"_ru, "x<DD>a<hr>b</div>c", "ab"},
      {"Текст"_ru, "<dd>a<P>ответы и комментарии:</div>"_ru, "a"},
      {"Текст"_ru, "<dd>a</dd>b<li>c</li>", "a\r\nbc"},
      {"Текст"_ru, "<dd>ok<font face=Wingdings>J</font></div>", "okJ"},
  };
  ExpectFields(mdl_GELIUM::ParseGeliumField, kCases);
}

}  // namespace
