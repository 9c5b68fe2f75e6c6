#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/ole_date.h"
#include "jet/value.h"

namespace sql {

enum class ScalarKind : std::uint8_t { kNull, kBoolean, kLong, kDouble, kDate, kText };

/// One value under evaluation; it owns nothing. Currency and Numeric are kDouble here, a GUID is the
/// text {…}.
struct Scalar {
  ScalarKind kind = ScalarKind::kNull;
  double number = 0;      // all but text; True is -1, a date its days
  std::string_view text;  // kText: Windows-1251; lives as long as where it was read from

  static Scalar Boolean(bool value) { return {ScalarKind::kBoolean, value ? -1.0 : 0.0, {}}; }
  static Scalar Long(std::int32_t value) { return {ScalarKind::kLong, static_cast<double>(value), {}}; }
  static Scalar Double(double value) { return {ScalarKind::kDouble, value, {}}; }
  static Scalar Date(OleDate value) { return {ScalarKind::kDate, value.days, {}}; }
  static Scalar Text(std::string_view value) { return {ScalarKind::kText, 0, value}; }
  bool IsNull() const { return kind == ScalarKind::kNull; }
};

/// `buffer` holds the text when the value itself has none. @throws SqlError 13 for bytes without a meaning
Scalar ToScalar(const jet::Value& value, std::string& buffer);

jet::Value ToValue(const Scalar& value);

/// <0, 0, >0; neither may be Null. Texts without letter case, trailing blanks do not count; a text
/// and a number do not compare. @throws SqlError 13
int Compare(const Scalar& a, const Scalar& b);
/// Compare(a, b) == 0, faster.
bool Equal(const Scalar& a, const Scalar& b);
/// The order of result rows: Null before all else, texts as in sorted lists.
int CompareForOrder(const Scalar& a, const Scalar& b);

/// Appends the value as & joins it: Null as nothing, numbers in plain decimal.
void AppendAsText(const Scalar& value, std::string& to);
/// Appends bytes that are equal for values that Equal() finds equal, and for no others.
void AppendGroupKey(const Scalar& value, std::string& to);

}  // namespace sql
