#include "saved_pages/import_saved_pages.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <utility>
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

constexpr std::size_t kPagesPerBatch = 100;
constexpr double kSecond = 1.0 / 86'400;  // of a day

/// What became of pages whose rows are not yet on the disk.
struct Outcome {
  ImportTotals totals;
  std::vector<std::pair<const std::string*, std::string>> told;
};

class Importer {
 public:
  Importer(const SavedPagesImport& with, std::string_view kind) : with_(with), forum_(kind, with.clock) {}

  ImportTotals Run(std::span<const std::string> paths) {
    pages_ = InOrder(paths, forum_.HasAuthorPages());
    while (GoesOn()) ImportBatch(kPagesPerBatch);
    totals_.not_reached = pages_.size() - done_;
    if (!stopped_) with_.progress.Advance(100);
    return totals_;
  }

 private:
  bool GoesOn() {
    if (stopped_ || done_ == pages_.size()) return false;
    stopped_ = !with_.progress.Advance(static_cast<int>(100 * done_ / pages_.size()));
    return !stopped_;
  }

  /// Takes the next pages, at most so many. When the base does not take them together (the disk is full, or one
  /// row failed by halves), each has another try of its own.
  void ImportBatch(std::size_t most) {
    const std::size_t first = done_;
    with_.records.BeginBatch();
    try {
      const OleDate late{with_.clock.Now().days + kSecond};
      do Import(pages_[done_++]);
      while (done_ - first < most && with_.clock.Now() < late && GoesOn());
      with_.records.CommitBatch();
    } catch (const Error& error) {
      with_.records.DropBatch();
      if (most > 1) return ImportSingly(first);
      if (outcome_.totals.not_imported == 0) {
        outcome_ = {};
        Refuse(pages_[first], error.what());
      }
    }
    Settle();
  }

  /// The pages from `first` up to where the batch has come.
  void ImportSingly(std::size_t first) {
    const std::size_t end = std::exchange(done_, first);
    outcome_ = {};
    while (done_ < end && GoesOn()) ImportBatch(1);
  }

  /// What became of the batch is certain now.
  void Settle() {
    totals_.imported += outcome_.totals.imported;
    totals_.without_date += outcome_.totals.without_date;
    totals_.already_there += outcome_.totals.already_there;
    totals_.not_imported += outcome_.totals.not_imported;
    for (const auto& [path, why] : outcome_.told) with_.trouble.Tell(*path, why);
    outcome_ = {};
  }

  void Import(const SavedPage& page) {
    if (!page.number) return Refuse(page, "в имени файла нет номера сообщения"_ru);
    try {
      if (with_.records.msgExist(*page.number)) {
        ++outcome_.totals.already_there;
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
    ++outcome_.totals.imported;
    if (HasDate(message)) return;
    ++outcome_.totals.without_date;
    outcome_.told.emplace_back(page.path, "дата не читается, сообщение записано без неё"_ru);
  }

  void Refuse(const SavedPage& page, std::string_view why) {
    ++outcome_.totals.not_imported;
    outcome_.told.emplace_back(page.path, why);
  }

  const SavedPagesImport& with_;
  ForumPages forum_;
  std::vector<SavedPage> pages_;
  std::size_t done_ = 0;
  bool stopped_ = false;
  Outcome outcome_;  // of the batch under way
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
