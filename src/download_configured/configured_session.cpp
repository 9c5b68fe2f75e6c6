#include "download_configured/configured_session.h"

#include <string>

#include "base/cat.h"
#include "base/checked.h"
#include "download/page_code.h"
#include "download_configured/import.h"
#include "download_configured/page_check.h"
#include "download_configured/transfer_states.h"
#include "text/numbers.h"

ConfiguredSession::ConfiguredSession(const ConfiguredDownload& with) : with_(with) {
  with_.ie.OnStateChanged([this](int state) { ie_StateChanged(state); });
}

ConfiguredSession::~ConfiguredSession() { with_.ie.OnStateChanged({}); }

void ConfiguredSession::cmdDownload_Click(const RangeChoice& choice) {
  if (with_.kind.empty()) return with_.view.ShowMessage(MessageIcon::kCritical, kUnknownForumMessage);
  stop_ = false;  // set by a click after the last session's end
  counters_ = {};
  try {
    if (const auto range = ChooseRange(choice)) Run(*range);
  } catch (const Error& error) {
    ReportBroken(error);
  }
  with_.records.Flush();
}

void ConfiguredSession::cmdCancelDL_Click() {
  with_.ie.Cancel();
  stop_ = true;
  with_.view.SetHint(kWaitHint);
}

void ConfiguredSession::cmdGetFirst_Click() {
  try {
    with_.view.SetBegin(Cat(with_.GetFirst()));
  } catch (const Error& error) {
    ReportBroken(error);
  }
}

void ConfiguredSession::cmdGetLast_Click() {
  try {
    with_.view.SetEnd(Cat(std::int64_t{with_.GetFirst()} + kProposedNumbers));
    with_.view.SetHint(
        "Форум не сообщает номер последнего сообщения. Предлагаю 100 номеров после последнего в базе"_ru);
  } catch (const Error& error) {
    ReportBroken(error);
  }
}

bool ConfiguredSession::MayClose() {
  with_.view.SetHint(kWaitHint);
  return with_.view.IsEnabled(SessionButton::cmdDownload);
}

std::optional<NumberRange> ConfiguredSession::ChooseRange(const RangeChoice& choice) {
  if (choice.automatic) return FirstAfterBase();
  const auto range = ManualRange(choice);
  if (!range) {
    with_.view.SetHint(kBadNumberHint);
  } else if (CheckedSub(range->last, range->first) < 1) {  // a single message is refused; kept
    with_.view.SetHint("Ошибка : номер первого должен быть меньше последнего..."_ru);
    return std::nullopt;
  }
  return range;
}

std::optional<NumberRange> ConfiguredSession::FirstAfterBase() {
  constexpr std::int32_t kAutomatic = 101;  // numbers of one automatic session
  const std::int32_t in_base = with_.GetFirst();
  const NumberRange range{CheckedAdd(in_base, 1), CheckedAdd(in_base, kAutomatic)};
  with_.view.SetEnd(Cat(range.last));
  const std::int32_t now_in_base = with_.GetFirst();
  if (range.last == now_in_base) with_.view.SetHint(kNothingNewHint);
  if (range.last <= now_in_base) return std::nullopt;
  return range;
}

void ConfiguredSession::Run(NumberRange range) {
  SessionView& view = with_.view;
  url_ = with_.Setting("URL");
  url_suffix_ = with_.Setting("URLSFX");
  timeout_ = text::RoundHalfEven(text::LenientNumber(with_.Setting("TIMEOUT")));
  view.SetHint(GettingHint(range));
  with_.forum_log.Log(GettingHint(range));
  ShowRunning(view);
  view.ClearRows();
  counters_.total = CheckedAdd(CheckedSub(range.last, range.first), 1);
  has_row_ = false;
  view.ClearLog();
  const std::int32_t end = CheckedAdd(range.last, 1);
  for (std::int32_t current = range.first; current != end;) {
    if (stop_) return Interrupt();
    try {
      if (!DoNumber(range, current)) return Interrupt();
      current = CheckedAdd(current, 1);
      has_row_ = false;
      view.ProcessEvents();
    } catch (const Error&) {
      ReportTrapped();
      view.PauseBeforeRetry();  // lets a click on the stop button in; the same number comes next
    }
  }
  view.Enable(SessionButton::cmdDownload, true);
  view.Enable(SessionButton::cmdGetLast, true);
  view.SetProgress(0);
  view.SetHint(kIdleHint);
}

