#include "store/rescue_messages.h"

#include <algorithm>
#include <optional>
#include <utility>

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
        messages_(from, table_.def(), progress),
        transaction_(to.store()),
        writer_(transaction_, table_, to.PropertiesOf(table_)) {}

  RescueResult Run() {
    if (messages_.stopped() || !SaveWholeOnes()) return {};
    if (has_incomplete_ && !SaveTheOthers()) return {};
    transaction_.Commit();
    CountLost();
    Finish();
    return std::move(result_);
  }

 private:
  /// @return false when the user stopped it
  bool SaveWholeOnes() {
    jet::SalvageCursor cursor(pages_, messages_.def());
    while (cursor.NextPage()) {
      while (cursor.NextRow()) SaveIfWhole(cursor.row());
      if (!progress_.Advance(static_cast<int>(kNearlyDone * cursor.page() / pages_.page_count()))) return false;
    }
    for (const std::uint32_t page : cursor.bad_pages()) AddDamagedPage(page);
    bad_rows_ += cursor.bad_rows();
    return true;
  }

  /// What is whole comes first: of a number that occurs twice the damaged row may lie before the good one.
  bool SaveTheOthers() {
    jet::SalvageCursor cursor(pages_, messages_.def());
    while (cursor.NextPage()) {
      while (cursor.NextRow())
        if (const auto message = messages_.Read(cursor.row())) Save(*message);
      if (!progress_.Advance(static_cast<int>(kNearlyDone))) return false;
    }
    return true;
  }

  void SaveIfWhole(const jet::Row& row) {
    const std::optional<DamagedMessages::Message> message = messages_.Read(row);
    if (!message) {
      ++bad_rows_;
      return AddDamagedPage(row.id().page);
    }
    AddDamagedPage(message->damaged_page);
    if (message->whole)
      Save(*message);
    else
      has_incomplete_ = true;
  }

  void Save(const DamagedMessages::Message& message) {
    if (saved_[static_cast<std::size_t>(message.number)]) return;
    writer_.Insert(message.values);
    saved_[static_cast<std::size_t>(message.number)] = true;
    ++result_.saved;
    if (!message.whole) result_.in_part.push_back(message.number);
  }

  void AddDamagedPage(std::int64_t page) {
    if (page != FormatError::kNoPage && page < pages_.page_count())
      result_.damaged_pages.push_back(static_cast<std::uint32_t>(page));
  }

  /// The primary key knows every message by its number. Where it is damaged itself, the count that the table keeps
  /// must do.
  void CountLost() {
    const std::optional<std::uint64_t> entries = CollectLostNumbers();
    SortUnique(result_.lost_numbers);
    result_.lost = result_.lost_numbers.size();
    if (entries && *entries >= result_.saved + result_.lost) return;
    result_.lost = std::max(result_.lost, bad_rows_);
    const std::optional<std::uint64_t> expected = ExpectedRows();
    result_.lost_is_sure = expected && *expected >= result_.saved + result_.lost;
    if (result_.lost_is_sure) result_.lost = *expected - result_.saved;
  }

  /// @return how many numbers the index holds; none when it cannot be gone through to its end
  std::optional<std::uint64_t> CollectLostNumbers() try {
    const jet::RealIndex* const index = messages_.def().IndexOn(messages_.number());
    if (index == nullptr) return std::nullopt;
    const jet::Table table(pages_, messages_.def());
    std::uint64_t numbers = 0;
    std::int32_t last = 0;
    for (jet::IndexCursor cursor = table.Walk(*index); cursor.Next();) {
      const std::optional<std::int32_t> number = jet::LongOfKey(cursor.key(), index->columns.front().ascending);
      if (!number || *number < 1 || *number > kLargestNumber) return std::nullopt;
      if (std::exchange(last, *number) != *number) ++numbers;
      if (!saved_[static_cast<std::size_t>(*number)]) result_.lost_numbers.push_back(*number);
    }
    return numbers;
  } catch (const Error&) {
    return std::nullopt;
  }

  std::optional<std::uint64_t> ExpectedRows() const try {
    if (!messages_.knows_definition()) return std::nullopt;
    const std::uint32_t rows = jet::Table(pages_, messages_.def()).ExpectedRows();
    return rows <= kLargestNumber ? std::optional<std::uint64_t>(rows) : std::nullopt;  // there are no more numbers
  } catch (const Error&) {
    return std::nullopt;
  }

  template <typename Number>
  static void SortUnique(std::vector<Number>& list) {
    std::ranges::sort(list);
    list.erase(std::unique(list.begin(), list.end()), list.end());
  }

  void Finish() {
    result_.notes = messages_.notes();
    SortUnique(result_.in_part);
    SortUnique(result_.damaged_pages);
    result_.complete = true;
  }

  Progress& progress_;
  const jet::PageFile& pages_;
  jet::Table table_;  // of the new base
  DamagedMessages messages_;
  jet::Transaction transaction_;
  jet::TableWriter writer_;
  std::vector<bool> saved_ = std::vector<bool>(kLargestNumber + 1);  // by number
  bool has_incomplete_ = false;
  std::uint64_t bad_rows_ = 0;  // without a number that a message can have; some may have been deleted long ago
  RescueResult result_;
};

/// The texts of the newer version do not depend on the sort order.
jet::NewBase KindOf(const jet::Header& header) {
  const bool russian = header.version == jet::Version::kJet3 && header.code_page == kCyrillic;
  return {header.version, russian ? jet::SortOrder::kRussian : jet::SortOrder::kGeneral};
}

}  // namespace

RescueResult RescueMessages(FileSystem& files, const std::string& damaged, const std::string& to, const Clock& clock,
                            Progress& progress) {
  const jet::SalvagedBase from(files, damaged);
  const auto unfinished = BeginMessageBase(files, to, KindOf(from.header()), clock);
  RescueResult result = Rescue(from, unfinished->base(), progress).Run();
  if (!result.complete) return result;
  unfinished->PublishNew();
  progress.Advance(100);
  return result;
}

std::string ProposedRescuePath(const FileSystem& files, const std::string& damaged) {
  const std::size_t dot = damaged.rfind('.'), slash = damaged.rfind('/');
  const bool has_extension = dot != std::string::npos && (slash == std::string::npos || dot > slash + 1);
  const std::string stem = Cat(damaged.substr(0, has_extension ? dot : damaged.size()), "_rescued");
  std::string path = Cat(stem, ".mdb");
  for (int next = 2; files.Exists(path); ++next) path = Cat(stem, "_", next, ".mdb");
  return path;
}
