#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include <QDialog>
#include <QElapsedTimer>
#include <QTimer>

#include "base/clock.h"
#include "config/mdl_AZ.h"
#include "download/grouped_records.h"
#include "download/page_fetcher.h"
#include "download/ui/download_pane.h"
#include "store/base_recordset.h"
#include "store/message_base.h"

/// What a download window works with; all of it outlives the window, and the base stays open.
struct DownloadNeeds {
  MessageBase& base;
  const mdl_AZ::ForumIni& ini;
  const mdl_AZ::ForumLog& log;
  const Clock& clock;
  Dialogs& dialogs;
  PageFetcher& inet;
  Alarm& alarm;
};

/// The frame of both download windows: a modal dialog around the pane that keeps БазаЗапрос open and closes only
/// when its session lets it.
class DownloadWindow : public QDialog {
  Q_OBJECT
 public:
  /// The messages that were stored while the window was open, in that order.
  const std::vector<std::int32_t>& StoredMessages() const { return stored_; }
  /// The messages that the base refused after the list had shown them as stored.
  const std::vector<LostRow>& LostMessages() const { return lost_; }
  /// The message that the user wants to read: a row that was opened, which closed the window.
  std::optional<std::int32_t> MessageToRead() const { return to_read_; }

  void reject() override;

 protected:
  bool event(QEvent* event) override;
  /// @throws Error when the base cannot be written to
  DownloadWindow(const char* name, int panels, const DownloadNeeds& needs, QWidget* parent);

  /// The user closes the window.
  virtual bool MayClose() = 0;

  /// The rows of the base.
  QueryRecordset& Records() { return records_; }

  DownloadPane* const pane_;

 private:
  void OpenRow(std::int32_t number);
  void TakeNote(const SettledRows& settled);

  const Clock& clock_;
  // The end of records_ still stores what waits, and takes note of it.
  std::vector<std::int32_t> stored_;
  std::vector<LostRow> lost_;
  BaseRecordset rows_;
  GroupedRecords records_;
  std::optional<std::int32_t> to_read_;
  QElapsedTimer since_painting_;
  QTimer next_painting_;
};
