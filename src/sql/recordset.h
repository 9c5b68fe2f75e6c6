#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
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
  /// @throws Error 3167 like all of them when the row has been deleted
  jet::Value Get(std::size_t field);

  // Changes of a dynaset; a snapshot, groups and a base opened for reading refuse them with Error 3027. Each
  // is on the medium when it returns, or with the Transaction that is open; when it throws, the base is
  // as it was.

  /// Begins a new row with the fields' defaults, else Null. Any move, FindFirst, Cancel and another
  /// AddNew drop it silently.
  void AddNew();
  /// Sets a field of the new row; values are converted to the field's kind. An empty text becomes Null where
  /// the field takes no empty texts. @throws Error 3020 without AddNew, ConversionError 3421, Error 3163
  void Set(std::size_t field, jet::Value value);
  void Set(std::string_view field, jet::Value value) { Set(FieldIndex(field), std::move(value)); }
  /// Stores the new row, which belongs to the set at once, behind all others. The row that was current
  /// before AddNew is current again. When it throws, the row is still begun.
  /// @throws Error 3020 without AddNew, DuplicateKey, Error 3314, 3315, 3163, FileError
  void Update();
  void Cancel() { adding_ = false; }
  /// Deletes the current row; then none is current, and MoveNext goes to the one behind it.
  /// @throws Error 3021, 3167, FileError
  void Delete();

 private:
  const RowAccess& Current();
  std::size_t CurrentPosition();
  void GoTo(std::size_t position);

  std::vector<Field> fields_;
  std::unique_ptr<ResultRows> rows_;
  OleDate now_;
  std::vector<std::string> texts_;  // what Text() lends, per field
  bool has_current_ = false, at_end_ = false, no_match_ = false;
  bool deleted_ = false;                 // the row at position_ was deleted: now the one behind it is there
  std::optional<std::size_t> position_;  // of the current row, when known
  const RowAccess* row_ = nullptr;       // the current row, once it was asked for
  std::size_t visited_ = 0;
  std::size_t added_ = 0;
  bool adding_ = false;  // AddNew has begun a row
};

}  // namespace sql
