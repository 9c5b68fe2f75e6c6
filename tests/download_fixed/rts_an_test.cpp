#include "download_fixed/rts_an.h"

#include <gtest/gtest.h>

#include "base/cat.h"
#include "base/cp1251.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "demo_forum/demo_pages.h"
#include "download/page_code.h"
#include "support/fixed_clock.h"

namespace {

const FixedClock kClock(2002, 6, 15);

constexpr std::string_view kDate = "\r\n<font size=-1>[15 Мар 2002 12:30]</font>"_ru;

MessageRecord Parse(std::string_view page) {
  int step = 0;
  return rts_an::ParseMessage(Cat(page, kDate), 1, kClock, step);
}

TEST(RtsAn, AMessageHasASubjectBeforeTheForumsName) {
  using namespace page_code;
  const struct {
    std::string_view page;
    int want;
  } cases[] = {
      {"", kNotLoaded},
      {" ", kNoSuchMessage},
      {"<title>О рынке - Форум аналитиков</title>"_ru, kMessage},
      {"<TITLE> О рынке - ФОРУМ АНАЛИТИКОВ </TITLE>"_ru, kMessage},
      {"<title>О рынке - Форум аналитиков"_ru, kMessage},
      {"<title>- Форум аналитиков</title>"_ru, kNoSuchMessage},
      {"<title> - Форум аналитиков</title>"_ru, kNoSuchMessage},
      {"<title>Форум аналитиков</title>"_ru, kNoSuchMessage},
      {"<title>О рынке -Форум аналитиков</title>"_ru, kNoSuchMessage},
      {"<title>О рынке</title> - Форум аналитиков"_ru, kNoSuchMessage},
      {"<title>О рынке - Форум аналитиков</title>[30/12/1899 ]"_ru, kNoSuchMessage},
      {"<title>О рынке - Форум аналитиков</title>[30/12/1899]"_ru, kMessage},
      {"<title>О рынке - Форум аналитиков</title>404 Not Found"_ru, kNoSuchMessage},
      {"<title>О рынке - Форум аналитиков</title>404 not found"_ru, kMessage},
      {"<title>О рынке - Форум аналитиков</title>WebBoard: Not available</TITLE>"_ru, kNoSuchMessage},
  };
  for (const auto& c : cases) EXPECT_EQ(rts_an::trueMsg(c.page), c.want) << cp1251::ToUtf8(c.page);
  EXPECT_EQ(rts_an::trueMsg(demo_pages::NotFoundPage("rts-an")), kNoSuchMessage);
}

TEST(RtsAn, SubjectLosesTheForumsName) {
  const struct {
    std::string_view title, want;
  } cases[] = {
      {"", "(...пусто...)"_ru},
      {"Форум аналитиков"_ru, "(...пусто...)"_ru},
      {"О рынке -Форум аналитиков"_ru, "О рынке"_ru},
      {"О рынке--ФОРУМ АНАЛИТИКОВ"_ru, "О рынке-"_ru},
      {"О рынке - Форум аналитиков"_ru, "О рынке -"_ru},  // a blank is the last character, not the dash
      {"a &amp; &quot;b&quot;", "a \" \"b\""},
      {" &lt; ", "&lt;"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(Parse(Cat("<title>", c.title, "</title>")).Тема, c.want) << cp1251::ToUtf8(c.title);
}

TEST(RtsAn, FieldsStandBetweenTheirMarkers) {
  const MessageRecord message = Parse(
      "Автор:&nbsp;<img src=\"/images/ smile1.gif\" align=\"middle\">&nbsp;<b> Вася </b>&nbsp;"
      "<a href=\"mailto:a@b.ru?subject=x\">В ответ на: <a href=\"/default.asp?action=view&id=123\">x</a></blockquote>"_ru);
  EXPECT_EQ(message.Картинка, "smile1");
  EXPECT_EQ(message.Автор, "Вася"_ru);
  EXPECT_EQ(message.АвторMail, "a@b.ru");
  EXPECT_EQ(message.Вответ, 123);
  EXPECT_EQ(ole_date::ToCivil(*message.Дата), (CivilTime{2002, 3, 15}));  // without the time
}

TEST(RtsAn, BodyIsTheFirstParagraphBehindTheForumsBlock) {
  const struct {
    std::string_view page, want;
  } cases[] = {
      {"</blockquote>\r\n<p>\r\nText</html>x", "Text"},
      {"</BLOCKQUOTE>\r\n<blockquote>\r\n<hr>\r\n<P>\r\nText", "Text\r\n<font size=-1>[15 Мар 2002 12:30]</font>"_ru},
      {"</blockquote>\r\n<p>\r\n  a<BR>b<P>c  </html>", "a\r\nb\r\n\r\nc"},
      {"</blockquote>\r\n<p>\r\na</blockquote>b<hr size='2' noshade>c</html>", "a"},
      {"</blockquote>\r\n<p>\r\na<br><center>b</blockquote></html>", "a"},
      {"</blockquote>\r\n<p>\r\na<hr size='2' noshade>b<a name='followups'>Ответы:</a></blockquote></html>"_ru, "a"},
      {"</blockquote>\r\n<p>\r\na<a name='followups'>Ответы:</a>b</blockquote>c</html>"_ru,
       "a<a name='followups'>Ответы:</a>b</blockquote>c"_ru},
      {"</blockquote>\r\n<p>\r\n</html>", "\r\n"},
      {"<p>\r\nText</html>", "\r\n"},
      {"</blockquote><p>\r\nText</html>", "\r\n"},
      {"</blockquote>\r\n<p>Text</html>", "\r\n"},
      {"</blockquote>\r\n<p>\r\n&amp;&lt;&quot;</html>", "\"&lt;\""},
  };
  for (const auto& c : cases) EXPECT_EQ(Parse(c.page).Текст, c.want) << cp1251::ToUtf8(c.page);
}

TEST(RtsAn, HighestNumberOfTheFrontPage) {
  const struct {
    std::string_view page;
    int want;
  } cases[] = {
      {"", 0},
      {"<a href=\"/default.asp?action=view&id=12&r=0\">", 12},
      {"/default.asp?action=view&id=12&/default.asp?action=view&id=345&/default.asp?action=view&id=9&", 345},
      {"/default.asp?action=view&id=12", 12},
      {"/default.asp?action=view&id= 12 &/default.asp?action=view&id=99&", 12},  // blanks: the search ends
      {"/DEFAULT.asp?action=view&id=12&/default.asp?action=view&id=99&", 12},
      {"/default.asp?action=view&id=x&/default.asp?action=view&id=-3&", 0},
  };
  for (const auto& c : cases) EXPECT_EQ(rts_an::HighestNumber(c.page), c.want) << c.page;
  EXPECT_EQ(rts_an::HighestNumber(demo_pages::RtsAnFrontPage(120, 165)), 165);
  EXPECT_THROW(rts_an::HighestNumber("/default.asp?action=view&id=99999999999&"), Error);
}

}  // namespace
