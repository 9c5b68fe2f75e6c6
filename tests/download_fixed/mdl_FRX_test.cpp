#include "download_fixed/mdl_FRX.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "base/cat.h"
#include "base/cp1251.h"
#include "base/ru_literal.h"

namespace {

using mdl_FRX::ExtractField;

TEST(ExtractField, CutsTheHiddenFormOfThePage) {
  const struct {
    std::string_view field, page, want;
  } cases[] = {
      {"Тема"_ru, "", "(...пусто...)"_ru},
      {"Тема"_ru, "<title></title>", "(...пусто...)"_ru},
      {"Тема"_ru, "<TITLE>a &amp;quot; b</TITLE>", "a \" b"},
      {"Тема"_ru, "<title> </title>", " "},
      {"Вответ"_ru, "", ""},
      {"Вответ"_ru, "В ответ на: <A HREF=\"123.html\">x</a>"_ru, "123"},
      {"Автор"_ru, "<input type=hidden name=\"origname\" value=\"Вася\">"_ru, "Вася"_ru},
      {"Автор"_ru, "<input type=hidden name=\"origname\"  value=\"x\">", ""},
      {"АвторMail"_ru, "<input name=origemail size=5 value=\"a@b.ru\">", "a@b.ru"},
      {"АвторMail"_ru, "<input name=\"origname\" value=\"x\">", ""},
      {"АвторMail"_ru, "value=\"x\" origemail", ""},
      {"Текст"_ru, "", ""},
      {"Текст"_ru, "COLS=55 ROWS=6></textarea>", ""},
      {"Текст"_ru, "<textarea cols=55 rows=6>\r\n\r\na</TEXTAREA>b", "\r\na"},  // one line break is lost
      {"Текст"_ru, "<textarea cols=55 rows=6>\n\na</TEXTAREA>b", "\na"},
      {"Текст"_ru, "<textarea cols=55 rows=6>\ra", "\ra"},
      {"Дата"_ru, "", ""},
      {"Дата"_ru, "<input type=hidden name=\"origdate\" value=\"\">", ""},
      {"Дата"_ru, "<input type=hidden name=\"origdate\" value=\"Пятница, 15 Март 2002 в 12:30:05\">"_ru, "15-03-2002"},
      {"Дата"_ru, "<input type=hidden name=\"origdate\" value=\"Friday, 5 May 2002\">", "5-05-2002"},
      {"Дата"_ru, "<input type=hidden name=\"origdate\" value=\"15 Март 2002\">"_ru, ""},
      {"Дата"_ru, "<input type=hidden name=\"origdate\" value=\"Пт, вчера в 12\">"_ru, "вчера"_ru},
      {"Дата"_ru, "<input type=hidden name=\"origdate\" value=\"Пт, 15  Март 2002 в 12\">"_ru, "15  Март 2002"_ru},
      {"Картинка"_ru, "<title>x</title>", ""},
  };
  for (const auto& c : cases) EXPECT_EQ(ExtractField(c.page, c.field), c.want) << cp1251::ToUtf8(c.page);
}

TEST(ExtractField, LongNicksAndAddressesAreCut) {
  for (const std::size_t length : {49u, 50u, 51u, 69u, 70u, 71u, 1000u}) {
    const std::string value(length, 'x');
    const std::string page = Cat("<input type=hidden name=\"origname\" value=\"", value,
                                 "\"><input type=hidden name=\"origemail\" value=\"", value, "\">");
    EXPECT_EQ(ExtractField(page, "Автор"_ru).size(), std::min<std::size_t>(length, 70));
    EXPECT_EQ(ExtractField(page, "АвторMail"_ru).size(), std::min<std::size_t>(length, 50));
  }
}

}  // namespace
