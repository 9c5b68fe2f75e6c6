#pragma once

#include "jet/row_draft.h"
#include "jet/table_def.h"

namespace jet {

/// Refuses changes that could leave a row without the one that it refers to in another table. The engine
/// does not look into that table, so it refuses more than it would have to, and never too little.
class RelationGuard {
 public:
  /// @param table  outlives this
  explicit RelationGuard(const TableDef& table) : table_(table) {}

  // @throws Error 75 that names the relationship

  void CheckInsert() const;
  void CheckUpdate(const RowDraft& row) const;
  void CheckDelete() const;

 private:
  const TableDef& table_;
};

}  // namespace jet
