#include "support/recording_view.h"

#include "base/cat.h"

namespace {

std::string_view Name(SessionButton button) {
  switch (button) {
    case SessionButton::cmdDownload: return "cmdDownload";
    case SessionButton::cmdGetLast: return "cmdGetLast";
    case SessionButton::cmdCancelDL: return "cmdCancelDL";
  }
  return "?";
}

}  // namespace

void RecordingView::SetPanel(int panel, std::string_view text) { script_.Add(Cat("bar", panel, ": ", text)); }
void RecordingView::SetHint(std::string_view text) { script_.Add(Cat("hint: ", text)); }
void RecordingView::SetBegin(std::string_view text) { script_.Add(Cat("txtBegin: ", text)); }
void RecordingView::SetEnd(std::string_view text) { script_.Add(Cat("txtEnd: ", text)); }
void RecordingView::ClearLog() { script_.Add("log cleared"); }
void RecordingView::AppendLog(std::string_view text) { script_.Add(Cat("log: ", text)); }
void RecordingView::SetProgress(int percent) { script_.Add(Cat("progress ", percent)); }
void RecordingView::ClearRows() { script_.Add("rows cleared"); }
void RecordingView::SortRowsNewestFirst() { script_.Add("rows sorted"); }
void RecordingView::AddRow(std::string_view text) { script_.Add(Cat("row ", text)); }
void RecordingView::SetCell(int column, std::string_view text) { script_.Add(Cat("cell ", column, ": ", text)); }
void RecordingView::SetIcon(int icon) { script_.Add(Cat("icon ", icon)); }
void RecordingView::SetColour(std::uint32_t bgr) { script_.Add(Cat("colour ", bgr)); }
void RecordingView::ScrollToRow() { script_.Add("scroll to row"); }

void RecordingView::Enable(SessionButton button, bool enabled) {
  script_.Add(Cat(Name(button), enabled ? " on" : " off"));
  if (enabled)
    disabled_.erase(button);
  else
    disabled_.insert(button);
}

void RecordingView::SetHourglass(bool hourglass) {
  if (hourglass == hourglass_) return;
  hourglass_ = hourglass;
  script_.Add(hourglass ? "hourglass" : "normal pointer");
}

void RecordingView::ProcessEvents() { RunEvents("events"); }
void RecordingView::WaitForEvents() { RunEvents("wait"); }
void RecordingView::PauseBeforeRetry() { RunEvents("pause"); }

void RecordingView::RunEvents(std::string_view how) {
  script_.Add(how);
  if (on_events) on_events();
}

void RecordingView::Close() { script_.Add("close"); }

void RecordingView::ShowMessage(MessageIcon icon, std::string_view text) {
  script_.Add(Cat(icon == MessageIcon::kCritical ? "critical box: " : "box: ", text));
}
