#include <gtest/gtest.h>

#include "base/ru_literal.h"
#include "demo_forum/demo_pages.h"
#include "download/page_code.h"
#include "download_fixed/kdv.h"
#include "download_fixed/rts_an.h"
#include "support/fixed_clock.h"
#include "support/message_generator.h"
#include "support/page_losses.h"

namespace {

using namespace page_losses;

const FixedClock kClock(2002, 6, 15);
constexpr std::string_view kNoSubject = "(...пусто...)"_ru;

// Two references become a double quote everywhere.
std::string RtsAnQuotes(std::string_view text) { return Replaced(Replaced(text, "&amp;", "\""), "&quot;", "\""); }

std::string RtsAnBody(std::string_view text) {
  const std::string decoded = RtsAnQuotes(Replaced(text, "\r\n", "<br>"));
  const bool page_ends = text::Contains(decoded, "</html>");
  std::string body(page_ends ? text::Trim(Before(decoded, "</html>")) : text::TrimLeft(decoded));
  body = Replaced(Replaced(Before(body, "</blockquote>"), "<br>", "\r\n"), "<p>", "\r\n\r\n");
  return body.empty() ? "\r\n" : body;
}

// The dash before the forum's name is left in place, since a blank stands behind it.
std::string RtsAnSubject(std::string_view text) {
  const std::string quotes = RtsAnQuotes(text);
  if (text::Contains(quotes, "</title>")) return std::string(text::Trim(Before(quotes, "</title>")));
  return std::string(text::TrimLeft(quotes)) + " -";
}

TEST(RoundTrip, RtsAnMessages) {
  ForEachMessage(1, [](const MessageRecord& sent) {
    const std::string page = demo_pages::RtsAnPage(sent);
    const bool named = !text::Trim(sent.Тема).empty() && !text::Contains(sent.Тема, "</title>");
    EXPECT_EQ(rts_an::trueMsg(page), named ? page_code::kMessage : page_code::kNoSuchMessage);
    MessageRecord want = sent;
    want.Тема = RtsAnSubject(sent.Тема);
    if (want.Тема.empty()) want.Тема = kNoSubject;
    if (want.Тема == " -") want.Тема = "-";
    want.Автор = text::Trim(RtsAnQuotes(Escaped(sent.Автор)));
    want.Текст = RtsAnBody(sent.Текст);
    int step = 0;
    ExpectSame(rts_an::ParseMessage(page, sent.Код, kClock, step), want);
    EXPECT_EQ(step, 18);
  });
}

// Every line end becomes CR LF, and ": " behind one is the forum's quoting.
std::string KdvLines(std::string_view text) {
  return Replaced(Replaced(Replaced(text, "\r\n", "\n"), "\n: ", "\n"), "\n", "\r\n");
}

std::string KdvAttribute(std::string_view text, std::size_t limit) {
  return Before(Replaced(KdvLines(Escaped(text)), "&quot;", "\""), "\"").substr(0, limit);
}

std::string KdvBody(std::string_view text) {
  const std::string lines = Replaced(Replaced(text, "\r\n", "\n"), "\n", "\r\n");  // each line is quoted: all kept
  const std::string body = Before(Replaced(lines, "&quot;", "\""), "</textarea>");
  return body.empty() ? "\r\n" : body;
}

TEST(RoundTrip, KdvMessages) {
  ForEachMessage(2, [](const MessageRecord& sent) {
    const std::string page = demo_pages::KdvPage(sent);
    EXPECT_EQ(kdv::trueMsgKDV(page), page_code::kMessage);
    MessageRecord want = sent;
    want.Тема = DecodedDashes(KdvLines(sent.Тема));
    if (want.Тема.empty()) want.Тема = kNoSubject;
    want.Автор = KdvAttribute(sent.Автор, 70);
    want.АвторMail = KdvAttribute(sent.АвторMail, 50);
    want.Текст = KdvBody(sent.Текст);
    want.Картинка = "";
    int step = 0;
    ExpectSame(kdv::ParseMessage(page, sent.Код, kClock, step), want);
    EXPECT_EQ(step, 6);
  });
}

}  // namespace
