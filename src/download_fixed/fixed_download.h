#pragma once

#include <string>
#include <string_view>

#include "base/clock.h"
#include "config/mdl_AZ.h"
#include "download/page_fetcher.h"
#include "download/session_view.h"
#include "store/query_recordset.h"

/// What a download from a fixed address works with, and how it speaks. All that it refers to outlives it.
struct FixedDownload {
  QueryRecordset& records;
  PageFetcher& inet;
  SessionView& view;
  const mdl_AZ::ForumIni& ini;
  const mdl_AZ::ForumLog& forum_log;
  const Clock& clock;
  std::string ForumSubHost;  // DOMAIN of the base's forum

  /// Panel 1 of the status bar, and forum.log.
  void Bar(std::string_view text) const;
  /// A line of the log box, and forum.log.
  void Log(std::string_view text) const;

  /// The highest number in the base; 1 when it is empty.
  std::int32_t GetFirst() const { return records.GetFirst(1); }
};
