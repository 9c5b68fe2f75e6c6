#include <gtest/gtest.h>

#include "base/cat.h"
#include "base/ru_literal.h"
#include "demo_forum/demo_pages.h"
#include "download/page_code.h"
#include "download_configured/configured_page.h"
#include "download_configured/page_check.h"
#include "support/fixed_clock.h"
#include "support/message_generator.h"
#include "support/page_losses.h"

namespace {

using namespace page_losses;

/// Knows the page of the author.
struct AuthorsPage : configured_page::Reading {
  explicit AuthorsPage(std::string author_page) : page(std::move(author_page)) {}
  void FieldRead(std::string_view, std::string_view) override {}
  void DateRead(std::string_view, std::optional<OleDate>) override {}
  std::string AuthorPage(std::string_view) override { return page; }
  const std::string page;
};

/// Sends messages as pages of a forum.
/// @param lose  changes what is wanted to what the page can carry
template <typename Lose>
void ExpectRoundTrips(unsigned seed, std::string_view kind, const Lose& lose) {
  ForEachMessage(seed, [&](MessageRecord sent) {
    sent.Текст = Replaced(sent.Текст, "m:", "m:....");  // what the ptrv forum loses behind it, nobody misses
    MessageRecord want = sent;
    want.Тема = DecodedDashes(sent.Тема);
    want.Автор = Escaped(sent.Автор);
    want.АвторMail = Escaped(sent.АвторMail);
    want.Текст = DecodedDashes(sent.Текст);
    want.Картинка.clear();
    lose(want, sent);
    if (want.Текст.empty()) want.Текст = " ";
    const std::string page = demo_pages::MessagePage(kind, sent);
    EXPECT_EQ(trueMsg(kind, page), page_code::kMessage);
    AuthorsPage reading(demo_pages::OwsAuthorPage(sent));
    ExpectSame(configured_page::ParseMessage(kind, page, sent.Код, FixedClock(2002, 6, 15), reading), want);
  });
}

std::string BehindLastTime(std::string_view text) {
  std::size_t begin = 1;
  for (std::size_t at = 1; (at = text::Find(at, text, "m:....")) != 0;) begin = at += 6;
  return std::string(text::Mid(text, begin));
}

TEST(RoundTrip, PtrvMessages) {
  ExpectRoundTrips(3, "ptrv", [](MessageRecord& want, const MessageRecord& sent) {
    want.Автор = want.Автор.substr(want.Автор.rfind('=') + 1);  // a nick is read from behind its last "="
    want.Текст = WithoutOuterBreaks(DecodedDashes(BehindLastTime(sent.Текст)));
  });
}

void LoseAsShtmlPages(MessageRecord& want) {
  if (want.Автор.empty() && !want.АвторMail.empty())
    want.Автор = Cat("<a href=\"mailto:", want.АвторMail, "\"></a>");  // a link without a text counts as the nick
  want.Автор = text::Trim(want.Автор);
  want.Текст = WithoutOuterBreaks(want.Текст);
}

TEST(RoundTrip, MoyshaMessages) {
  ExpectRoundTrips(4, "moysha", [](MessageRecord& want, const MessageRecord&) { LoseAsShtmlPages(want); });
}

TEST(RoundTrip, GeliumMessages) {
  ExpectRoundTrips(5, "gelium", [](MessageRecord& want, const MessageRecord& sent) {
    want.Текст = DecodedDashes(Replaced(sent.Текст, "Ответы и комментарии:"_ru, ""));
    LoseAsShtmlPages(want);
  });
}

// Runs of eighteen blanks are taken for the page's lay-out, and so is a CR LF that stands bare.
std::string OwsBody(std::string_view text) {
  constexpr std::string_view kIndent = "                  ";
  std::string body;
  for (const std::string_view line : text::Split(text, "\r\n"))
    body += Replaced(Replaced(line, kIndent, ""), "\r\n", "") + "\r\n";
  return WithoutOuterBreaks(DecodedDashes(body));
}

TEST(RoundTrip, OwsMessages) {
  ExpectRoundTrips(6, "ows_ptrv", [](MessageRecord& want, const MessageRecord& sent) {
    want.Тема = WithoutOuterBreaks(DecodedDashes(Replaced(Replaced(sent.Тема, "  ", ""), "\r\n", "")));
    want.Автор = text::Trim(DecodedDashes(sent.Автор));
    want.Текст = OwsBody(sent.Текст);
  });
}

}  // namespace
