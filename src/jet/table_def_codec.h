#pragma once

#include <cstdint>
#include <string>

#include "jet/layout.h"
#include "jet/page_file.h"
#include "jet/table_def.h"

namespace jet {

/// Reads a table's definition from all its pages.
/// @param page  where it begins. @throws FormatError when none begins there or it contradicts itself
TableDef ReadTableDef(const PageFile& file, std::uint32_t page);

/// The bytes of a definition of a table that has no rows yet. Its maps and roots have their places.
/// @throws Error when a name is too long for the format
std::string EncodeTableDef(const Layout& layout, const TableDef& def);

/// The flags of a column entry that have a field of their own.
inline unsigned FlagsOfFields(const Column& column) {
  return (column.fixed ? column_flag::kFixed : 0) | (column.autonumber ? column_flag::kAutonumber : 0) |
         (column.hyperlink ? column_flag::kHyperlink : 0);
}

}  // namespace jet
