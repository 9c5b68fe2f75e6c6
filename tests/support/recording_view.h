#pragma once

#include <functional>
#include <set>

#include "download/session_view.h"
#include "support/script.h"

/// A window that writes down all that a session tells it. A pointer set to what it is already is no event.
class RecordingView : public SessionView {
 public:
  explicit RecordingView(Script& script) : script_(script) {}

  /// Plays the user, whenever the session lets events run.
  std::function<void()> on_events;

  void SetPanel(int panel, std::string_view text) override;
  void SetHint(std::string_view text) override;
  void SetBegin(std::string_view text) override;
  void SetEnd(std::string_view text) override;
  void ClearLog() override;
  void AppendLog(std::string_view text) override;
  void SetProgress(int percent) override;
  void ClearRows() override;
  void SortRowsNewestFirst() override;
  void AddRow(std::string_view text) override;
  void SetCell(int column, std::string_view text) override;
  void SetIcon(int icon) override;
  void SetColour(std::uint32_t bgr) override;
  void ScrollToRow() override;
  void Enable(SessionButton button, bool enabled) override;
  bool IsEnabled(SessionButton button) const override { return !disabled_.contains(button); }
  void SetHourglass(bool hourglass) override;
  void ProcessEvents() override;
  void WaitForEvents() override;
  void PauseBeforeRetry() override;
  void Close() override;
  void ShowMessage(MessageIcon icon, std::string_view text) override;

 private:
  void RunEvents(std::string_view how);

  Script& script_;
  std::set<SessionButton> disabled_{SessionButton::cmdCancelDL};
  bool hourglass_ = false;
};
