#pragma once

#include <map>
#include <string>
#include <string_view>

#include "base/bytes.h"
#include "jet/layout.h"
#include "jet/table.h"

namespace jet {

/// What a base demands of the values of a column, beyond its type.
struct ColumnProperties {
  bool required = false;
  bool allow_zero_length = false;
  std::string default_value;  // an expression, Windows-1251; empty = none
};

/// The properties of a table's columns. Most tables made by programs have none.
class TableProperties {
 public:
  /// @param name  letter case ignored; a column without properties gets those that hold by default
  const ColumnProperties& Of(std::string_view name) const;
  ColumnProperties& operator[](std::string_view name);

 private:
  std::map<std::string, ColumnProperties, std::less<>> by_name_;  // names in lower case
};

/// Reads what the catalog stores for an object; damaged bytes end it early.
TableProperties DecodeProperties(Version version, Bytes stored);

/// @param objects  MSysObjects. @param page  where the table's definition begins
TableProperties ReadProperties(Version version, const Table& objects, std::uint32_t page);

}  // namespace jet
