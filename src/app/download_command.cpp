#include "app/download_command.h"

#include <algorithm>
#include <string>
#include <vector>

#include "base/cat.h"
#include "base/error.h"
#include "config/forum_list.h"
#include "download_configured/configured_page.h"
#include "download_configured/ui/frmDownload2.h"
#include "download_fixed/fixed_forum.h"
#include "download_fixed/ui/frmDownload.h"
#include "ui/text.h"

namespace {

// The window is gone, and perhaps closed before anybody saw it.
std::string LossText(const std::vector<LostRow>& lost) {
  const auto [first, last] = std::ranges::minmax_element(lost, {}, &LostRow::number);
  return Cat("Не записано сообщений: "_ru, lost.size(), ". Загрузите их ещё раз, номера с "_ru, first->number,
             " по "_ru, last->number, ". "_ru, lost.back().reason);
}

void OpenWindow(KDVExplorer& explorer, const DownloadTools& tools) {
  const DownloadNeeds needs{explorer.Base(), tools.ini, tools.log, tools.clock, tools.dialogs, tools.inet, tools.alarm};
  std::vector<std::int32_t> stored;
  std::vector<LostRow> lost;
  std::optional<std::int32_t> to_read;
  const auto run = [&](DownloadWindow&& window) {
    window.exec();
    stored = window.StoredMessages();
    lost = window.LostMessages();
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
  if (!lost.empty()) explorer.SetStatus(FromCp1251(LossText(lost)));
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
