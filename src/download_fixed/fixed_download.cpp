#include "download_fixed/fixed_download.h"

#include "download/session_parts.h"

void FixedDownload::Bar(std::string_view text) const {
  view.SetPanel(1, text);
  forum_log.Log(text);
}

void FixedDownload::Log(std::string_view text) const {
  view.AppendLog(LogLine(clock, text));
  forum_log.Log(text);
}
