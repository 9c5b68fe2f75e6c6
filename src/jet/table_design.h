#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "jet/header.h"
#include "jet/table_def.h"

namespace jet {

/// A column that a new table is to have.
struct NewColumn {
  std::string_view name;  // Windows-1251
  ColumnType type = ColumnType::kLong;
  std::uint16_t length = 0;  // Text: characters, up to 255; Binary: bytes
  bool autonumber = false;
};

/// An index that a new table is to have. All its columns are ascending.
struct NewIndex {
  std::string_view name;
  std::vector<std::string_view> columns;
  IndexKind kind = IndexKind::kNormal;
  bool unique = false, ignore_nulls = false, required = false;
};

/// A primary key: unique, nothing in it may be null.
inline NewIndex PrimaryKey(std::string_view name, std::vector<std::string_view> columns) {
  return {.name = name, .columns = std::move(columns), .kind = IndexKind::kPrimary, .unique = true, .required = true};
}

/// A table that has no place in a file yet: its columns numbered in the order given and laid out in rows.
/// @param header  of the base it is for: its version and sort order
/// @throws Error 5 for more columns or indexes than a table can have, or a column that an index does not find
TableDef DesignTable(const Header& header, std::span<const NewColumn> columns, std::span<const NewIndex> indexes);

/// A name as a base of that version stores it.
std::string StoredName(Version version, std::string_view name);

}  // namespace jet
