#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "jet/long_value_writer.h"
#include "jet/row.h"
#include "jet/row_draft.h"
#include "jet/row_encoder.h"
#include "jet/row_store.h"
#include "jet/table_def.h"
#include "jet/table_indexes.h"
#include "jet/transaction.h"

namespace jet {

/// Adds rows of one table to another of the same columns, value for value as they are stored: nothing is
/// decoded on the way, so nothing is lost that the program's own text cannot say. What the table demands of
/// values is not asked, for the rows have been in a table like it.
class RowCopier {
 public:
  /// @param to  has the same columns, with the same numbers and places, as the table that rows come from;
  ///            outlives the copier
  RowCopier(Transaction& transaction, const TableDef& to);

  /// @throws DuplicateKey, Error 75 for text of unknown order in an index; FormatError for a damaged row.
  ///         The transaction must not be committed then
  /// @param instead  a new value for one column of a fixed size
  void Copy(const Row& row, const std::optional<Assignment>& instead = {});
  std::uint32_t copied() const { return copied_; }

 private:
  struct LongColumn {
    const Column* column;
    LongValueWriter values;
    std::string data, head;
  };

  void CopyLongValue(LongColumn& column, const Row& row);

  Transaction& transaction_;
  const TableDef& to_;
  RowDraft draft_;
  RowEncoder encoder_;
  TableIndexes indexes_;
  RowStore rows_;
  std::vector<LongColumn> long_columns_;
  std::vector<StoredColumn> stored_;  // by column number
  std::string encoded_;
  std::uint32_t copied_ = 0;
};

}  // namespace jet
