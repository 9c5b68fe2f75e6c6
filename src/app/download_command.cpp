#include "app/download_command.h"

#include <string>

#include "base/cat.h"
#include "base/error.h"
#include "config/forum_list.h"
#include "download_configured/configured_page.h"
#include "download_configured/ui/frmDownload2.h"
#include "download_fixed/fixed_forum.h"
#include "download_fixed/ui/frmDownload.h"
#include "ui/text.h"

namespace {

void OpenWindow(KDVExplorer& explorer, const DownloadTools& tools) {
  const DownloadNeeds needs{explorer.Base(), tools.ini, tools.log, tools.clock, tools.dialogs, tools.inet, tools.alarm};
  std::vector<std::int32_t> stored;
  std::optional<std::int32_t> to_read;
  const auto run = [&](DownloadWindow&& window) {
    window.exec();
    stored = window.StoredMessages();
    to_read = window.MessageToRead();
  };
  // Each kind of session says which forums are its own.
  const std::string& kind = explorer.Base().forum_kind();
  if (FindFixedForum(kind) != nullptr)
    run(frmDownload(needs, tools.Winsock, &explorer));
  else if (configured_page::KnowsPagesOf(kind))
    run(frmDownload2(needs, &explorer));
  else
    return;
  explorer.ShowDownloaded(stored, to_read);  // now that the base is no longer written to
}

}  // namespace

void DownloadMessages(KDVExplorer& explorer, const DownloadTools& tools) {
  MessageBase& base = explorer.Base();
  if (!base.IsOpen()) return;
  const auto tell = [&](std::string_view text, BoxIcon icon) {
    tools.dialogs.Tell(&explorer, FromCp1251(text), icon, ProgramName());
  };
  try {
    if (base.forum() == forum_list::kUnknown)
      tell("Из имени файла базы сообщений непонятно, что это за база. \r\nПоэтому откуда качать, я тоже не знаю..."_ru,
           BoxIcon::kNone);
    else if (tools.ini.GetStopDownload(base.forum_kind()) != 0)
      tell(Cat(base.forum_kind(), "\r\nотключен для загрузки новых сообщений!"_ru), BoxIcon::kWarning);
    else
      OpenWindow(explorer, tools);
  } catch (const Error& error) {
    tell(error.what(), BoxIcon::kWarning);
  }
}
