#include "download_fixed/fixed_session.h"

#include <string>

#include "base/cat.h"
#include "base/checked.h"
#include "download/page_code.h"

void FixedSession::cmdDownload_Click(std::string_view kind, const RangeChoice& choice) {
  with_.view.ClearLog();
  if (kind.empty()) return with_.view.ShowMessage(MessageIcon::kNone, kUnknownForumMessage);
  const FixedForum* forum = FindFixedForum(kind);
  if (forum == nullptr) return;
  // What was asked of a look-up before must not stop this session.
  StopRequested_ = UnloadRequested_ = false;
  try {
    if (const auto range = ChooseRange(*forum, choice)) Run(*forum, *range);
  } catch (const Error& error) {
    ReportBroken(error);
  }
  with_.records.Flush();
  if (UnloadRequested_) with_.view.Close();
}

void FixedSession::cmdCancelDL_Click() {
  with_.inet.Cancel();
  StopRequested_ = true;
  with_.view.SetHint(kWaitHint);
}

void FixedSession::cmdGetFirst_Click() {
  try {
    with_.view.SetBegin(Cat(with_.GetFirst()));
  } catch (const Error& error) {
    ReportBroken(error);
  }
}

void FixedSession::cmdGetLast_Click(std::string_view kind) {
  const FixedForum* forum = FindFixedForum(kind);
  if (forum == nullptr) return;
  try {
    if (const std::int32_t last = forum->look_up_last(with_); last >= 1) with_.view.SetEnd(Cat(last));
  } catch (const Error& error) {
    ReportBroken(error);
  }
}

bool FixedSession::MayClose() {
  StopRequested_ = UnloadRequested_ = true;
  with_.inet.Cancel();
  with_.view.SetHint(kWaitHint);
  return with_.view.IsEnabled(SessionButton::cmdDownload);
}

std::optional<NumberRange> FixedSession::ChooseRange(const FixedForum& forum, const RangeChoice& choice) {
  if (choice.automatic) return EverythingNew(forum);
  const auto range = ManualRange(choice);
  if (!range) {
    with_.view.SetHint(kBadNumberHint);
  } else if (range->last < range->first) {
    with_.view.SetHint(forum.range_error);
    return std::nullopt;
  }
  return range;
}

std::optional<NumberRange> FixedSession::EverythingNew(const FixedForum& forum) {
  const std::int32_t first = CheckedAdd(with_.GetFirst(), 1);
  const std::int32_t last = forum.look_up_last(with_);
  const std::int32_t in_base = with_.GetFirst();
  if (last == in_base) {
    with_.view.SetHint(kNothingNewHint);
    return std::nullopt;
  }
  if (last < in_base || last == 0) return std::nullopt;  // the look-up has said why
  return NumberRange{first, last};
}

void FixedSession::Run(const FixedForum& forum, NumberRange range) {
  SessionView& view = with_.view;
  view.SetHint(GettingHint(range));
  ShowRunning(view);
  view.SortRowsNewestFirst();
  // One less than the range holds. Users know the line so; kept.
  counters_ = {.total = CheckedSub(range.last, range.first)};
  view.ClearRows();
  for (std::int64_t i = range.first; i <= range.last; ++i) {
    if (StopRequested_) return ReportStopped();
    const auto number = static_cast<std::int32_t>(i);
    view.SetProgress(Percent(number, range));
    view.AddRow(RowText(number, range.first));
    view.SetCell(row_column::kNumber, Cat(number));
    if (with_.records.msgExist(number))
      Skip(number);
    else
      Load(forum, number);
    view.SetPanel(2, Summary(counters_));
    view.ProcessEvents();
  }
  ShowEnd();
}

void FixedSession::Skip(std::int32_t number) {
  Printstatus(with_.view, "Пропущен : уже есть"_ru);
  with_.Log(Cat("Пропустил "_ru, number));
  with_.view.SetIcon(row_icon::kSkipped);
  with_.Bar(Cat("Пропущено "_ru, number));
  CountOne(counters_.skipped);
}

void FixedSession::Load(const FixedForum& forum, std::int32_t number) {
  with_.view.SetCell(row_column::kStatus, "Импортирую....."_ru);
  with_.Bar(Cat("Загружаю "_ru, number));
  with_.view.SetHourglass(true);
  with_.view.SetIcon(row_icon::kFetching);
  const std::optional<std::string> page = Fetch(forum, number);
  with_.view.SetHourglass(false);
  if (page)
    Take(forum, *page, number);
  else
    ReportNoConnection();
}

// None when the transfer failed. A cancelled one gives an empty page.
std::optional<std::string> FixedSession::Fetch(const FixedForum& forum, std::int32_t number) {
  const std::string address = forum.page_address(with_, number);
  with_.Log(Cat("Открываю "_ru, address));
  try {
    std::string page = with_.inet.OpenUrl(address, PageFetcher::kDefaultTimeout);
    with_.Log(Cat("Загрузил "_ru, page.size(), " байт из сообщения "_ru, number));
    return page;
  } catch (const TransferError&) {
    return std::nullopt;
  }
}

void FixedSession::Take(const FixedForum& forum, std::string_view page, std::int32_t number) {
  switch (forum.check(page)) {
    case page_code::kMessage:
      CountOne(counters_.loaded);
      forum.import(with_, page, number);
      with_.Bar(Cat("Загрузил "_ru, number));
      with_.view.SetIcon(row_icon::kLoaded);
      break;
    case page_code::kNoSuchMessage:
      CountOne(counters_.not_found);
      Printstatus(with_.view, "Not Found (404)");
      with_.Bar(Cat("Не нашел "_ru, number));
      with_.view.SetIcon(row_icon::kNotFound);
      break;
    case page_code::kNotLoaded:
      with_.Log("Ошибка соединения"_ru);
      Printstatus(with_.view, "Not Loaded");
      with_.Bar("Проверьте соединение"_ru);
      with_.view.SetIcon(row_icon::kNoConnection);
      break;
  }
}

// The number is left out of the base; nothing is tried again.
void FixedSession::ReportNoConnection() {
  constexpr std::string_view kNoConnection = "Нет соединения с сайтом"_ru;
  with_.Log("TimeOut");
  Printstatus(with_.view, "TimeOut");
  with_.Bar(kNoConnection);
  with_.forum_log.Log(kNoConnection);  // a second time; kept
  with_.view.SetIcon(row_icon::kNoConnection);
}

void FixedSession::ShowEnd() {
  with_.view.SetHourglass(false);
  ShowIdle(with_.view);
  with_.view.SetProgress(0);
  with_.view.SetHint(kIdleHint);
}

void FixedSession::ReportStopped() {
  with_.view.SetHourglass(false);
  ShowIdle(with_.view);
  with_.view.SetProgress(0);
  with_.Log("Скачивание остановлено"_ru);
  with_.Bar(kStoppedText);
  StopRequested_ = false;
  with_.view.SetHint(kIdleHint);
}

// The base cannot be read, or a number is too large: the session ends, and says what happened.
void FixedSession::ReportBroken(const Error& error) {
  ShowEnd();
  with_.Log(error.what());
  with_.Bar(error.what());
  with_.view.SetHint(error.what());
}
