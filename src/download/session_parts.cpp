#include "download/session_parts.h"

#include <algorithm>
#include <cmath>

#include "base/cat.h"
#include "base/checked.h"
#include "text/dates.h"
#include "text/numbers.h"

std::optional<NumberRange> ManualRange(const RangeChoice& choice) {
  constexpr double kLargest = 100000;
  const double begin = text::LenientNumber(choice.begin), end = text::LenientNumber(choice.end);
  if (begin == 0 || end == 0 || begin > kLargest || end > kLargest) return std::nullopt;
  return NumberRange{text::LenientLong(choice.begin), text::LenientLong(choice.end)};
}

void CountOne(std::int32_t& counter) { counter = CheckedAdd(counter, 1); }

std::string Summary(const Counters& counters) {
  return Cat("Загружено "_ru, counters.loaded, ", не найдено "_ru, counters.not_found, ", пропущено "_ru,
             counters.skipped, ". Всего к загрузке - "_ru, counters.total);
}

std::string GettingHint(NumberRange range) {
  return Cat("Получаю сообщения с "_ru, range.first, " по "_ru, range.last, "....");
}

std::string RowText(std::int32_t number, std::int32_t first) {
  return text::Padded(std::int64_t{number} - first + 1, 5);
}

int Percent(std::int32_t number, NumberRange range) {
  const double done = static_cast<double>(number) - range.first;
  const double all = static_cast<double>(range.last) - range.first + 1;
  return static_cast<int>(std::clamp(done / all * 100, 0.0, 100.0));
}

std::string LogLine(const Clock& clock, std::string_view text) {
  double days;
  const OleDate time_of_day{std::modf(std::abs(clock.Now().days), &days)};
  return Cat("\r\n", text::DateText(time_of_day), " - ", text);
}

void TellNotStored(SessionView& view, const Clock& clock, std::int32_t number, std::string_view reason) {
  view.AppendLog(LogLine(clock, Cat("Сообщение "_ru, number, " не записано: "_ru, reason)));
}

void ShowRunning(SessionView& view) {
  view.Enable(SessionButton::cmdDownload, false);
  view.Enable(SessionButton::cmdGetLast, false);
  view.Enable(SessionButton::cmdCancelDL, true);
}

void ShowIdle(SessionView& view) {
  view.Enable(SessionButton::cmdDownload, true);
  view.Enable(SessionButton::cmdGetLast, true);
  view.Enable(SessionButton::cmdCancelDL, false);
}

void Printstatus(SessionView& view, std::string_view text) {
  view.SetCell(row_column::kStatus, text);
  view.SetIcon(row_icon::kStatus);
  view.SetColour(kRed);
}
