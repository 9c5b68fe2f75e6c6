#pragma once

#include <functional>
#include <set>

#include "base/cat.h"
#include "download/session_view.h"
#include "support/script.h"

/// A window that writes down all that a session tells it. A pointer set to what it is already is no event.
class RecordingView : public SessionView {
 public:
  explicit RecordingView(Script& script) : script_(script) {}

  /// Plays the user, whenever the session lets events run.
  std::function<void()> on_events;

  void SetPanel(int panel, std::string_view text) override { script_.Add(Cat("bar", panel, ": ", text)); }
  void SetHint(std::string_view text) override { script_.Add(Cat("hint: ", text)); }
  void SetBegin(std::string_view text) override { script_.Add(Cat("txtBegin: ", text)); }
  void SetEnd(std::string_view text) override { script_.Add(Cat("txtEnd: ", text)); }
  void ClearLog() override { script_.Add("log cleared"); }
  void AppendLog(std::string_view text) override { script_.Add(Cat("log: ", text)); }
  void SetProgress(int percent) override { script_.Add(Cat("progress ", percent)); }
  void ClearRows() override { script_.Add("rows cleared"); }
  void SortRowsNewestFirst() override { script_.Add("rows sorted"); }
  void AddRow(std::string_view text) override { script_.Add(Cat("row ", text)); }
  void SetCell(int column, std::string_view text) override { script_.Add(Cat("cell ", column, ": ", text)); }
  void SetIcon(int icon) override { script_.Add(Cat("icon ", icon)); }
  void SetColour(std::uint32_t bgr) override { script_.Add(Cat("colour ", bgr)); }
  void ScrollToRow() override { script_.Add("scroll to row"); }
  void Enable(SessionButton button, bool enabled) override {
    const char* const name = button == SessionButton::cmdDownload  ? "cmdDownload"
                             : button == SessionButton::cmdGetLast ? "cmdGetLast"
                                                                   : "cmdCancelDL";
    script_.Add(Cat(name, enabled ? " on" : " off"));
    if (enabled)
      disabled_.erase(button);
    else
      disabled_.insert(button);
  }
  bool IsEnabled(SessionButton button) const override { return !disabled_.contains(button); }
  void SetHourglass(bool hourglass) override {
    if (hourglass != hourglass_) script_.Add(hourglass ? "hourglass" : "normal pointer");
    hourglass_ = hourglass;
  }
  void ProcessEvents() override { RunEvents("events"); }
  void WaitForEvents() override { RunEvents("wait"); }
  void PauseBeforeRetry() override { RunEvents("pause"); }
  void Close() override { script_.Add("close"); }
  void ShowMessage(MessageIcon icon, std::string_view text) override {
    script_.Add(Cat(icon == MessageIcon::kCritical ? "critical box: " : "box: ", text));
  }

 private:
  void RunEvents(std::string_view how) {
    script_.Add(how);
    if (on_events) on_events();
  }

  Script& script_;
  std::set<SessionButton> disabled_{SessionButton::cmdCancelDL};
  bool hourglass_ = false;
};
