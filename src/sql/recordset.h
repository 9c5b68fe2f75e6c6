#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/ole_date.h"
#include "jet/value.h"
#include "sql/result_rows.h"

namespace sql {

/// The rows of a table, a saved query or a statement, one of them current. It opens on the first row;
/// without rows Bof and Eof hold. Reading a field or moving without a current row throws Error 3021.
/// It lives no longer than the Connection that opened it. Move-only.
class Recordset {
 public:
  Recordset(std::vector<Field> fields, std::unique_ptr<ResultRows> rows, OleDate now);

  const std::vector<Field>& Fields() const { return fields_; }
  /// Letter case ignored. @throws Error 3265 when there is no such field
  std::size_t FieldIndex(std::string_view name) const;

  bool Bof() const { return rows_->size() == 0; }
  bool Eof() const { return at_end_; }
  void MoveFirst();
  /// Behind the last row Eof holds; once more throws.
  void MoveNext();
  void MoveLast();
  /// Rows visited so far; all of them after MoveLast.
  std::int32_t RecordCount() const;

  /// Looks through all rows for the first that fulfils a condition such as "[Код] = 5". NoMatch tells
  /// whether it failed; there is no current row then.
  void FindFirst(std::string_view criterion);
  bool NoMatch() const { return no_match_; }

  // Fields of the current row, by 0-based position.
  bool IsNull(std::size_t field);
  /// A whole number; null is 0, fractions are rounded. @throws SqlError 13 for a text
  std::int32_t Int(std::size_t field);
  /// Null is empty. The view lives until the next move, or until the same field is read again.
  std::string_view Text(std::size_t field);
  std::optional<OleDate> Date(std::size_t field);
  jet::Value Get(std::size_t field);

 private:
  const RowAccess& Current();
  void GoTo(std::size_t position);

  std::vector<Field> fields_;
  std::unique_ptr<ResultRows> rows_;
  OleDate now_;
  std::vector<std::string> texts_;  // what Text() lends, per field
  bool has_current_ = false, at_end_ = false, no_match_ = false;
  std::optional<std::size_t> position_;  // of the current row, when known
  const RowAccess* row_ = nullptr;       // the current row, once it was asked for
  std::size_t visited_ = 0;
};

}  // namespace sql
