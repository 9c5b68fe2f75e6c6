#include "cli/fetch_view.h"

#include <poll.h>

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
  StopIfAsked();
}

void FetchView::EndRow() {
  Print(Outcome());
  row_ = {};
}

std::string FetchView::Outcome() {
  if (row_.icon == row_icon::kSkipped) {
    ++totals_.already_there;
    return std::string("уже есть в базе"_ru);
  }
  if (records_.msgExist(row_.number)) {
    ++totals_.stored;
    return Cat("записано: "_ru, row_.subject, " - ", row_.author);
  }
  if (row_.icon == row_icon::kNotFound && row_.status != kNotImported) {
    ++totals_.absent;
    return std::string("нет такого сообщения"_ru);
  }
  ++totals_.failed;
  return Cat("не получено: "_ru, text::Trim(row_.status));
}

void FetchView::Print(const std::string& outcome) {
  if (on_terminal_)
    out_ << cp1251::ToUtf8(Cat("\r\033[K", percent_, " %  № "_ru, row_.number, "  записано "_ru, totals_.stored,
                               ", нет на форуме "_ru, totals_.absent, ", не получено "_ru, totals_.failed));
  else
    out_ << row_.number << ' ' << OneLine(outcome) << '\n';
  out_.flush();
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
  StopIfAsked();
}

std::string TotalsText(const FetchView::Totals& totals) {
  return Cat("Записано сообщений: "_ru, totals.stored, ", уже были в базе: "_ru, totals.already_there,
             ", нет на форуме: "_ru, totals.absent, ", не получено: "_ru, totals.failed);
}

}  // namespace cli
