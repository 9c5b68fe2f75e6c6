#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/bytes.h"
#include "base/ole_date.h"
#include "jet/long_value.h"
#include "jet/page_file.h"
#include "jet/table_def.h"
#include "jet/value.h"

namespace jet {

/// One row, decoded column by column as asked. It holds its page in memory; views into it live as
/// long as the row does and is not moved to another. Columns must be of the table that gave the row;
/// an accessor that does not suit the column's type throws Error 13, bytes that contradict the
/// format a FormatError with page and slot.
class Row {
 public:
  RowId id() const { return id_; }

  /// A boolean column is never null.
  bool IsNull(const Column& column) const;
  bool Bool(const Column& column) const;
  /// Byte, Integer, Long; null is 0.
  std::int32_t Int(const Column& column) const;
  /// Date/time; empty when null.
  std::optional<OleDate> Date(const Column& column) const;
  /// Text and Memo: appends Windows-1251, '?' for each character outside it; nothing when null.
  void AppendText(const Column& column, std::string& to) const;
  /// Any type. Text is Windows-1251; long values are fetched.
  Value Get(const Column& column) const;

  /// The bytes as the row stores them; of a long value the head and the inline part. Empty when null.
  Bytes Stored(const Column& column) const;
  /// Replaces `to` by the whole value's bytes, long values fetched, text not decoded.
  void ReadStored(const Column& column, std::string& to) const;
  /// The same of a long value that is not null, without copying one that lies in one piece.
  /// @param holder  what it has held goes; the view lives as long as it and the row do
  Bytes FetchStored(const Column& column, std::optional<LongValue>& holder) const {
    return holder.emplace(*file_, Stored(column), id_).data();
  }
  /// What can still be read of a long value that is not null.
  LongValue::Beginning FetchBeginning(const Column& column) const {
    return LongValue::ReadBeginning(*file_, Stored(column), id_);
  }

 private:
  friend class Table;
  friend class SalvageCursor;
  /// Looks at `bytes` of `page` as a row of the table.
  void Assign(const PageFile& file, const TableDef& def, RowId id, Page page, Bytes bytes);
  void FindVariablePartJet3(std::size_t mask_at);
  void FindVariablePartJet4(std::size_t mask_at);
  /// Checks offsets_: none may decrease, all lie in [least, most].
  void SetVariablePart(std::size_t count, std::size_t least, std::size_t most);
  bool MaskBit(const Column& column) const;
  Bytes StoredNumber(const Column& column) const;
  [[noreturn]] void ThrowDamaged(std::string_view what) const;

  const PageFile* file_ = nullptr;
  RowId id_;
  Page page_;
  Bytes bytes_;
  Bytes mask_;
  std::size_t stored_columns_ = 0;
  std::size_t fixed_end_ = 0;                            // where the fixed part must have ended
  std::size_t variable_count_ = 0;                       // variable columns that the row knows
  std::array<std::uint16_t, kMostColumns + 1> offsets_;  // variable_count_ + 1 of them are filled
};

}  // namespace jet
