#include "download_fixed/mdl_FRX.h"

#include "base/cat.h"
#include "base/ru_literal.h"
#include "text/mdl_All.h"
#include "text/mdl_STR.h"
#include "text/strings.h"

namespace mdl_FRX {
namespace {

using mdl_STR::ExtractBetween;

std::string Subject(std::string_view page) {
  std::string subject = mdl_STR::DecodeHtmlEntities(ExtractBetween(page, "<title>", "</title>"));
  return subject.empty() ? std::string("(...пусто...)"_ru) : subject;
}

std::string ReplyTo(std::string_view page) {
  return std::string(ExtractBetween(page, "в ответ на: <a href=\""_ru, ".html\">"));
}

std::string Author(std::string_view page) {
  constexpr std::size_t kLongest = 70;
  return std::string(ExtractBetween(page, "<input type=hidden name=\"origname\" value=\"", "\"").substr(0, kLongest));
}

std::string Email(std::string_view page) {
  constexpr std::size_t kLongest = 50;
  const std::size_t input = text::Find(1, page, "origemail");
  if (input == 0) return {};
  return std::string(ExtractBetween(text::Mid(page, input), "value=\"", "\"").substr(0, kLongest));
}

std::string Body(std::string_view page) {
  std::string_view body = ExtractBetween(page, "COLS=55 ROWS=6>", "</textarea>");
  for (const std::string_view line_break : {"\n", "\r\n"})
    if (body.starts_with(line_break)) return std::string(body.substr(line_break.size()));
  return std::string(body);
}

// "Пятница, 15 Март 2002 в 12:30:05"
std::string Date(std::string_view page) {
  const std::string_view value = ExtractBetween(page, "<input type=hidden name=\"origdate\" value=\"", "\"");
  const std::string_view date = ExtractBetween(value, ", ", " в "_ru);
  const auto parts = text::Split(date, " ");
  if (parts.size() != 3) return std::string(date);
  return Cat(parts[0], "-", mdl_All::MonthNumber(parts[1]), "-", parts[2]);
}

struct Field {
  std::string_view name;
  std::string (*extract)(std::string_view page);
};
constexpr Field kFields[] = {{"Тема"_ru, Subject},    {"Вответ"_ru, ReplyTo}, {"Автор"_ru, Author},
                             {"АвторMail"_ru, Email}, {"Текст"_ru, Body},     {"Дата"_ru, Date}};

}  // namespace

std::string ExtractField(std::string_view page, std::string_view field) {
  for (const auto& [name, extract] : kFields)
    if (name == field) return extract(page);
  return {};
}

}  // namespace mdl_FRX
