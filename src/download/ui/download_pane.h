#pragma once

#include <cstdint>
#include <optional>

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QTreeView>

#include "download/session_parts.h"
#include "download/ui/session_rows.h"
#include "ui/busy.h"
#include "ui/controls.h"
#include "ui/status_panels.h"

/// What both download windows look like: the range, the buttons, the list of the session, its log and its status
/// bar. It shows what a session says and runs the events that the session waits for; it decides nothing.
class DownloadPane : public QWidget, public SessionView {
  Q_OBJECT
 public:
  /// The log box keeps so many lines, the newest.
  static constexpr int kLogLines = 50'000;

  /// @param panels   of the status bar
  /// @param dialogs  outlives the pane
  DownloadPane(int panels, Dialogs& dialogs, QWidget* parent);

  RangeChoice Choice() const;
  /// The texts of a window that opens. @param last_in_base  the highest number in the base
  void ProposeRange(std::int32_t last_in_base);
  /// Leaves nothing to choose, and says why.
  void ShowUnknownForum();
  /// A row that was shown as stored is not.
  void MarkNotStored(std::int32_t number) { rows_->MarkNotStored(number); }

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
  bool IsEnabled(SessionButton button) const override;
  void SetHourglass(bool hourglass) override;
  void ProcessEvents() override;
  void WaitForEvents() override;
  void PauseBeforeRetry() override;
  void Close() override;
  void ShowMessage(MessageIcon icon, std::string_view text) override;

  QPushButton *cmdDownload, *cmdCancelDL, *cmdGetFirst, *cmdGetLast, *cmdClose;

 signals:
  /// The user wants to read the message of a row.
  void RowOpened(std::int32_t number);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void AddRangeControls();
  void AddList();
  void AddReports(int panels);
  void LayOut();
  void SetTabOrder();
  void UpdateBoxes();
  void OpenRow(const QModelIndex& row);
  QPushButton* ButtonOf(SessionButton button) const;

  Dialogs& dialogs_;
  std::optional<Hourglass> hourglass_;
  bool focus_goes_to_cancel_ = false;
  SessionRows* rows_;
  QRadioButton *chkManual_, *chkAuto_;
  QLineEdit *txtBegin_, *txtEnd_, *txtHint_;
  QLabel* lblEnd_;
  QTreeView* lvDownload_;
  QPlainTextEdit* txtLog_;
  QProgressBar* dlProgress_;
  StatusPanels* dlBar_;
};
