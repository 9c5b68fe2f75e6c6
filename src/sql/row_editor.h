#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

#include "jet/row_draft.h"
#include "jet/table.h"
#include "jet/value.h"
#include "sql/transaction.h"

namespace sql {

/// Adds rows to a stored table and deletes them. Columns are 0-based positions in its definition.
class RowEditor {
 public:
  /// @param changes  outlives the editor
  RowEditor(Changes& changes, const jet::Table& table) : changes_(changes), table_(table) {}

  /// Begins a new row of the columns' defaults, dropping one that was begun.
  /// @throws Error 3027 when the base was opened for reading
  void Start();
  /// An empty text becomes Null where the column takes no empty texts but does take Null: old bases
  /// forbid them, and no message may be lost for that.
  /// @throws ConversionError 3421, Error 3163
  void Set(std::size_t column, jet::Value value);
  /// The row that was begun, and it stays so when this throws.
  /// @throws DuplicateKey, Error 3314, 3315, 3163, FileError
  jet::RowId Store();

  void Delete(jet::RowId id);

 private:
  /// What a base demands of a column.
  struct Target {
    const jet::Column* column;
    bool empty_becomes_null;
    std::optional<jet::Value> initial;  // none = nothing is set
  };

  void ReadDemands();
  std::optional<jet::Value> DefaultOf(const jet::Column& column, std::string_view expression) const;

  Changes& changes_;
  jet::Table table_;
  std::vector<Target> targets_;       // by column, since the first row was begun
  std::vector<jet::Assignment> row_;  // the new row's values
};

}  // namespace sql
