#pragma once

#include "base/clock.h"
#include "config/mdl_AZ.h"
#include "download/alarm.h"
#include "download/page_fetcher.h"
#include "download/page_socket.h"
#include "explorer/ui/KDVExplorer.h"
#include "ui/dialogs.h"

/// What downloads work with; all of it outlives the call.
struct DownloadTools {
  const mdl_AZ::ForumIni& ini;
  const mdl_AZ::ForumLog& log;
  const Clock& clock;
  Dialogs& dialogs;
  PageFetcher& inet;
  PageSocket& Winsock;
  Alarm& alarm;
};

/// Shows the download window of the open base's forum; when it has closed, the main window shows what is new. Tells
/// by a box when the forum is unknown or switched off, or the base cannot be written to. Without a base, and for
/// forums that no window downloads, it does nothing.
void DownloadMessages(KDVExplorer& explorer, const DownloadTools& tools);
