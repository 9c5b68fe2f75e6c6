#pragma once

#include <cstdint>
#include <string_view>

/// The buttons that follow a session's state.
enum class SessionButton { cmdDownload, cmdGetLast, cmdCancelDL };

enum class MessageIcon { kNone, kCritical };

/// Everything that a download session tells its window. Texts are Windows-1251. Rows stand for message
/// numbers; the row added last is the current one, and whatever is set of a row is set of it. Without a
/// current row such a call does nothing.
class SessionView {
 public:
  virtual ~SessionView() = default;

  /// @param panel  of the status bar, from 1
  virtual void SetPanel(int panel, std::string_view text) = 0;
  virtual void SetHint(std::string_view text) = 0;
  /// The boxes of the first and the last number.
  virtual void SetBegin(std::string_view text) = 0;
  virtual void SetEnd(std::string_view text) = 0;
  virtual void ClearLog() = 0;
  /// Puts the text behind what the log box holds and moves the caret to its end.
  virtual void AppendLog(std::string_view text) = 0;
  /// @param percent  0 to 100
  virtual void SetProgress(int percent) = 0;

  virtual void ClearRows() = 0;
  /// By the text of the first column, descending, now and for rows to come.
  virtual void SortRowsNewestFirst() = 0;
  /// @param text  of the first column
  virtual void AddRow(std::string_view text) = 0;
  /// @param column  from 1, the first one behind the row's own text
  virtual void SetCell(int column, std::string_view text) = 0;
  /// @param icon  from 1, a row_icon
  virtual void SetIcon(int icon) = 0;
  /// @param bgr  00BBGGRR
  virtual void SetColour(std::uint32_t bgr) = 0;
  virtual void ScrollToRow() = 0;

  virtual void Enable(SessionButton button, bool enabled) = 0;
  virtual bool IsEnabled(SessionButton button) const = 0;
  /// Setting what is set already changes nothing.
  virtual void SetHourglass(bool hourglass) = 0;

  /// Runs the events that wait, clicks included.
  virtual void ProcessEvents() = 0;
  /// As above, but waits for one to come.
  virtual void WaitForEvents() = 0;
  /// Runs events for about a second, so that whatever is tried without end leaves the machine alone.
  virtual void PauseBeforeRetry() = 0;
  /// Closes the window.
  virtual void Close() = 0;
  /// A message box with OK.
  virtual void ShowMessage(MessageIcon icon, std::string_view text) = 0;
};
