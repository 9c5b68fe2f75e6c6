#include "download_configured/mdl_PTRV.h"

#include "base/ru_literal.h"
#include "download_configured/page_fields.h"
#include "text/dates.h"
#include "text/mdl_All.h"
#include "text/mdl_STR.h"
#include "text/numbers.h"
#include "text/strings.h"

namespace mdl_PTRV {
namespace {

using mdl_STR::ExtractBetween;
using text::LetterCase;

constexpr std::string_view kLinkEnd = "</A>";
constexpr text::Replacement kBodyBreaks[] = {{"<BR>", "\r\n"}, {"<P>", "\r\n"}, {"</P>", "\r\n"}};
constexpr text::Replacement kBodyLinks[] = {{"<A href=", " href="}, {kLinkEnd, ""}};

std::string Subject(std::string_view page) {
  const std::string_view title = ExtractBetween(page, "<title>", "</title>");
  return mdl_STR::DecodeHtmlEntities(text::ReplaceAll(title, "&nbsp;", "", LetterCase::kIgnored));
}

// name="previousname" value="the nick"
std::string Author(std::string_view page) {
  const std::string attributes = text::ReplaceAll(ExtractBetween(page, "previousname", ">"), "\"", "");
  return std::string(text::LastPiece(attributes, "="));
}

std::string_view MessageDivision(std::string_view page) { return ExtractBetween(page, "class=message>", "</div>"); }

// What stands behind the last "=" of the address that a piece of the division links to.
std::string_view LinkValue(std::string_view piece) {
  return text::LastPiece(ExtractBetween(piece, "href=\"", "\">"), "=");
}

std::string Email(std::string_view page) {
  constexpr std::string_view kScheme = "mailto:";
  const auto pieces = text::Split(MessageDivision(page), kLinkEnd);
  if (pieces.size() < 2) return {};
  const std::string_view link = LinkValue(pieces.front());
  if (!text::Contains(link, kScheme, LetterCase::kExact)) return {};
  return std::string(text::Mid(link, kScheme.size() + 1));  // by position, wherever the scheme stands
}

std::string ReplyTo(std::string_view page) {
  const auto pieces = text::Split(MessageDivision(page), kLinkEnd);
  if (pieces.size() < 2) return "0";
  return text::NumberText(text::LenientNumber(LinkValue(pieces[pieces.size() - 2])));
}

std::string_view BehindAuthorLink(std::string_view division) {
  const std::size_t link_end = text::Find(1, division, kLinkEnd);
  return link_end == 0 ? division : text::Mid(division, link_end + kLinkEnd.size());
}

// The header of the quotation ends with a time, "am" or "pm" and a colon. The last "m:" of all counts, even one
// that the author wrote, and a text without any loses its first six characters. Kept on purpose.
std::string_view BehindQuoteHeader(std::string_view body) {
  constexpr std::string_view kHeaderEnd = "m: \r\n\r\n", kTimeEnd = "m:";
  constexpr std::size_t kCutAtHeaderEnd = 7, kCutAtTimeEnd = 6;
  std::size_t at = text::Find(1, body, kHeaderEnd), cut = kCutAtHeaderEnd;
  for (std::size_t next; (next = text::Find(at + 2, body, kTimeEnd)) != 0; cut = kCutAtTimeEnd) at = next;
  return text::Trim(text::Mid(body, at + cut));
}

// Other tags than these stay in the body.
std::string Body(std::string_view page) {
  const std::string_view division = BehindAuthorLink(ExtractBetween(page, "<DIV class=message>", "</DIV>"));
  const std::string lines = text::ReplaceAll(std::string(division), kBodyBreaks, LetterCase::kIgnored);
  std::string body(BehindQuoteHeader(lines));
  body = text::ReplaceAll(std::move(body), kBodyLinks, LetterCase::kIgnored);
  return BodyToStore(mdl_STR::DecodeHtmlEntities(body));
}

// name="previousdate" value="Friday, March 15"
std::string Date(std::string_view page, const Clock& clock) {
  const std::string_view input = ExtractBetween(page, "previousdate", ">");
  const std::string_view value = ExtractBetween(input, "value=\"", "\"");
  if (value.empty()) return {};
  const auto pieces = text::Split(value, ",");
  const std::string month_and_day = mdl_STR::CollapseSpaces(text::Piece(pieces, 1), mdl_STR::Tabs::kAsBlanks);
  const auto words = text::Split(month_and_day, " ");
  const int month = text::StrictInteger(mdl_All::MonthNumber(text::Piece(words, 0)));
  const int day = text::RoundHalfEven(text::LenientNumber(text::Piece(words, 1)));
  const int year = FindYearForWeekday(month, day, DayOfWeekNumber(pieces.front()), clock);
  return text::FormatDate(text::DateFromParts(year, month, day), "yyyy-mm-dd");
}

constexpr FieldRule kFields[] = {
    {"Тема"_ru, Subject}, {"Автор"_ru, Author}, {"АвторMail"_ru, Email}, {"Вответ"_ru, ReplyTo}, {"Текст"_ru, Body}};

}  // namespace

std::string ParsePtrvField(std::string_view page, std::string_view field, const Clock& clock) {
  return field == "Дата"_ru ? Date(page, clock) : ParseField(kFields, page, field);
}

int DayOfWeekNumber(std::string_view text) {
  int number = 0;
  for (const std::string_view day : {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"}) {
    ++number;
    if (text::Contains(text, day)) return number;
  }
  return 0;
}

std::int16_t FindYearForWeekday(int month, int day, int weekday, const Clock& clock) {
  int year = ole_date::ToCivil(clock.Now()).year;
  while (ole_date::Weekday(text::DateFromParts(year, month, day)) != weekday) --year;
  return static_cast<std::int16_t>(year);
}

}  // namespace mdl_PTRV
