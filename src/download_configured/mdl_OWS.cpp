#include "download_configured/mdl_OWS.h"

#include "base/ru_literal.h"
#include "download_configured/page_fields.h"
#include "text/dates.h"
#include "text/mdl_All.h"
#include "text/mdl_STR.h"
#include "text/numbers.h"
#include "text/strings.h"

namespace mdl_OWS {
namespace {

using mdl_STR::ExtractBetween;
using text::LetterCase;

// Blanks of the page's own lay-out; other numbers of blanks are the author's.
constexpr std::string_view kSubjectIndent = "  ", kBodyIndent = "                  ";
static_assert(kBodyIndent.size() == 18);
constexpr std::string_view kLineBreak = "\r\n";

std::string WithoutLayout(std::string_view text, std::string_view indent) {
  return text::ReplaceAll(text::ReplaceAll(text, indent, ""), kLineBreak, "");
}

std::string PlainText(std::string_view markup) {
  return std::string(text::Trim(mdl_STR::DecodeHtmlEntities(mdl_STR::StripTags(markup))));
}

std::string WithoutOuterBreaks(std::string_view text) {
  return std::string(mdl_STR::TrimTrailingBreaks(mdl_STR::TrimLeadingBreaks(text)));
}

std::string Subject(std::string_view page) {
  const std::string_view line = ExtractBetween(page, "Views:", "[<small>");
  const bool has_icon = text::Contains(line, "<IMG", LetterCase::kExact);
  const std::string_view subject = ExtractBetween(line, has_icon ? ".gif\">" : "<B>", "</B>");
  return WithoutOuterBreaks(PlainText(WithoutLayout(subject, kSubjectIndent)));
}

std::string ReplyTo(std::string_view page) {
  const std::string_view link = ExtractBetween(page, "[<small", "</small>]");
  return text::NumberText(text::LenientNumber(ExtractBetween(link, "post=", ";")));
}

std::string Author(std::string_view page) { return PlainText(ExtractBetween(page, "<big>", "</big>")); }

std::string Email(std::string_view author_page) {
  return text::ReplaceAll(ExtractBetween(author_page, "mailto:", ">"), "\"", "");
}

std::string Body(std::string_view page) {
  std::string_view cell = ExtractBetween(page, "<HR SIZE=", "</TABLE><BR>");
  cell = ExtractBetween(ExtractBetween(cell, "<FONT", "</TBODY>"), ">", "</FONT>");
  const std::string lines =
      text::ReplaceAll(WithoutLayout(cell, kBodyIndent), "<BR>", kLineBreak, LetterCase::kIgnored);
  return WithoutOuterBreaks(PlainText(lines));
}

// "March&nbsp;15,&nbsp;2002": of each entity its ";" is left, and separates.
std::string Date(std::string_view page) {
  const std::string line = text::ReplaceAll(ExtractBetween(page, "</big>", "<BR>Views:"), " ", "");
  const std::string marked = WithoutOuterBreaks(text::Trim(ExtractBetween(line, "<br><br>", "<br><br>")));
  const std::string date = text::ReplaceAll(text::ReplaceAll(marked, "&nbsp", "", LetterCase::kIgnored), ",", "");
  const auto parts = text::Split(date, ";");
  const int month = text::StrictInteger(mdl_All::MonthNumber(text::Piece(parts, 0)));
  const int day = text::StrictInteger(text::Piece(parts, 1));
  const int year = text::StrictInteger(text::Piece(parts, 2));
  return text::FormatDate(text::DateFromParts(year, month, day), "yyyy-mm-dd");
}

constexpr FieldRule kFields[] = {{"Тема"_ru, Subject},    {"Вответ"_ru, ReplyTo}, {"Автор"_ru, Author},
                                 {"АвторMail"_ru, Email}, {"Текст"_ru, Body},     {"Дата"_ru, Date}};

}  // namespace

std::string ParseOwsField(std::string_view page, std::string_view field) {
  return mdl_STR::Koi8ToWin(ParseField(kFields, page, field));
}

}  // namespace mdl_OWS