// False when the user stopped the session while the page came.
bool ConfiguredSession::DoNumber(NumberRange range, std::int32_t current) {
  with_.view.SetProgress(Percent(current, range));
  AddRow(range, current);
  if (with_.records.msgExist(current))
    Skip(current);
  else if (!Load(current))
    return false;
  with_.Bar(Summary(counters_));
  return true;
}

void ConfiguredSession::AddRow(NumberRange range, std::int32_t current) {
  if (!has_row_) with_.view.AddRow(RowText(current, range.first));
  has_row_ = true;
  with_.view.SetCell(row_column::kNumber, text::Padded(current, 6));
}

void ConfiguredSession::Skip(std::int32_t current) {
  Printstatus(with_.view, "Пропущен : уже есть"_ru);
  with_.Log(Cat("Пропустил "_ru, current));
  with_.view.SetIcon(row_icon::kSkipped);
  with_.Bar(Cat("Пропустил "_ru, current));
  CountOne(counters_.skipped);
}

bool ConfiguredSession::Load(std::int32_t current) {
  with_.view.SetCell(row_column::kStatus, "Импортирую....."_ru);
  with_.Bar(Cat("Загружаю "_ru, current));
  with_.view.SetHourglass(true);
  with_.view.SetIcon(row_icon::kFetching);
  const std::string url = Cat(url_, current, url_suffix_);
  with_.Log(Cat("Открываю "_ru, url));
  const std::string page = with_.Fetch(url, timeout_);
  if (stop_) return false;
  with_.Log(Cat("Загрузил "_ru, page.size(), " байт из сообщения "_ru, current));
  with_.forum_log.Log(page);
  with_.view.SetHourglass(false);
  Take(page, current);
  return true;
}

void ConfiguredSession::Take(const std::string& page, std::int32_t current) {
  switch (trueMsg(with_.kind, page)) {
    case page_code::kNotLoaded:  // counted nowhere, and not tried again
      with_.Log("Ошибка соединения"_ru);
      Printstatus(with_.view, "Not Loaded");
      with_.view.SetCell(row_column::kStatus, " Нет коннекта"_ru);
      with_.Bar("Проверьте соединение"_ru);
      with_.view.SetIcon(row_icon::kNoConnection);
      break;
    case page_code::kMessage: Import(page, current); break;
    case page_code::kNoSuchMessage:
      CountOne(counters_.not_found);
      Printstatus(with_.view, "Not Found (404)");
      with_.Bar(Cat("Не нашел "_ru, current));
      with_.view.SetCell(row_column::kStatus, " Не найден"_ru);
      with_.view.SetIcon(row_icon::kNotFound);
      break;
  }
}

void ConfiguredSession::Import(const std::string& page, std::int32_t current) {
  if (ImportPage(with_, page, current, timeout_)) {
    CountOne(counters_.loaded);
    with_.Bar(Cat("Загрузил "_ru, current));
    with_.view.SetCell(row_column::kStatus, "Ок"_ru);
    with_.view.SetIcon(row_icon::kLoaded);
  } else {
    CountOne(counters_.skipped);
    with_.Bar(Cat("Ошибка импорта "_ru, current));
    with_.view.SetCell(row_column::kStatus, "Пропущен"_ru);
    with_.view.SetIcon(row_icon::kNotFound);
  }
}

void ConfiguredSession::ReportTrapped() {
  with_.Log("TimeOut");
  Printstatus(with_.view, "TimeOut");
  with_.Bar("Нет соединения с сайтом"_ru);
  with_.view.SetIcon(row_icon::kNoConnection);
  with_.view.SetHourglass(false);
}

// The status goes into the row added last, even one that was finished; kept.
void ConfiguredSession::Interrupt() {
  with_.view.SetHourglass(false);
  with_.view.Enable(SessionButton::cmdDownload, true);
  with_.view.Enable(SessionButton::cmdGetLast, true);
  with_.Log("Скачивание остановлено"_ru);
  with_.Bar(kStoppedText);
  with_.view.ScrollToRow();
  with_.view.SetCell(row_column::kStatus, "Остановлено..."_ru);
  with_.view.SetHint(kIdleHint);
  stop_ = false;
}

// The base cannot be read or a setting is no number; no page has been asked for.
void ConfiguredSession::ReportBroken(const Error& error) {
  ShowIdle(with_.view);
  with_.Log(error.what());
  with_.Bar(error.what());
  with_.view.SetHint(error.what());
}

void ConfiguredSession::ie_StateChanged(int state) {
  if (const std::string_view text = TransferStateText(state); !text.empty()) with_.Bar(text);
  with_.view.ProcessEvents();
}
