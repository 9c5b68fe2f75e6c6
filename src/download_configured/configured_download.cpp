#include "download_configured/configured_download.h"

#include "base/error.h"
#include "download/session_parts.h"

void ConfiguredDownload::Bar(std::string_view text) const { view.SetPanel(1, text); }

void ConfiguredDownload::Log(std::string_view text) const { view.AppendLog(LogLine(clock, text)); }

std::string ConfiguredDownload::Fetch(std::string_view url, std::int32_t timeout) const {
  try {
    return ie.OpenUrl(url, timeout);
  } catch (const TransferError&) {
    return {};
  }
}
