#include "download_configured/mdl_MSHA.h"

#include "base/ru_literal.h"
#include "download_configured/page_fields.h"
#include "download_configured/shtml_page.h"
#include "text/mdl_STR.h"
#include "text/strings.h"

namespace mdl_MSHA {
namespace {

using mdl_STR::ExtractBetween;

// The body's markup as the forum writes it: in this order, letter case ignored. It draws its smiley as a "J" of
// a symbol font.
constexpr text::Replacement kMarkup[] = {
    {"<DD>", ""}, {"</DD>", "\r\n"}, {"<I>", ""},     {"</I>", ""},           {"<ul>", ""}, {"</ul>", ""},
    {"<li>", ""}, {"</li>", "\r\n"}, {"<P>", "\r\n"}, {"<A href=", " href="}, {"</A>", ""}, {">J<", "> :-)<"},
};

std::string Body(std::string_view page) {
  const std::string_view division = ExtractBetween(page, "<DIV class=divMessage>", "</div>");
  std::string body(ExtractBetween(division, "<dd>", "<hr>"));
  body = text::ReplaceAll(std::move(body), kMarkup, text::LetterCase::kIgnored);
  return BodyToStore(mdl_STR::DecodeHtmlEntities(mdl_STR::StripTags(body)));
}

constexpr FieldRule kFields[] = {{"Тема"_ru, shtml_page::Subject}, {"Вответ"_ru, shtml_page::ReplyTo},
                                 {"Автор"_ru, shtml_page::Author}, {"АвторMail"_ru, shtml_page::Email},
                                 {"Дата"_ru, shtml_page::Date},    {"Текст"_ru, Body}};

}  // namespace

std::string ParseMoyshaField(std::string_view page, std::string_view field) { return ParseField(kFields, page, field); }

}  // namespace mdl_MSHA
