#pragma once

#include <span>
#include <string>
#include <vector>

#include "jet/column_codec.h"
#include "jet/row.h"
#include "jet/row_encoder.h"
#include "jet/table_properties.h"
#include "jet/value.h"

namespace jet {

/// A new value for a column of the table. Null makes a Boolean false.
struct Assignment {
  const Column* column = nullptr;
  Value value;
};

/// A row that is being written: new values, and those that it keeps.
class RowDraft {
 public:
  /// @param table  outlives the draft
  RowDraft(const Layout& layout, const TableDef& table, const TableProperties& properties);

  /// Begins a row without values, or one that holds what `before` does. That one must not change
  /// until the draft is encoded.
  void Start(const Row* before = nullptr);
  /// @throws Error 3421, 3163
  void Set(const Assignment& assignment);
  bool IsChanged(const Column& column) const { return cells_[column.number].changed; }
  /// Of a long value all its data. Valid until the next Start.
  StoredColumn Whole(const Column& column);

  /// Decides which long values go outside of the row. @throws Error 3314, 3315, 3163 when the base does
  /// not take such a row
  void Finish();
  /// Is it a new long value whose data go outside of the row?
  bool GoesOutside(const Column& column) const { return cells_[column.number].outside; }
  /// What the row stores of such a value: see LongValueWriter.
  void SetHead(const Column& column, std::string head) { cells_[column.number].head = std::move(head); }
  /// Valid until the next Start.
  Bytes Encode();

 private:
  struct Cell {
    StoredColumn stored;  // of a new long value all its data, of an old one what the row holds
    std::string buffer;   // where `stored` looks when the value is new
    std::string head;     // of a new long value, what the row is to hold
    bool changed = false, outside = false;
    ColumnProperties demands;
  };

  void CheckDemands(const Column& column) const;
  void PlaceLongValues(bool none_inline);
  bool FitsPage() { return Encode().size() <= layout_.data_page.largest_row; }

  const Layout& layout_;
  const TableDef& table_;
  RowEncoder encoder_;
  std::vector<Cell> cells_;           // by column number
  std::vector<StoredColumn> in_row_;  // likewise
  const Row* before_ = nullptr;
  std::string encoded_;
};

}  // namespace jet
