#include "download_fixed/kdv.h"

#include <gtest/gtest.h>

#include "base/error.h"
#include "base/ru_literal.h"
#include "demo_forum/demo_pages.h"
#include "download/page_code.h"
#include "support/fixed_clock.h"

namespace {

const FixedClock kClock(2002, 6, 15);

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

TEST(Kdv, AnEmptyPageGivesAnEmptyMessage) {
  int step = 0;
  const MessageRecord message = kdv::ParseMessage("<html>", 12, kClock, step);
  EXPECT_EQ(message.Код, 12);
  EXPECT_EQ(message.Вответ, 0);
  EXPECT_EQ(message.Тема, "(...пусто...)"_ru);
  EXPECT_EQ(message.Автор, "");
  EXPECT_EQ(message.АвторMail, "");
  EXPECT_EQ(message.Текст, "\r\n");
  EXPECT_EQ(message.Дата, OleDate{0});
}

TEST(Kdv, LinesLoseTheForumsQuoting) {
  const struct {
    std::string_view text, want;
  } cases[] = {
      {"\n: a\n: b", "a\r\nb"},
      {": a\n:b\n: : c", ": a\r\n:b\r\n: c"},
      {"a &quot;b&QUOT; &amp;", "a \"b\" &amp;"},
      {"\n\na", "\r\na"},
  };
  for (const auto& c : cases) {
    int step = 0;
    const std::string page = "<textarea COLS=55 ROWS=6>" + std::string(c.text) + "</textarea>";
    EXPECT_EQ(kdv::ParseMessage(page, 1, kClock, step).Текст, c.want);
  }
}

TEST(Kdv, AParentsNumberTooLargeFailsInStepFour) {
  int step = 0;
  EXPECT_THROW(kdv::ParseMessage("в ответ на: <a href=\"99999999999.html\">"_ru, 1, kClock, step), Error);
  EXPECT_EQ(step, 4);
}

}  // namespace
