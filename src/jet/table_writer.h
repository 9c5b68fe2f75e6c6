#pragma once

#include <span>
#include <vector>

#include "jet/long_value_writer.h"
#include "jet/relation_guard.h"
#include "jet/row_draft.h"
#include "jet/row_store.h"
#include "jet/table.h"
#include "jet/table_indexes.h"
#include "jet/table_properties.h"
#include "jet/transaction.h"

namespace jet {

/// Could the column take the value? For whoever wants to hear it before the row is stored.
/// @throws ConversionError 3421, Error 3163 when the text or the bytes are longer than the column
void CheckValue(Version version, const Column& column, const Value& value);

/// Adds, changes and deletes rows of a table, its indexes with them.
///
/// What the base does not allow is refused before anything is changed, and the transaction may go on:
/// 3022 (DuplicateKey) a key that a unique index has, 3314 Null in a required column, 3315 an empty
/// text where the column does not allow it, 3163 a value or a row that is too long, 3421 a value of
/// another kind, 75 text of which the engine cannot make an index key, a GUID that it would have to
/// invent, a row that a relationship with another table concerns. When anything fails later, the whole
/// transaction is rolled back.
class TableWriter {
 public:
  /// All but the properties outlive the writer. Several writers of a table may take turns in one transaction.
  TableWriter(Transaction& transaction, const Table& table, const TableProperties& properties);
  TableWriter(const TableWriter&) = delete;
  TableWriter& operator=(const TableWriter&) = delete;

  /// Columns that are not named are Null, or get the next autonumber.
  RowId Insert(std::span<const Assignment> values);
  /// The row keeps its address, and what the other columns hold.
  /// @throws FormatError when there is no such row
  void Update(RowId id, std::span<const Assignment> values);
  /// @throws FormatError when there is no such row
  void Delete(RowId id);

 private:
  struct LongColumn {
    const Column* column;
    LongValueWriter values;
  };

  void SetAll(std::span<const Assignment> values);
  void FillAutonumbers();
  void RequireGuids();
  void CountAutonumbers();
  void StoreLongValues();
  void FreeLongValue(LongColumn& column, const Row& row);
  void Put(RowId id, Bytes row);
  void Erase(RowId id);

  Transaction& transaction_;
  const PageFile& pages_;
  Table table_;
  RelationGuard relations_;
  RowDraft draft_;
  TableIndexes indexes_;
  RowStore rows_;
  std::vector<LongColumn> long_columns_;
  std::vector<const Column*> autonumbers_, guids_;  // columns of numbers, and of GUIDs, that the engine gives out
};

}  // namespace jet
