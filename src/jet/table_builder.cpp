#include "jet/table_builder.h"

#include <algorithm>

#include "base/bytes.h"
#include "base/cp1251.h"
#include "jet/column_codec.h"
#include "jet/data_page_writer.h"
#include "jet/index_page_writer.h"
#include "jet/page_allocation.h"
#include "jet/table_def_codec.h"

namespace jet {

RowId MapRows::Add() {
  const Layout& layout = transaction_->pages().layout();
  const std::string empty(layout.new_map_size, '\0');
  if (page_ != 0) {
    const Page page = transaction_->pages().Read(page_);
    if (!TakesRow(DataPage(layout, page, kMapPageOwner), empty.size())) page_ = 0;
  }
  if (page_ == 0) {
    const MutablePage page = PageAllocator(*transaction_).Allocate();
    DataPageWriter::Format(layout, page, kMapPageOwner);
    page_ = page.number();
  }
  return {page_, DataPageWriter(layout, transaction_->Change(page_), kMapPageOwner).Add(AsBytes(empty), 0)};
}

void PlaceTableMaps(MapRows& maps, TableDef& table) {
  table.owned_map = maps.Add();
  table.free_map = maps.Add();
  std::vector<Column*> long_values;
  for (Column& column : table.columns)
    if (IsLongValue(column.type)) long_values.push_back(&column);
  std::ranges::sort(long_values, {}, &Column::number);
  for (Column* const column : long_values) {
    column->owned_map = maps.Add();
    column->free_map = maps.Add();
  }
}

void PlaceIndex(Transaction& transaction, MapRows& maps, const TableDef& table, RealIndex& index) {
  index.usage_map = maps.Add();
  const MutablePage root = PageAllocator(transaction).Allocate();
  index.root = root.number();
  WriteIndexPage(transaction.pages().layout(), root, table.page, {});
  UsageMapWriter(transaction, index.usage_map).Add(index.root);
}

// A further page repeats the head, and tells its own free bytes.
void StoreTableDef(Transaction& transaction, const TableDef& table) {
  const Layout& layout = transaction.pages().layout();
  const std::string bytes = EncodeTableDef(layout, table);
  MutablePage page = transaction.Change(table.page);
  std::size_t done = 0;
  for (std::size_t skip = 0;; skip = kContinuationHead) {
    const std::string_view part = std::string_view(bytes).substr(done, layout.page_size - skip);
    std::ranges::copy(AsBytes(part), page.bytes().subspan(skip).begin());
    done += part.size();
    const std::size_t used = skip + part.size();
    const std::size_t free = layout.page_size - std::min(used + kContinuationHead, layout.page_size);
    page.SetU8(kPageKindAt, page_kind::kTableDef);
    page.SetU8(kPageKindAt + 1, 1);
    page.SetU16(kFreeSpaceAt, layout.version == Version::kJet3 ? kDefinitionLetters : static_cast<unsigned>(free));
    if (done == bytes.size()) return;
    const MutablePage next = PageAllocator(transaction).Allocate();
    page.SetU32(kNextDefinitionAt, next.number());
    page = next;
  }
}

void BuildTable(Transaction& transaction, TableDef& table) {
  if (table.page == 0) table.page = PageAllocator(transaction).Allocate().number();
  MapRows maps(transaction);
  PlaceTableMaps(maps, table);
  for (RealIndex& index : table.real_indexes) PlaceIndex(transaction, maps, table, index);
  StoreTableDef(transaction, table);
}

}  // namespace jet
