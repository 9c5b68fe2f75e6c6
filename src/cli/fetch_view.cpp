#include "cli/fetch_view.h"

#include <poll.h>

#include <algorithm>

#include "base/cat.h"
#include "base/cp1251.h"
#include "base/ru_literal.h"
#include "cli/command.h"
#include "download/session_parts.h"
#include "text/numbers.h"
#include "text/strings.h"

namespace cli {
namespace {

// The words of a stored row that holds less than its page, and of a page that gave no row.
constexpr std::string_view kNotImported = "Пропущен"_ru;
constexpr std::string_view kNotReceived = "не получено: "_ru;

bool IsWordOfCourse(std::string_view hint) { return hint == kIdleHint || hint == kWaitHint || hint == kNothingNewHint; }

}  // namespace

void FetchView::SetPanel(int, std::string_view text) {
  if (text == kStoppedText) stopped_ = true;
}

// A session announces itself, says how it ended, or else why it cannot begin or go on.
void FetchView::SetHint(std::string_view text) {
  if (text.starts_with("Получаю сообщения"_ru)) {
    out_ << cp1251::ToUtf8(text) << std::endl;
  } else if (!IsWordOfCourse(text)) {
    problem_ = text;
  }
}

void FetchView::AddRow(std::string_view) {
  row_ = {};
  retries_ = 0;
}

void FetchView::SetCell(int column, std::string_view text) {
  switch (column) {
    case row_column::kNumber: row_.number = text::LenientLong(text); break;
    case row_column::kAuthor: row_.author = text; break;
    case row_column::kSubject: row_.subject = text; break;
    case row_column::kStatus: row_.status = text; break;
    default: break;
  }
}

// Sessions run events behind every number.
void FetchView::ProcessEvents() {
  if (row_.number != 0) EndRow();
  network_.RunEvents();
  StopIfAsked();
}

void FetchView::EndRow() {
  untold_.push_back(OutcomeOf(row_));
  row_ = {};
  PrintCertain();
}

FetchView::Outcome FetchView::OutcomeOf(const Row& row) const {
  if (row.icon == row_icon::kSkipped) return {row.number, &Totals::already_there, std::string("уже есть в базе"_ru)};
  if (records_.msgExist(row.number))
    return {row.number, &Totals::stored, Cat("записано: "_ru, row.subject, " - ", row.author), row.stored};
  if (row.icon == row_icon::kNotFound && row.status != kNotImported)
    return {row.number, &Totals::absent, std::string("нет такого сообщения"_ru)};
  return {row.number, &Totals::failed, Cat(kNotReceived, text::Trim(row.status))};
}

void FetchView::Settle(const SettledRows& settled) {
  const auto untold = [this](std::int32_t number) {
    return std::find_if(untold_.begin(), untold_.end(),
                        [number](const Outcome& outcome) { return !outcome.certain && outcome.number == number; });
  };
  for (const std::int32_t number : settled.stored) {
    if (const auto outcome = untold(number); outcome != untold_.end()) outcome->certain = true;
    if (number == row_.number) row_.stored = true;
  }
  for (const LostRow& row : settled.lost)
    if (const auto outcome = untold(row.number); outcome != untold_.end())
      *outcome = {row.number, &Totals::failed, Cat(kNotReceived, row.reason)};
  PrintCertain();
}

// The lines keep the order of the session.
void FetchView::PrintCertain() {
  for (; !untold_.empty() && untold_.front().certain; untold_.pop_front()) {
    ++(totals_.*untold_.front().counter);
    Print(untold_.front());
  }
  out_.flush();
}

void FetchView::Print(const Outcome& outcome) {
  if (on_terminal_)
    out_ << cp1251::ToUtf8(Cat("\r\033[K", percent_, " %  № "_ru, outcome.number, "  записано "_ru, totals_.stored,
                               ", нет на форуме "_ru, totals_.absent, ", не получено "_ru, totals_.failed));
  else
    out_ << outcome.number << ' ' << OneLine(outcome.text) << '\n';
}

void FetchView::StopIfAsked() {
  if (interrupt_.Asked() && stop_) stop_();
}

// A base that refuses everything would be asked for ever, and nobody looks on.
void FetchView::PauseBeforeRetry() {
  constexpr int kMostRetries = 5, kPause = 1000;
  if (++retries_ > kMostRetries) {
    problem_ = "База не принимает сообщений, загрузка прекращена"_ru;
    return stop_();
  }
  ::poll(nullptr, 0, kPause);  // a signal ends it
  network_.RunEvents();
  StopIfAsked();
}

std::string TotalsText(const FetchView::Totals& totals) {
  return Cat("Записано сообщений: "_ru, totals.stored, ", уже были в базе: "_ru, totals.already_there,
             ", нет на форуме: "_ru, totals.absent, ", не получено: "_ru, totals.failed);
}

}  // namespace cli
