#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "jet/column_codec.h"
#include "jet/layout.h"
#include "jet/table_def.h"
#include "jet/value.h"

namespace jet {

/// @param size  bytes that a value takes before it is compressed. @throws Error 3163 when a Text or Binary
/// column is shorter
void CheckLength(const Column& column, std::size_t size);

/// What a column of any type but Boolean stores of a value, in the place of what `to` held: text compressed
/// where the column wants it, what is shorter than a fixed column filled up; of a long value all its data.
/// @throws ConversionError 3421 when the column cannot hold the value, Error 3163 when it is too long
void EncodeColumn(Version version, const Column& column, const Value& value, std::string& to);

/// Puts rows of one table together.
class RowEncoder {
 public:
  /// @param table  outlives the encoder
  RowEncoder(const Layout& layout, const TableDef& table);

  /// @param columns  by column number, for all that were ever given out; of long values what stands in
  ///                 the row. Of fixed columns the bytes have the column's size
  /// @param to       gets the row in the place of what it held. It may be larger than a page takes
  void Encode(std::span<const StoredColumn> columns, std::string& to) const;

 private:
  void AppendFixedPart(std::span<const StoredColumn> columns, std::string& to) const;
  void AppendVariablePart(std::span<const StoredColumn> columns, std::string& to) const;
  void AppendOffsets(std::span<const std::size_t> offsets, std::string& to) const;
  void AppendMask(std::span<const StoredColumn> columns, std::string& to) const;
  std::size_t mask_size() const { return (table_.max_columns + std::size_t{7}) / 8; }

  const Layout& layout_;
  const TableDef& table_;
  std::size_t fixed_size_ = 0;
  std::vector<const Column*> variable_;  // by variable index; nullptr = a deleted column
};

}  // namespace jet
