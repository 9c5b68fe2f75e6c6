#include "saved_pages/import_saved_pages.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <vector>

#include "base/cat.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "download/page_code.h"
#include "saved_pages/forum_pages.h"

namespace {

constexpr std::string_view kNoMessage = "на странице нет сообщения"_ru;

struct SavedPage {
  const std::string* path;
  std::optional<std::int32_t> number;
};

/// Those without a number come first; of two with the same one the earlier named.
std::vector<SavedPage> InOrder(std::span<const std::string> paths, bool pass_over_author_pages) {
  std::vector<SavedPage> pages;
  for (const std::string& path : paths)
    if (!pass_over_author_pages || !page_files::IsAuthorPage(path))
      pages.push_back({&path, page_files::NumberOf(path)});
  std::stable_sort(pages.begin(), pages.end(),
                   [](const SavedPage& a, const SavedPage& b) { return a.number.value_or(0) < b.number.value_or(0); });
  return pages;
}

/// Why a page that is no message is none.
std::string_view Reason(int code, std::string_view page) {
  if (page.empty()) return "страница пуста"_ru;
  if (code == page_code::kNotLoaded) return "это сообщение прокси-сервера, а не страница форума"_ru;
  return kNoMessage;
}

/// Some forums' importers put the zero date where the page's cannot be read; no message is that old.
bool HasDate(const MessageRecord& message) { return message.Дата && *message.Дата != OleDate{}; }

/// The page checks of some forums let any page pass, and a folder holds more than messages.
bool IsNoMessage(const MessageRecord& message) {
  return message.Автор.empty() && !HasDate(message) && message.Текст.find_first_not_of(" \r\n") == std::string::npos;
}

class Importer {
 public:
  Importer(const SavedPagesImport& with, std::string_view kind) : with_(with), forum_(kind, with.clock) {}

  ImportTotals Run(std::span<const std::string> paths) {
    const std::vector<SavedPage> pages = InOrder(paths, forum_.HasAuthorPages());
    for (std::size_t done = 0; done < pages.size(); ++done) {
      if (!with_.progress.Advance(static_cast<int>(100 * done / pages.size()))) {
        totals_.not_reached = pages.size() - done;
        return totals_;
      }
      Import(pages[done]);
    }
    with_.progress.Advance(100);
    return totals_;
  }

 private:
  void Import(const SavedPage& page) {
    if (!page.number) return Refuse(page, "в имени файла нет номера сообщения"_ru);
    try {
      if (with_.records.msgExist(*page.number)) {
        ++totals_.already_there;
        return;
      }
      Store(page, page_files::Read(with_.files, *page.path));
    } catch (const Error& error) {
      with_.records.Cancel();
      Refuse(page, error.what());
    }
  }

  void Store(const SavedPage& page, const std::string& content) {
    const int code = forum_.Check(content);
    if (code != page_code::kMessage) return Refuse(page, Reason(code, content));
    const std::string author_page =
        forum_.HasAuthorPages() ? page_files::ReadAuthorPageOf(with_.files, *page.path) : std::string();
    const MessageRecord message = forum_.Parse(content, *page.number, author_page);
    if (IsNoMessage(message)) return Refuse(page, kNoMessage);
    StoreRow(with_.records, forum_.FieldsToStore(message));
    ++totals_.imported;
    if (HasDate(message)) return;
    ++totals_.without_date;
    with_.trouble.Tell(*page.path, "дата не читается, сообщение записано без неё"_ru);
  }

  void Refuse(const SavedPage& page, std::string_view why) {
    ++totals_.not_imported;
    with_.trouble.Tell(*page.path, why);
  }

  const SavedPagesImport& with_;
  ForumPages forum_;
  ImportTotals totals_;
};

}  // namespace

ImportTotals ImportSavedPages(const SavedPagesImport& with, std::string_view kind, std::span<const std::string> pages) {
  return Importer(with, kind).Run(pages);
}

std::string ImportSummary(const ImportTotals& totals) {
  std::string summary = Cat("Записано сообщений: "_ru, totals.imported);
  if (totals.without_date > 0) summary += Cat(" (без даты: "_ru, totals.without_date, ")");
  summary += Cat(", уже были в базе: "_ru, totals.already_there, ", не записано страниц: "_ru, totals.not_imported);
  if (totals.not_reached > 0) summary += Cat(". Остановлено, осталось страниц: "_ru, totals.not_reached);
  return summary;
}
