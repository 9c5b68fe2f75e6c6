#include "sql/stored_value.h"

#include <string>
#include <utility>

#include "base/cat.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "jet/table_writer.h"
#include "sql/scalar.h"
#include "text/numbers.h"

namespace sql {
namespace {

using jet::ColumnType;

double NumberIn(const Scalar& value) {
  return value.kind == ScalarKind::kText ? text::StrictNumber(value.text) : value.number;
}

jet::Value AsCurrency(double number) {
  constexpr double kScale = 10'000;
  constexpr double kEnd = 0x1p63;
  const double scaled = number * kScale;
  if (!(scaled >= -kEnd && scaled < kEnd)) ThrowOverflow();
  return jet::Currency{static_cast<std::int64_t>(scaled)};
}

jet::Value AsDate(const Scalar& value) {
  const OleDate date{NumberIn(value)};
  if (!ole_date::InRange(date)) ThrowOverflow();
  return date;
}

std::string AsText(const Scalar& value) {
  std::string text;
  AppendAsText(value, text);
  return text;
}

/// Values that have no counterpart in the column stay what they are.
jet::Value Converted(ColumnType type, jet::Value value) {
  const bool is_text = std::holds_alternative<std::string>(value);
  if (jet::IsNull(value) || std::holds_alternative<jet::Binary>(value) || (is_text && jet::IsText(type))) return value;
  std::string buffer;
  const Scalar scalar = ToScalar(value, buffer);
  switch (type) {
    case ColumnType::kText:
    case ColumnType::kMemo: return AsText(scalar);
    case ColumnType::kByte:
    case ColumnType::kInteger:
    case ColumnType::kLong: return text::RoundHalfEven(NumberIn(scalar));
    case ColumnType::kSingle:
    case ColumnType::kDouble: return NumberIn(scalar);
    case ColumnType::kCurrency:
      return std::holds_alternative<jet::Currency>(value) ? value : AsCurrency(NumberIn(scalar));
    case ColumnType::kDateTime: return AsDate(scalar);
    case ColumnType::kBoolean: return NumberIn(scalar) != 0;
    default: return value;
  }
}

}  // namespace

jet::Value ForColumn(jet::Version version, const jet::Column& column, jet::Value value) {
  try {
    value = Converted(column.type, std::move(value));
    jet::CheckValue(version, column, value);
  } catch (const Error& error) {
    if (error.number() == error_number::kTextTooLong) throw;
    throw ConversionError(error_number::kConversion, Cat("Значение не подходит к полю "_ru, column.name));
  }
  return value;
}

}  // namespace sql
