#include "store/rescue_messages.h"

#include <algorithm>
#include <optional>

#include "base/cat.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "jet/index_key.h"
#include "jet/salvage.h"
#include "jet/salvage_cursor.h"
#include "jet/table_writer.h"
#include "jet/transaction.h"
#include "store/damaged_messages.h"
#include "store/message_record.h"
#include "store/new_base.h"

namespace {

/// The messages are read; the commit takes no share of its own.
constexpr std::uint64_t kNearlyDone = 99;

constexpr std::uint16_t kCyrillic = 1251;

/// Copies the messages of one base into another in a single transaction.
class Rescue {
 public:
  Rescue(const jet::SalvagedBase& from, jet::Database& to, Progress& progress)
      : progress_(progress),
        pages_(from.pages()),
        table_(to.OpenTable("База"_ru)),
        messages_(from, table_.def()),
        transaction_(to.store()),
        writer_(transaction_, table_, to.PropertiesOf(table_)) {}

  RescueResult Run() {
    jet::SalvageCursor cursor(pages_, messages_.def());
    while (cursor.NextPage()) {
      while (cursor.NextRow()) Save(cursor.row());
      if (!progress_.Advance(static_cast<int>(kNearlyDone * cursor.page() / pages_.page_count()))) return {};
    }
    for (const std::uint32_t page : cursor.bad_pages()) AddDamagedPage(page);
    transaction_.Commit();
    CountLost(cursor.bad_rows() + nameless_);
    Finish();
    return std::move(result_);
  }

 private:
  void Save(const jet::Row& row) {
    const std::optional<DamagedMessages::Message> message = messages_.Read(row);
    if (!message) {
      ++nameless_;
      return AddDamagedPage(row.id().page);
    }
    AddDamagedPage(message->damaged_page);
    if (saved_[static_cast<std::size_t>(message->number)]) return;
    writer_.Insert(message->values);
    saved_[static_cast<std::size_t>(message->number)] = true;
    ++result_.saved;
    if (!message->whole) result_.in_part.push_back(message->number);
  }

  void AddDamagedPage(std::int64_t page) {
    if (page != FormatError::kNoPage && page < pages_.page_count())
      result_.damaged_pages.push_back(static_cast<std::uint32_t>(page));
  }

  /// The primary key knows every message by its number. Where it is damaged itself, the count that the table keeps
  /// must do. @param bad_rows  that were met; some may have been deleted long ago
  void CountLost(std::uint64_t bad_rows) {
    const bool knows_numbers = CollectLostNumbers();
    result_.lost = result_.lost_numbers.size();
    if (knows_numbers) return;
    result_.lost = std::max(result_.lost, bad_rows);
    const std::uint64_t expected = messages_.knows_definition() ? ExpectedRows() : 0;
    result_.lost_is_sure = expected >= result_.saved + result_.lost;
    if (result_.lost_is_sure) result_.lost = expected - result_.saved;
  }

  /// @return false when the index does not tell them all
  bool CollectLostNumbers() try {
    const jet::RealIndex* const index = messages_.def().IndexOn(messages_.number());
    if (index == nullptr) return false;
    const jet::Table table(pages_, messages_.def());
    std::uint64_t entries = 0;
    for (jet::IndexCursor cursor = table.Walk(*index); cursor.Next(); ++entries) {
      const std::optional<std::int32_t> number = jet::LongOfKey(cursor.key(), index->columns.front().ascending);
      if (!number || *number < 1 || *number > kLargestNumber) return false;
      if (!saved_[static_cast<std::size_t>(*number)]) result_.lost_numbers.push_back(*number);
    }
    return entries >= result_.saved + result_.lost_numbers.size();
  } catch (const FormatError&) {
    return false;
  } catch (const FileError&) {
    return false;
  }

  std::uint64_t ExpectedRows() const try {
    return jet::Table(pages_, messages_.def()).ExpectedRows();
  } catch (const Error&) {
    return 0;
  }

  void Finish() {
    result_.notes = messages_.notes();
    const auto sort = [](auto& list) {
      std::ranges::sort(list);
      list.erase(std::unique(list.begin(), list.end()), list.end());
    };
    sort(result_.lost_numbers);
    sort(result_.in_part);
    sort(result_.damaged_pages);
    result_.complete = true;
    progress_.Advance(100);
  }

  Progress& progress_;
  const jet::PageFile& pages_;
  jet::Table table_;  // of the new base
  DamagedMessages messages_;
  jet::Transaction transaction_;
  jet::TableWriter writer_;
  std::vector<bool> saved_ = std::vector<bool>(kLargestNumber + 1);  // by number
  std::uint64_t nameless_ = 0;                                       // rows without a number that a message can have
  RescueResult result_;
};

/// The texts of the newer version do not depend on the sort order.
jet::NewBase KindOf(const jet::Header& header) {
  const bool russian = header.version == jet::Version::kJet3 && header.code_page == kCyrillic;
  return {header.version, russian ? jet::SortOrder::kRussian : jet::SortOrder::kGeneral};
}

void RemoveQuietly(FileSystem& files, const std::string& path) noexcept try {
  if (files.Exists(path)) files.Remove(path);
} catch (const FileError&) {
  // What stays is a base without messages.
}

RescueResult Fill(FileSystem& files, const jet::SalvagedBase& from, const std::string& to, Progress& progress) {
  jet::Database base = jet::Database::Open(files, to, jet::Access::kReadWrite);
  return Rescue(from, base, progress).Run();
}

}  // namespace

RescueResult RescueMessages(FileSystem& files, const std::string& damaged, const std::string& to, const Clock& clock,
                            Progress& progress) {
  const jet::SalvagedBase from(files, damaged);
  CreateMessageBase(files, to, KindOf(from.header()), clock);
  try {
    RescueResult result = Fill(files, from, to, progress);
    if (!result.complete) RemoveQuietly(files, to);
    return result;
  } catch (...) {
    RemoveQuietly(files, to);
    throw;
  }
}

std::string ProposedRescuePath(const FileSystem& files, const std::string& damaged) {
  const std::size_t dot = damaged.rfind('.'), slash = damaged.rfind('/');
  const bool has_extension = dot != std::string::npos && (slash == std::string::npos || dot > slash + 1);
  const std::string stem = Cat(damaged.substr(0, has_extension ? dot : damaged.size()), "_rescued");
  std::string path = Cat(stem, ".mdb");
  for (int next = 2; files.Exists(path); ++next) path = Cat(stem, "_", next, ".mdb");
  return path;
}
