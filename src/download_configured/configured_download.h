#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/clock.h"
#include "config/mdl_AZ.h"
#include "download/page_fetcher.h"
#include "download/session_view.h"
#include "store/query_recordset.h"

/// What a download from addresses of forum.ini works with, and how it speaks. All that it refers to outlives it.
struct ConfiguredDownload {
  std::string kind;  // of the open base: its section of forum.ini; empty when unknown
  QueryRecordset& records;
  PageFetcher& ie;
  SessionView& view;
  const mdl_AZ::ForumIni& ini;
  const mdl_AZ::ForumLog& forum_log;
  const Clock& clock;

  /// The status bar; unlike the other session's it leaves forum.log alone.
  void Bar(std::string_view text) const;
  /// A line of the log box, and nowhere else.
  void Log(std::string_view text) const;

  /// The highest number in the base; 0 when it is empty.
  std::int32_t GetFirst() const { return records.GetFirst(0); }
  /// A value of the forum's section; empty when it is absent.
  std::string Setting(std::string_view key) const { return ini.ReadForumIni(kind, key); }
  /// The page, or an empty one when the transfer fails. @param timeout  in seconds, 0 = no limit
  std::string Fetch(std::string_view url, std::int32_t timeout) const;
};
