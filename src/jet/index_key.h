#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "jet/column_codec.h"
#include "jet/layout.h"
#include "jet/row.h"
#include "jet/table_def.h"
#include "jet/value.h"

namespace jet {

/// What a key holds of a null.
constexpr std::uint8_t NullKey(bool ascending) { return ascending ? 0x00 : 0xFF; }

/// A row's key in one index, without the row's address; none when it holds text that the engine
/// knows no key of.
std::optional<std::string> KeyOfRow(Version version, const TableDef& def, const RealIndex& index, const Row& row);

/// The number that a key begins with whose first column is a Long; none when that is null or the key damaged.
std::optional<std::int32_t> LongOfKey(Bytes key, bool ascending);

/// Are all columns of the key null? An index that ignores nulls has no entry for such a row.
bool AllKeyColumnsNull(const TableDef& def, const RealIndex& index, const Row& row);

/// The key of a row that stores this in the index's columns, of long values all their data; none as above.
std::optional<std::string> KeyOfStored(Version version, const TableDef& def, const RealIndex& index,
                                       std::span<const StoredColumn> columns);

/// The key, or its beginning, of rows with these values in the index's first columns; none as above.
/// @throws ConversionError for a value that a column cannot hold
std::optional<std::string> KeyOfValues(Version version, const TableDef& def, const RealIndex& index,
                                       std::span<const Value> values);

}  // namespace jet
