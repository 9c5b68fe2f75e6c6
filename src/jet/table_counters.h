#pragma once

#include <cstddef>
#include <cstdint>

#include "jet/page_file.h"
#include "jet/table_def.h"
#include "jet/transaction.h"

namespace jet {

// The numbers of a definition that change with the table's rows. They are read from its page and written
// there, never kept: so they are undone with the rows. All but the last autonumber are hints.

std::uint32_t RowCount(const PageFile& file, const TableDef& table);
void AddToRowCount(Transaction& transaction, const TableDef& table, int rows);

/// The greatest number that the table gave out; 0 = none yet.
std::int32_t LastAutonumber(const PageFile& file, const TableDef& table);
void SetLastAutonumber(Transaction& transaction, const TableDef& table, std::int32_t number);

/// Counts the keys that an index ever held, each once. @param index  position in real_indexes
void CountDistinctKey(Transaction& transaction, const TableDef& table, std::size_t index);

}  // namespace jet
