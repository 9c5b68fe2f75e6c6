#pragma once

#include <string>
#include <string_view>

#include "jet/value.h"

namespace cli {

/// The form of listings: an object per table, an array per row, one a line. Texts are UTF-8.
namespace json_lines {

/// A quoted text. Bytes that are no UTF-8, as paths may have them, become U+FFFD.
void AppendText(std::string_view utf8, std::string& to);
/// A date as days since 1899-12-30, currency and numeric as {"decimal": text}, bytes as
/// {"bytes": count, "sha256": hex}, a GUID as {"guid": text}, Null as null.
void AppendValue(const jet::Value& value, std::string& to);
/// long, text, date ...
std::string_view TypeName(jet::ColumnType type);

}  // namespace json_lines

}  // namespace cli
