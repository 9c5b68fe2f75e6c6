#include "download_fixed/rts_an.h"

#include <algorithm>
#include <string>

#include "base/cat.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "download/page_code.h"
#include "text/dates.h"
#include "text/mdl_All.h"
#include "text/mdl_STR.h"
#include "text/numbers.h"
#include "text/strings.h"

namespace rts_an {
namespace {

using mdl_All::TextBetween;
using text::LetterCase;

constexpr std::string_view kLineBreak = "\r\n";
constexpr std::string_view kForumName = "Форум аналитиков"_ru;
constexpr std::string_view kMessageLink = "/default.asp?action=view&id=";

// Both become a double quote. So since the first version, and archives are full of it; kept.
constexpr text::Replacement kQuotes[] = {{"&amp;", "\""}, {"&quot;", "\""}};

constexpr text::Replacement kBodyBreaks[] = {{"<br>", "\r\n"}, {"<p>", "\r\n\r\n"}};

std::string DecodeQuotes(std::string_view page) {
  return text::ReplaceAll(std::string(page), kQuotes, LetterCase::kIgnored);
}

std::string Subject(std::string_view page) {
  std::string subject =
      text::ReplaceAll(TextBetween(page, "<title>", "</title>"), kForumName, "", LetterCase::kIgnored);
  if (subject.ends_with('-')) subject.pop_back();
  return subject;
}

std::string_view Author(std::string_view page) { return TextBetween(page, "align=\"middle\">&nbsp;<b>", "</b>"); }

std::string_view ReplyBlock(std::string_view page) { return TextBetween(page, "В ответ на:"_ru, "</blockquote>"); }

std::string_view ReplyTo(std::string_view reply_block) { return TextBetween(reply_block, "action=view&id=", "\">"); }

std::string_view Email(std::string_view page) { return TextBetween(page, "<a href=\"mailto:", "?subject="); }

std::string_view DateText(std::string_view page) { return TextBetween(page, "\r\n<font size=-1>[", "]"); }

std::string_view Picture(std::string_view page) {
  return TextBetween(page, "Автор:&nbsp;<img src=\"/images/"_ru, ".gif");
}

std::string_view CutBefore(std::string_view text, std::string_view marker) {
  const std::size_t at = text::Find(1, text, marker);
  return at == 0 ? text : text.substr(0, at - 1);
}

// The body starts at the first paragraph behind the forum's own block; what the forum puts between the
// end of the one and the start of the other varies.
std::string_view AllBehindQuotedBlock(std::string_view page) {
  constexpr std::string_view kBlockEnd = "</blockquote>\r\n", kFirstParagraph = "<p>\r\n";
  const std::size_t block_end = text::Find(1, page, kBlockEnd);
  if (block_end == 0) return {};
  return TextBetween(text::Mid(page, block_end + kBlockEnd.size()), kFirstParagraph, "</html>");
}

std::string_view RawBody(std::string_view page) {
  std::string_view body = AllBehindQuotedBlock(page);
  const bool has_replies = text::Contains(body, "<a name='followups'>Ответы:</a>"_ru);
  body = CutBefore(body, has_replies ? "<hr size='2' noshade" : "</blockquote>");
  return CutBefore(body, "<BR><CENTER>");
}

std::string WithLineBreaks(std::string_view body) {
  return text::ReplaceAll(std::string(body), kBodyBreaks, LetterCase::kIgnored);
}

// "5 Мар 2002": what follows the year is not read.
OleDate ToDate(std::string_view date_text, const Clock& clock) {
  const auto parts = text::Split(date_text, " ");
  const std::string day_month_year =
      Cat(text::Piece(parts, 0), "-", mdl_All::MonthNumber(text::Piece(parts, 1)), "-", text::Piece(parts, 2));
  const std::optional<OleDate> date = text::ParseDate(day_month_year, clock);
  if (!date) throw ConversionError(error_number::kTypeMismatch, "Дата сообщения не читается"_ru);
  return *date;
}

}  // namespace

int trueMsg(std::string_view page) {
  if (page.empty()) return page_code::kNotLoaded;
  const std::string_view title = text::Trim(mdl_STR::ExtractBetween(page, "<title>", "</title>"));
  const bool message = !text::Contains(page, "404 Not Found", LetterCase::kExact) &&
                       text::Find(2, title, "- Форум аналитиков"_ru) != 0 &&
                       !text::Contains(page, "[30/12/1899 ]", LetterCase::kExact) &&
                       !text::Contains(page, "WebBoard: Not available</TITLE>", LetterCase::kExact);
  return message ? page_code::kMessage : page_code::kNoSuchMessage;
}

MessageRecord ParseMessage(std::string_view raw_page, std::int32_t number, const Clock& clock, int& step) {
  MessageRecord message;
  message.Код = number;
  step = 2;
  const std::string page = DecodeQuotes(raw_page);
  step = 3;
  message.Тема = Subject(page);
  step = 4;
  message.Автор = Author(page);
  step = 5;
  const std::string_view reply_block = ReplyBlock(page);
  step = 6;
  const std::string_view reply_to = ReplyTo(reply_block);
  step = 7;
  message.АвторMail = Email(page);
  step = 8;
  const std::string_view date_text = DateText(page);
  step = 9;
  message.Картинка = Picture(page);
  step = 13;
  const std::string_view body = RawBody(page);
  step = 14;
  message.Текст = WithLineBreaks(body);
  step = 15;
  message.Дата = ToDate(date_text, clock);
  step = 16;
  if (message.Текст.empty()) message.Текст = kLineBreak;
  step = 17;
  for (std::string* field : {&message.Тема, &message.Автор, &message.АвторMail}) *field = text::Trim(*field);
  message.Вответ = text::LenientLong(reply_to);
  step = 18;
  if (message.Тема.empty()) message.Тема = "(...пусто...)"_ru;
  return message;
}

StoredFields FieldsToStore(const MessageRecord& message) {
  return {{"Текст"_ru, message.Текст},
          DateIfAny("Дата"_ru, message.Дата),
          TextUnlessEmpty("Автор"_ru, message.Автор),
          {"Тема"_ru, message.Тема},
          {"Вответ"_ru, message.Вответ},
          TextUnlessEmpty("АвторMail"_ru, message.АвторMail),
          {"Код"_ru, message.Код},
          {"Картинка"_ru, message.Картинка}};
}

std::int32_t HighestNumber(std::string_view front_page) {
  std::int32_t highest = 0;
  for (std::size_t at = 1; (at = text::Find(at, front_page, kMessageLink)) != 0;) {
    const std::string_view link = text::Mid(front_page, at);
    const std::string_view number = TextBetween(link, kMessageLink, "&");
    highest = std::max(highest, text::LenientLong(number));
    const std::string enclosed = Cat(kMessageLink, number, "&");
    if (!link.starts_with(enclosed)) break;
    at += enclosed.size();
  }
  return highest;
}

}  // namespace rts_an
