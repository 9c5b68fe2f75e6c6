#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "base/bytes.h"
#include "jet/layout.h"
#include "jet/table_def.h"
#include "jet/value.h"

namespace jet {

/// What a row stores for one column.
struct StoredColumn {
  bool bit = false;  // of the null mask: there is a value; of a Boolean, the value itself
  Bytes bytes;       // of a long value, head and inline data or all its data, as the place says
};

bool IsKnownType(Version version, ColumnType type);
/// Memo and OLE: the row holds a head, the data may lie elsewhere.
bool IsLongValue(ColumnType type);
/// Text and Memo.
bool IsText(ColumnType type);

/// Bytes of every value of the type; 0 when they differ from value to value, and for Boolean.
std::size_t SizeOf(ColumnType type);
/// Bytes that a fixed column takes in a row; of a Boolean, which takes none, its length.
std::size_t FixedSizeOf(const Column& column);

/// Decodes the stored bytes of a value of any type but Boolean; of a long value all its data.
/// @return none when the bytes are no value of that type
std::optional<Value> DecodeValue(Version version, const Column& column, Bytes stored);

/// The stored bytes of a value of any type but Boolean, in the place of what `to` held; of a long
/// value its data. Text is not compressed.
/// @throws ConversionError 3421 when the value is null, of another kind or out of the type's range
void EncodeValue(Version version, const Column& column, const Value& value, std::string& to);

}  // namespace jet
