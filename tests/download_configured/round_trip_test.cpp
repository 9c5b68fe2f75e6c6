#include <gtest/gtest.h>

#include <functional>

#include "base/cat.h"
#include "base/ru_literal.h"
#include "demo_forum/demo_pages.h"
#include "download/page_code.h"
#include "download_configured/mdl_GELIUM.h"
#include "download_configured/mdl_MSHA.h"
#include "download_configured/mdl_OWS.h"
#include "download_configured/mdl_PTRV.h"
#include "download_configured/page_check.h"
#include "support/fixed_clock.h"
#include "support/message_generator.h"
#include "support/page_losses.h"
#include "text/dates.h"

namespace {

using namespace page_losses;
using testing::PrintToString;

const FixedClock kClock(2002, 6, 15);

// The fields as the parsers give them.
struct Fields {
  std::string subject, author, email, reply_to, date, body;
};

Fields Common(const MessageRecord& sent) {
  return {.subject = DecodedDashes(sent.Тема),
          .author = Escaped(sent.Автор),
          .email = Escaped(sent.АвторMail),
          .reply_to = Cat(sent.Вответ),
          .date = text::FormatDate(sent.Дата, "yyyy-mm-dd"),
          .body = DecodedDashes(sent.Текст)};
}

std::string StoredBody(std::string_view body) {
  const std::string trimmed = WithoutOuterBreaks(body);
  return trimmed.empty() ? " " : trimmed;
}

void ExpectFields(const std::function<std::string(std::string_view field)>& parse, const Fields& want) {
  EXPECT_EQ(PrintToString(parse("Тема"_ru)), PrintToString(want.subject));
  EXPECT_EQ(PrintToString(parse("Автор"_ru)), PrintToString(want.author));
  EXPECT_EQ(parse("АвторMail"_ru), want.email);
  EXPECT_EQ(parse("Вответ"_ru), want.reply_to);
  EXPECT_EQ(parse("Дата"_ru), want.date);
  EXPECT_EQ(PrintToString(parse("Текст"_ru)), PrintToString(want.body));
  EXPECT_EQ(parse("Картинка"_ru), "");
}

// The four characters behind the last "m:" are lost on the page; here nobody misses them.
std::string WithFillersBehindTimes(std::string_view text) { return Replaced(text, "m:", "m:...."); }

std::string BehindLastTime(std::string_view text) {
  std::size_t begin = 1;
  for (std::size_t at = 1; (at = text::Find(at, text, "m:....")) != 0;) begin = at += 6;
  return std::string(text::Mid(text, begin));
}

TEST(RoundTrip, PtrvMessages) {
  MessageGenerator messages(3);
  for (int i = 0; i < RoundTrips() && !HasFailure(); ++i) {
    MessageRecord sent = messages.Next();
    sent.Текст = WithFillersBehindTimes(sent.Текст);
    const std::string page = demo_pages::PtrvPage(sent);
    EXPECT_EQ(trueMsg("ptrv", page), page_code::kMessage);

    Fields want = Common(sent);
    want.author = want.author.substr(want.author.rfind('=') + 1);  // a nick is read from behind its last "="
    want.body = StoredBody(DecodedDashes(BehindLastTime(sent.Текст)));
    ExpectFields([&](std::string_view field) { return mdl_PTRV::ParsePtrvField(page, field, kClock); }, want);
  }
}

Fields ShtmlFields(const MessageRecord& sent) {
  Fields want = Common(sent);
  if (sent.Автор.empty() && !sent.АвторMail.empty())
    want.author = Cat("<a href=\"mailto:", want.email, "\"></a>");  // a link without a text counts as the nick
  want.author = text::Trim(want.author);
  return want;
}

TEST(RoundTrip, MoyshaMessages) {
  MessageGenerator messages(4);
  for (int i = 0; i < RoundTrips() && !HasFailure(); ++i) {
    const MessageRecord sent = messages.Next();
    const std::string page = demo_pages::MoyshaPage(sent);
    EXPECT_EQ(trueMsg("moysha", page), page_code::kMessage);
    Fields want = ShtmlFields(sent);
    want.body = StoredBody(want.body);
    ExpectFields([&](std::string_view field) { return mdl_MSHA::ParseMoyshaField(page, field); }, want);
  }
}

TEST(RoundTrip, GeliumMessages) {
  MessageGenerator messages(5);
  for (int i = 0; i < RoundTrips() && !HasFailure(); ++i) {
    const MessageRecord sent = messages.Next();
    const std::string page = demo_pages::GeliumPage(sent);
    EXPECT_EQ(trueMsg("gelium", page), page_code::kMessage);
    Fields want = ShtmlFields(sent);
    want.body = StoredBody(DecodedDashes(Replaced(sent.Текст, "Ответы и комментарии:"_ru, "")));
    ExpectFields([&](std::string_view field) { return mdl_GELIUM::ParseGeliumField(page, field); }, want);
  }
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
  MessageGenerator messages(6);
  for (int i = 0; i < RoundTrips() && !HasFailure(); ++i) {
    const MessageRecord sent = messages.Next();
    const std::string page = demo_pages::OwsPage(sent), author_page = demo_pages::OwsAuthorPage(sent);
    EXPECT_EQ(trueMsg("ows_ptrv", page), page_code::kMessage);
    Fields want = Common(sent);
    want.subject = WithoutOuterBreaks(DecodedDashes(Replaced(Replaced(sent.Тема, "  ", ""), "\r\n", "")));
    want.author = text::Trim(DecodedDashes(sent.Автор));
    want.body = OwsBody(sent.Текст);
    ExpectFields(
        [&](std::string_view field) {
          return mdl_OWS::ParseOwsField(field == "АвторMail"_ru ? author_page : page, field);
        },
        want);
  }
}

}  // namespace
