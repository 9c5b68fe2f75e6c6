#include "sql/scalar.h"

#include <bit>
#include <charconv>

#include "base/cp1251.h"
#include "sql/sql_errors.h"
#include "text/dates.h"
#include "text/numbers.h"
#include "text/strings.h"

namespace sql {
namespace {

double FromDecimal(const std::string& digits) {
  double number = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), number);
  return number;
}

int CompareTexts(std::string_view a, std::string_view b) {
  a = text::TrimRight(a);
  b = text::TrimRight(b);
  return cp1251::EqualIgnoringCase(a, b) ? 0 : cp1251::CompareForSorting(a, b);
}

int CompareNumbers(double a, double b) { return a < b ? -1 : (a > b ? 1 : 0); }

bool IsText(const Scalar& value) { return value.kind == ScalarKind::kText; }

struct Converter {
  std::string& buffer;

  Scalar operator()(jet::Null) const { return {}; }
  Scalar operator()(bool value) const { return Scalar::Boolean(value); }
  Scalar operator()(std::int32_t value) const { return Scalar::Long(value); }
  Scalar operator()(double value) const { return Scalar::Double(value); }
  Scalar operator()(OleDate value) const { return Scalar::Date(value); }
  Scalar operator()(const std::string& value) const { return Scalar::Text(value); }
  Scalar operator()(const jet::Binary&) const { ThrowTypeMismatch(); }
  Scalar operator()(jet::Currency value) const {
    constexpr double kUnits = 10'000;
    return Scalar::Double(static_cast<double>(value.ten_thousandths) / kUnits);
  }
  Scalar operator()(const jet::Guid& value) const {
    buffer = jet::GuidText(value);
    return Scalar::Text(buffer);
  }
  Scalar operator()(const jet::Numeric& value) const { return Scalar::Double(FromDecimal(jet::NumericText(value))); }
};

}  // namespace

Scalar ToScalar(const jet::Value& value, std::string& buffer) { return std::visit(Converter{buffer}, value); }

jet::Value ToValue(const Scalar& value) {
  switch (value.kind) {
    case ScalarKind::kNull: return jet::Null();
    case ScalarKind::kBoolean: return value.number != 0;
    case ScalarKind::kLong: return static_cast<std::int32_t>(value.number);
    case ScalarKind::kDouble: return value.number;
    case ScalarKind::kDate: return OleDate{value.number};
    case ScalarKind::kText: return std::string(value.text);
  }
  return jet::Null();
}

int Compare(const Scalar& a, const Scalar& b) {
  if (IsText(a) != IsText(b)) ThrowTypeMismatch();
  return IsText(a) ? CompareTexts(a.text, b.text) : CompareNumbers(a.number, b.number);
}

bool Equal(const Scalar& a, const Scalar& b) {
  if (IsText(a) != IsText(b)) ThrowTypeMismatch();
  if (!IsText(a)) return a.number == b.number;
  return cp1251::EqualIgnoringCase(text::TrimRight(a.text), text::TrimRight(b.text));
}

int CompareForOrder(const Scalar& a, const Scalar& b) {
  if (a.IsNull() || b.IsNull()) return (b.IsNull() ? 1 : 0) - (a.IsNull() ? 1 : 0);
  if (IsText(a) != IsText(b)) return IsText(a) ? 1 : -1;
  return Compare(a, b);
}

void AppendAsText(const Scalar& value, std::string& to) {
  switch (value.kind) {
    case ScalarKind::kNull: return;
    case ScalarKind::kText: to.append(value.text); return;
    case ScalarKind::kDate: to.append(text::DateText({value.number})); return;
    case ScalarKind::kBoolean:
    case ScalarKind::kLong:
    case ScalarKind::kDouble: to.append(text::NumberText(value.number)); return;
  }
}

void AppendGroupKey(const Scalar& value, std::string& to) {
  if (value.IsNull()) {
    to.push_back('0');
  } else if (IsText(value)) {
    const std::string_view text = text::TrimRight(value.text);
    to.push_back('t');
    for (const char c : text) to.push_back(cp1251::Fold(c));
    to.push_back('\0');
    const auto size = static_cast<std::uint32_t>(text.size());  // behind the text: it may hold NULs
    for (int shift = 0; shift < 32; shift += 8) to.push_back(static_cast<char>(size >> shift));
  } else {
    const double number = value.number == 0 ? 0.0 : value.number;  // -0 equals 0
    const auto bits = std::bit_cast<std::uint64_t>(number);
    to.push_back('n');
    for (int shift = 0; shift < 64; shift += 8) to.push_back(static_cast<char>(bits >> shift));
  }
}

}  // namespace sql
