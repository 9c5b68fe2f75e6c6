#include "jet/table_counters.h"

namespace jet {

std::uint32_t RowCount(const PageFile& file, const TableDef& table) {
  return file.Read(table.page).U32(file.layout().table_def.rows);
}

// A wrong count does not fall below zero.
void AddToRowCount(Transaction& transaction, const TableDef& table, int rows) {
  const std::int64_t count = std::int64_t{RowCount(transaction.pages(), table)} + rows;
  if (count < 0 || count > UINT32_MAX) return;
  transaction.Change(table.page).SetU32(transaction.pages().layout().table_def.rows, static_cast<std::uint32_t>(count));
}

std::int32_t LastAutonumber(const PageFile& file, const TableDef& table) {
  return static_cast<std::int32_t>(file.Read(table.page).U32(file.layout().table_def.autonumber));
}

void SetLastAutonumber(Transaction& transaction, const TableDef& table, std::int32_t number) {
  transaction.Change(table.page)
      .SetU32(transaction.pages().layout().table_def.autonumber, static_cast<std::uint32_t>(number));
}

// The counters stand at the beginning of the definition. Those of more indexes than tables have
// would lie on a further page: hints that nobody misses.
void CountDistinctKey(Transaction& transaction, const TableDef& table, std::size_t index) {
  const Layout& layout = transaction.pages().layout();
  const std::size_t at = layout.table_def.size + index * layout.table_def.index_counter_size + kDistinctKeysAt;
  if (at + 4 > layout.page_size) return;
  const MutablePage page = transaction.Change(table.page);
  page.SetU32(at, page.U32(at) + 1);
}

}  // namespace jet
