#pragma once

#include <string>
#include <utility>

#include "config/mdl_AZ.h"
#include "support/fixed_clock.h"
#include "support/memory_query_recordset.h"
#include "support/program_files.h"
#include "support/recording_view.h"
#include "support/scripted_fetcher.h"

/// All that a download session works with. What it does stands in one script, forum.log in another.
struct DownloadStage {
  explicit DownloadStage(std::string forum_ini = "[LOG]\r\nIsLog=1\r\n") : files(log_file, std::move(forum_ini)) {}

  Script script, log_file;
  FixedClock clock{ole_date::FromCivil({.year = 2002, .month = 3, .day = 8, .hour = 9, .minute = 5, .second = 7})};
  ProgramFiles files;
  mdl_AZ::ForumIni ini{files, "/program"};
  mdl_AZ::ForumLog forum_log{ini, files, clock};
  RecordingView view{script};
  ScriptedFetcher fetcher{script};
  MemoryQueryRecordset records{script};
};
