#include "store/rescue_report.h"

#include <string_view>

#include "base/cat.h"
#include "base/ru_literal.h"

namespace {

constexpr std::size_t kMostRanges = 100;

/// "3, 7-12, 40"; the list is ascending.
template <typename Number>
std::string Ranges(const std::vector<Number>& numbers) {
  std::string text;
  std::size_t ranges = 0;
  for (std::size_t first = 0, last; first < numbers.size(); first = last + 1) {
    last = first;
    while (last + 1 < numbers.size() && numbers[last + 1] - numbers[last] == 1) ++last;
    if (++ranges > kMostRanges) return Cat(text, " … и ещё "_ru, numbers.size() - first);
    text += Cat(text.empty() ? "" : ", ", numbers[first]);
    if (last > first) text += Cat("-", numbers[last]);
  }
  return text;
}

std::string LostText(const RescueResult& result) {
  if (result.lost == 0) return std::string(result.lost_is_sure ? "0"_ru : "неизвестно сколько"_ru);
  return result.lost_is_sure ? Cat(result.lost) : Cat("не меньше "_ru, result.lost);
}

}  // namespace

std::string RescueSummary(const RescueResult& result) {
  if (!result.complete) return std::string("Спасение остановлено. Новой базы нет, повреждённая осталась прежней."_ru);
  if (!result.HasLosses()) return Cat("Спасены все сообщения: "_ru, result.saved, ".");
  return Cat("Спасено сообщений: "_ru, result.saved, ", из них не полностью: "_ru, result.in_part.size(),
             ". Потеряно: "_ru, LostText(result), ".");
}

std::vector<std::string> RescueDetails(const RescueResult& result) {
  std::vector<std::string> lines;
  if (!result.lost_numbers.empty()) {
    const bool all = result.lost_is_sure && result.lost == result.lost_numbers.size();
    lines.push_back(Cat(all ? "Потеряны сообщения с номерами: "_ru : "Среди потерянных сообщения с номерами: "_ru,
                        Ranges(result.lost_numbers)));
  }
  if (!result.in_part.empty())
    lines.push_back(Cat("Спасены не полностью сообщения с номерами: "_ru, Ranges(result.in_part)));
  if (!result.damaged_pages.empty())
    lines.push_back(Cat("Повреждённые страницы файла: "_ru, Ranges(result.damaged_pages)));
  lines.insert(lines.end(), result.notes.begin(), result.notes.end());
  return lines;
}
