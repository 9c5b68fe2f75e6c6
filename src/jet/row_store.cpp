#include "jet/row_store.h"

#include <algorithm>

#include "base/error.h"
#include "base/ru_literal.h"
#include "jet/page_allocation.h"
#include "jet/usage_map.h"

namespace jet {

RowStore::RowStore(Transaction& transaction, const TableDef& table)
    : transaction_(&transaction),
      owner_(table.page),
      owned_map_(table.owned_map),
      free_map_(table.free_map),
      least_free_(layout().data_page.least_free) {}

RowStore::RowStore(Transaction& transaction, const Column& long_values)
    : transaction_(&transaction),
      owner_(kLongValueOwner),
      owned_map_(long_values.owned_map),
      free_map_(long_values.free_map),
      least_free_(layout().data_page.least_free_long_values) {}

bool RowStore::HasRoom(std::uint32_t page, std::size_t size) const {
  const Page read = pages().Read(page);
  return TakesRow(DataPage(layout(), read, owner_), size);
}

// The page that took the last row, else one of the next few that the map names, from the highest
// down. None is tried twice in vain: the search begins anew when rows go, and with every new page, for the few before
// it may still take what is smaller than the row that did not fit.
std::optional<std::uint32_t> RowStore::FindRoom(std::size_t size) {
  constexpr int kTries = 4;
  UsageMap with_room(pages(), free_map_);
  if (last_page_ != 0 && with_room.Contains(last_page_) && HasRoom(last_page_, size)) return last_page_;
  for (int i = 0; i < kTries && untried_end_ > 0; ++i) {
    const std::optional<std::uint32_t> page = with_room.LastUpTo(untried_end_ - 1);
    untried_end_ = page.value_or(0);
    if (page && HasRoom(*page, size)) return page;
  }
  return std::nullopt;
}

std::uint32_t RowStore::NewPage() const {
  const MutablePage page = PageAllocator(*transaction_).Allocate();
  DataPageWriter::Format(layout(), page, owner_);
  UsageMapWriter(*transaction_, owned_map_).Add(page.number());
  return page.number();
}

std::uint32_t RowStore::NewSharedPage() {
  const std::uint32_t page = NewPage();
  if (newest_page_ != 0) untried_end_ = newest_page_ + 1;
  newest_page_ = page;
  return page;
}

RowId RowStore::Add(Bytes row, unsigned flags) {
  const std::optional<std::uint32_t> found = FindRoom(row.size());
  last_page_ = found ? *found : NewSharedPage();
  DataPageWriter page = Open(last_page_);
  const RowId where{last_page_, page.Add(row, flags)};
  KeepFreeMap(where.page, page.rows());
  return where;
}

RowId RowStore::AddAlone(Bytes row) {
  const std::uint32_t page = NewPage();
  return {page, Open(page).Add(row, 0)};
}

bool RowStore::Replace(RowId where, Bytes row, unsigned flags) {
  const Page read = pages().Read(where.page);
  const DataPage before(layout(), read, owner_);
  if (row.size() > before.Row(where.slot).size() + before.free()) return false;
  DataPageWriter page = Open(where.page);
  page.Replace(where.slot, row, flags);
  KeepFreeMap(where.page, page.rows());
  return true;
}

void RowStore::SetPointer(RowId where, RowId to) {
  const MutablePage page = transaction_->Change(where.page);
  const Bytes row = DataPage(layout(), page, owner_).Row(where.slot);
  const auto at = static_cast<std::size_t>(row.data() - page.bytes().data());
  StoreRowPointer(page.Slice(at, std::min(row.size(), kRowPointerSize)), 0, to);
}

void RowStore::Delete(RowId where) {
  DataPageWriter page = Open(where.page);
  page.Delete(where.slot);
  if (page.HasLiveRows())
    KeepFreeMap(where.page, page.rows());
  else
    FreePage(where.page);
}

void RowStore::KeepFreeMap(std::uint32_t page, const DataPage& rows) {
  if (!can_share_pages()) return;
  UsageMapWriter with_room(*transaction_, free_map_);
  if (rows.slot_count() == kMostSlots || rows.free() < least_free_) return with_room.Remove(page);
  with_room.Add(page);
  if (page != last_page_) untried_end_ = std::max(untried_end_, page + 1);
}

void RowStore::FreePage(std::uint32_t page) {
  if (can_share_pages()) UsageMapWriter(*transaction_, free_map_).Remove(page);
  UsageMapWriter(*transaction_, owned_map_).Remove(page);
  PageAllocator(*transaction_).Free(page);
  if (last_page_ == page) last_page_ = 0;
}

}  // namespace jet
