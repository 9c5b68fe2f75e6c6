#pragma once

#include <cstdint>

#include "jet/page_file.h"
#include "jet/table_def.h"

namespace jet {

/// Reads a table's definition from all its pages.
/// @param page  where it begins. @throws FormatError when none begins there or it contradicts itself
TableDef ReadTableDef(const PageFile& file, std::uint32_t page);

}  // namespace jet
