#include <gtest/gtest.h>

#include "base/cat.h"
#include "base/cp1251.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "download_configured/mdl_GELIUM.h"
#include "download_configured/mdl_MSHA.h"

namespace {

using Parser = std::string(std::string_view page, std::string_view field);

std::string Field(Parser& parser, std::string_view page, std::string_view field) {
  try {
    return parser(page, field);
  } catch (const Error& error) {
    return Cat("error ", error.number());
  }
}

TEST(ShtmlPages, BothForumsReadTheSameFields) {
  const struct {
    std::string_view field, page, want;
  } cases[] = {
      {"Тема"_ru, "", ""},
      {"Тема"_ru, "<title> &lt;a&gt; &amp;quot; </title>", " <a> \" "},
      {"Вответ"_ru, "", "0"},
      {"Вответ"_ru, "<div align=left></div>", "0"},
      {"Вответ"_ru, "<div align=left>Ответ на: <a href=\"/b/messages/123.shtml\">x</a></div>"_ru, "123"},
      {"Вответ"_ru, "<DIV ALIGN=LEFT>: <A HREF=45.SHTML>x</A></DIV>", "45"},
      {"Вответ"_ru, "<div align=left>: <a href=x.shtml></div>", "0"},
      {"Вответ"_ru, "<div align=left>: <a href=/7/x.shtml></div>", "0"},
      {"Вответ"_ru, "<div align=left>: <a href=\"\".shtml></div>", "0"},
      {"Вответ"_ru, "<div align=left>no link</div>: <a href=5.shtml", "0"},
      {"Автор"_ru, "", ""},
      {"Автор"_ru, "<b> Вася </b>"_ru, "Вася"_ru},
      {"Автор"_ru, "<B><a href=x> Вася </a></B>"_ru, "Вася"_ru},
      {"Автор"_ru, "<b><a href=x></a></b>", "<a href=x></a>"},
      {"Автор"_ru, "<b>&lt;", "&lt;"},
      {"АвторMail"_ru, "", ""},
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
      {"Картинка"_ru, "<title>x</title>", ""},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Field(mdl_MSHA::ParseMoyshaField, c.page, c.field), c.want) << cp1251::ToUtf8(c.page);
    EXPECT_EQ(Field(mdl_GELIUM::ParseGeliumField, c.page, c.field), c.want) << cp1251::ToUtf8(c.page);
  }
}

TEST(Moysha, BodyLosesTheForumsMarkup) {
  const struct {
    std::string_view body, want;
  } cases[] = {
      {"", " "},
      {" \r\n<P>&nbsp;<p> ", " "},
      {"a<P>b<br>c", "a\r\nbc"},
      {"<ul><LI>a</li><li>b</li></ul>", "a\r\nb"},
      {"<I>q</I><DD>r</DD>s", "qr\r\ns"},
      {"see <A href=\"http://x\">link</A>!", "see  href=\"http://x\">link!"},
      {"ok<font face=Wingdings>J</font>", "ok :-)"},
      {"a &lt;b&gt; &amp;lt;", "a <b> &lt;"},
      {"a < b", "a < b"},
      {"a < b and c > d", "a  d"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(
        mdl_MSHA::ParseMoyshaField(Cat("<dd>x</dd><DIV class=divMessage>y<dd>", c.body, "<hr>z</div>"), "Текст"_ru),
        c.want)
        << c.body;
  EXPECT_EQ(mdl_MSHA::ParseMoyshaField("<dd>x<hr>", "Текст"_ru), " ");
}

TEST(Gelium, BodyEndsAtTheDivisionAndLosesItsHeading) {
  const struct {
    std::string_view page, want;
  } cases[] = {
      {"", " "},
      {"x<DD>a<hr>b</div>c", "ab"},
      {"<dd>a<P>ответы и комментарии:</div>"_ru, "a"},
      {"<dd>a</dd>b<li>c</li>", "a\r\nbc"},
      {"<dd>ok<font face=Wingdings>J</font></div>", "okJ"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(mdl_GELIUM::ParseGeliumField(c.page, "Текст"_ru), c.want) << cp1251::ToUtf8(c.page);
}

}  // namespace
