#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "jet/table_def.h"
#include "jet/value.h"
#include "sql/scalar.h"

namespace sql {

/// A column of a table or of a result.
struct Field {
  std::string name;
  jet::ColumnType type = jet::ColumnType::kText;
};

/// A text as its row stores it.
struct StoredText {
  enum class Encoding : std::uint8_t { kNull, kWindows1251, kUtf16 };  // kUtf16: little-endian, may be odd
  Encoding encoding = Encoding::kNull;
  std::string_view bytes;
};

/// A row that expressions are evaluated on. Columns are 0-based positions among the source's fields.
class RowAccess {
 public:
  virtual ~RowAccess() = default;
  virtual bool IsNull(std::size_t column) const = 0;
  /// A text may be decoded into `buffer`. It lives as long as the row and the buffer are left alone.
  virtual Scalar Read(std::size_t column, std::string& buffer) const = 0;
  /// A Text or Memo value without decoding it, where its bytes can be searched as they are. Lives until the
  /// next such call.
  virtual StoredText ReadStored(std::size_t column) const = 0;
  virtual jet::Value Get(std::size_t column) const = 0;
};

/// Rows one after another.
class RowStream {
 public:
  virtual ~RowStream() = default;
  virtual bool Next() = 0;
  /// The address of the current row; without meaning when the source has no reader.
  virtual jet::RowId id() const = 0;
  /// Valid until the next Next(). A row that is not asked for is not read.
  virtual const RowAccess& row() = 0;
};

/// Rows by their address.
class RowReader {
 public:
  virtual ~RowReader() = default;
  /// Valid until the next Find; nullptr when the row has been deleted.
  virtual const RowAccess* Find(jet::RowId id) = 0;
};

class RowEditor;

/// Which rows of a source, and in what order.
struct AccessPath {
  enum class Kind : std::uint8_t {
    kNatural,     // all, by the primary key when it is a number, else as they are stored
    kStored,      // all, as they are stored
    kAscending,   // all, by `column`
    kDescending,  // all, by `column`, highest first
    kEqual,       // those whose `column` holds `key`
  };
  Kind kind = Kind::kNatural;
  std::size_t column = 0;
  std::int32_t key = 0;
};

/// What a statement reads from: a stored table, or the rows of another statement.
class RowSource {
 public:
  virtual ~RowSource() = default;
  virtual const std::vector<Field>& fields() const = 0;
  /// Can kEqual be used for this column?
  virtual bool CanSeek(std::size_t column) const = 0;
  /// Can kAscending and kDescending be used for this column?
  virtual bool CanWalk(std::size_t column) const = 0;
  /// Does no value occur twice in this column?
  virtual bool IsUnique(std::size_t column) const = 0;
  /// About how many rows there are; only to report progress.
  virtual std::size_t ExpectedRows() const = 0;
  virtual std::unique_ptr<RowStream> Open(const AccessPath& path) const = 0;
  /// None when the source stores no rows of its own.
  virtual std::unique_ptr<RowReader> OpenReader() const = 0;
  /// Its columns are this source's fields. None when rows cannot be changed here.
  virtual std::unique_ptr<RowEditor> OpenEditor() const;
};

/// The position of a field by name, letter case ignored; none when absent.
std::optional<std::size_t> FindField(const std::vector<Field>& fields, std::string_view name);

}  // namespace sql
