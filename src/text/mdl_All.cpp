#include "text/mdl_All.h"

#include "base/ru_literal.h"
#include "text/strings.h"

namespace mdl_All {
namespace {

struct MonthName {
  std::string_view name, number;
};

// Searched in this order. Two letters of May fit all its forms, and come behind March.
constexpr MonthName kMonths[] = {
    {"Янв"_ru, "01"}, {"Фев"_ru, "02"}, {"Мар"_ru, "03"}, {"Апр"_ru, "04"}, {"Ма"_ru, "05"},  {"Июн"_ru, "06"},
    {"Июл"_ru, "07"}, {"Авг"_ru, "08"}, {"Сен"_ru, "09"}, {"Окт"_ru, "10"}, {"Ноя"_ru, "11"}, {"Дек"_ru, "12"},
    {"Jan", "01"},    {"Feb", "02"},    {"Mar", "03"},    {"Apr", "04"},    {"Ma", "05"},     {"Jun", "06"},
    {"Jul", "07"},    {"Aug", "08"},    {"Sep", "09"},    {"Oct", "10"},    {"Nov", "11"},    {"Dec", "12"}};

}  // namespace

std::string_view MonthNumber(std::string_view date) {
  for (const auto& [name, number] : kMonths)
    if (text::Contains(date, name)) return number;
  return "01";
}

std::string_view TextBetween(std::string_view text, std::string_view start, std::string_view end) {
  const std::size_t begin = text::Find(1, text, start);
  if (begin == 0) return {};
  const std::string_view rest = text::Mid(text, begin + start.size());
  const std::size_t stop = text::Find(1, rest, end);
  return stop == 0 ? rest : text::Trim(rest.substr(0, stop - 1));
}

}  // namespace mdl_All
