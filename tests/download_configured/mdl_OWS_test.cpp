#include "download_configured/mdl_OWS.h"

#include <gtest/gtest.h>

#include "base/cat.h"
#include "base/cp1251.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "text/mdl_STR.h"

namespace {

using mdl_STR::WinToKoi8;

std::string Field(std::string_view page, std::string_view field) {
  try {
    return mdl_OWS::ParseOwsField(WinToKoi8(page), field);
  } catch (const Error& error) {
    return Cat("error ", error.number());
  }
}

TEST(Ows, FieldsStandBetweenTheirMarkers) {
  const struct {
    std::string_view field, page, want;
  } cases[] = {
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
      {"Картинка"_ru, "<big>x</big>", ""},
  };
  for (const auto& c : cases) EXPECT_EQ(Field(c.page, c.field), c.want) << cp1251::ToUtf8(c.page);
}

}  // namespace
