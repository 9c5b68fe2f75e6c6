#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "jet/index_writer.h"
#include "jet/row.h"
#include "jet/row_draft.h"
#include "jet/table_def.h"
#include "jet/transaction.h"

namespace jet {

/// Keeps all indexes of a table in step with its rows: first Plan..., which changes nothing, then
/// Apply once the row is in its place.
class TableIndexes {
 public:
  /// @param table  outlives this
  TableIndexes(Transaction& transaction, const TableDef& table);

  /// @throws DuplicateKey, Error 3314 for Null in a required key, Error 75 for text of unknown order
  void PlanInsert(RowDraft& row);
  void PlanUpdate(const Row& before, RowDraft& after);
  void PlanDelete(const Row& before);
  void Apply(RowId id);

 private:
  /// What happens to the entry of one row in one index.
  struct Change {
    std::optional<std::string> erase, insert;  // keys; to erase an unknown one it is empty
    bool counts = false;                       // no row has the new key yet
  };

  Change& Plan(std::size_t index) { return changes_[index] = {}; }
  void PlanNew(std::size_t index, RowDraft& row);
  void PlanOld(std::size_t index, const Row& row);
  std::string KeyOf(const RealIndex& index, RowDraft& row) const;
  const Column& ColumnOf(const IndexColumn& part) const { return *table_.ColumnByNumber(part.number); }

  Transaction& transaction_;
  const TableDef& table_;
  std::vector<IndexWriter> writers_;  // like real_indexes
  std::vector<Change> changes_;       // likewise
};

}  // namespace jet
