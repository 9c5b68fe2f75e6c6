#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "sql/bind.h"
#include "sql/packed_rows.h"
#include "sql/plan.h"
#include "sql/row_source.h"

namespace sql {

/// The rows that a recordset moves over.
class ResultRows {
 public:
  virtual ~ResultRows() = default;
  virtual std::size_t size() const = 0;
  /// Makes the row at this 0-based position current.
  virtual void GoTo(std::size_t position) = 0;
  /// Of the current row; size() when it is not among the rows any more.
  virtual std::size_t Position() = 0;
  /// The current row; its columns are the result's fields. Valid until the next move.
  /// @throws Error 3167 when it has been deleted
  virtual const RowAccess& Row() = 0;
  /// Makes the first row that fulfils `condition` (on the result's fields) current.
  /// @return false when there is none; there is no current row then
  virtual bool FindFirst(const BoundExpression& condition) = 0;

  // Changes of the stored rows. A static copy refuses them with Error 3027.
  /// Begins a new row, dropping one that was begun.
  virtual void StartRow();
  /// @throws Error 3027 also for a calculated field, else like RowEditor::Set
  virtual void Set(std::size_t field, jet::Value value);
  /// Stores the row that was begun; it becomes the last one, the current row stays current.
  virtual void StoreRow();
  /// Deletes the current row; the row behind it takes its position, and no row is current.
  virtual void Delete();
};

/// A static copy.
std::unique_ptr<ResultRows> MakeSnapshotRows(PackedRows rows);

/// Addresses fixed now, rows read when they are asked for. @param plan  row by row, its source has a reader
std::unique_ptr<ResultRows> MakeDynasetRows(Plan plan, std::vector<jet::RowId> keys);

}  // namespace sql
