#pragma once

#include <span>
#include <string>
#include <string_view>

#include "jet/layout.h"

namespace jet {

/// What a new table demands of a column.
struct NewProperties {
  std::string_view column;
  bool required = false, allow_zero_length = false;
  std::string_view default_value = "";  // an expression, Windows-1251; empty = none
};

/// What the catalog stores for an object; empty when nothing is demanded. DecodeProperties of table_properties.h reads
/// it.
std::string EncodeProperties(Version version, std::span<const NewProperties> properties);

}  // namespace jet
