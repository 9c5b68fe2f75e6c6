#include "download_fixed/kdv.h"

#include <gtest/gtest.h>

#include "base/cat.h"
#include "base/cp1251.h"
#include "base/ru_literal.h"
#include "demo_forum/demo_pages.h"
#include "download/page_code.h"
#include "download_fixed/mdl_FRX.h"
#include "support/fixed_clock.h"

namespace {

using mdl_FRX::ExtractField;

TEST(Kdv, AnyPageThatIsNoReportIsAMessage) {
  using namespace page_code;
  const struct {
    std::string_view page;
    int want;
  } cases[] = {{"", kNotLoaded},
               {" ", kMessage},
               {"404 not found", kMessage},
               {"<b>404 Not Found</b>", kNoSuchMessage},
               {"WebBoard: Not available</title>", kMessage},
               {"WebBoard: Not available</TITLE>", kNoSuchMessage}};
  for (const auto& c : cases) EXPECT_EQ(kdv::trueMsgKDV(c.page), c.want) << c.page;
  EXPECT_EQ(kdv::trueMsgKDV(demo_pages::NotFoundPage("kdv")), kNoSuchMessage);
}

TEST(Kdv, LinesLoseTheForumsQuoting) {
  const struct {
    std::string_view text, want;
  } cases[] = {
      {"\n: a\n: b", "a\r\nb"},
      {": a\n:b\n: : c", ": a\r\n:b\r\n: c"},
      {"a &quot;b&QUOT; &amp;", "a \"b\" &amp;"},
      {"\n\na", "\r\na"},
      {"", "\r\n"},
  };
  for (const auto& c : cases) {
    int step = 0;
    const std::string page = Cat("<textarea COLS=55 ROWS=6>", c.text, "</textarea>");
    EXPECT_EQ(kdv::ParseMessage(page, 1, FixedClock(2002, 6, 15), step).Текст, c.want);
  }
}

TEST(ExtractField, CutsTheHiddenFormOfThePage) {
  const struct {
    std::string_view field, page, want;
  } cases[] = {
      {"Тема"_ru, "", "(...пусто...)"_ru},
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
      {"Текст"_ru, "<textarea cols=55 rows=6>\r\n\r\na</TEXTAREA>b", "\r\na"},  // one line break is lost
      {"Текст"_ru, "<textarea cols=55 rows=6>\n\na</TEXTAREA>b", "\na"},
      {"Текст"_ru, "<textarea cols=55 rows=6>\ra", "\ra"},
      {"Дата"_ru, "", ""},
      {"Дата"_ru, "<input type=hidden name=\"origdate\" value=\"Пятница, 15 Март 2002 в 12:30:05\">"_ru, "15-03-2002"},
      {"Дата"_ru, "<input type=hidden name=\"origdate\" value=\"Friday, 5 May 2002\">", "5-05-2002"},
      {"Дата"_ru, "<input type=hidden name=\"origdate\" value=\"15 Март 2002\">"_ru, ""},
      {"Дата"_ru, "<input type=hidden name=\"origdate\" value=\"Пт, вчера в 12\">"_ru, "вчера"_ru},
      {"Дата"_ru, "<input type=hidden name=\"origdate\" value=\"Пт, 15  Март 2002 в 12\">"_ru, "15  Март 2002"_ru},
  };
  for (const auto& c : cases) EXPECT_EQ(ExtractField(c.page, c.field), c.want) << cp1251::ToUtf8(c.page);
}

}  // namespace
