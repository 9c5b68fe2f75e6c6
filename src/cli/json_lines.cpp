#include "cli/json_lines.h"

#include <charconv>
#include <cmath>
#include <nlohmann/json.hpp>

#include "base/cat.h"
#include "base/cp1251.h"
#include "cli/sha256.h"

namespace cli::json_lines {
namespace {

using jet::ColumnType;

/// The shortest decimal that reads back equal; it shows that it is no whole number type, and has an
/// exponent only where zeros would not end.
void AppendNumber(double value, std::string& to) {
  constexpr double kLeastPlain = 1e-4, kMostPlain = 1e16;
  if (!std::isfinite(value)) {
    to.append("null");
    return;
  }
  const double size = std::abs(value);
  const bool plain = value == 0 || (size >= kLeastPlain && size < kMostPlain);
  char digits[32];
  const auto form = plain ? std::chars_format::fixed : std::chars_format::scientific;
  const std::string_view written(digits, std::to_chars(digits, digits + sizeof digits, value, form).ptr);
  to.append(written);
  if (written.find_first_of(".e") == std::string_view::npos) to.append(".0");
}

struct Appender {
  std::string& to;

  void operator()(jet::Null) const { to.append("null"); }
  void operator()(bool value) const { to.append(value ? "true" : "false"); }
  void operator()(std::int32_t value) const { to.append(Cat(value)); }
  void operator()(double value) const { AppendNumber(value, to); }
  void operator()(OleDate value) const { operator()(value.days); }
  void operator()(const std::string& value) const { AppendText(cp1251::ToUtf8(value), to); }
  void operator()(const jet::Binary& value) const {
    to.append(Cat("{\"bytes\": ", value.bytes.size(), ", \"sha256\": \"", Sha256(value.bytes), "\"}"));
  }
  void operator()(jet::Currency value) const { Tagged("decimal", jet::CurrencyText(value)); }
  void operator()(const jet::Numeric& value) const { Tagged("decimal", jet::NumericText(value)); }
  void operator()(const jet::Guid& value) const { Tagged("guid", jet::GuidText(value)); }

  void Tagged(std::string_view tag, std::string_view text) const { to.append(Cat("{\"", tag, "\": \"", text, "\"}")); }
};

}  // namespace

void AppendText(std::string_view utf8, std::string& to) {
  constexpr int kOnOneLine = -1;
  to.append(nlohmann::json(utf8).dump(kOnOneLine, ' ', false, nlohmann::json::error_handler_t::replace));
}

void AppendValue(const jet::Value& value, std::string& to) { std::visit(Appender{to}, value); }

std::string_view TypeName(ColumnType type) {
  switch (type) {
    case ColumnType::kBoolean: return "bool";
    case ColumnType::kByte: return "byte";
    case ColumnType::kInteger: return "integer";
    case ColumnType::kLong: return "long";
    case ColumnType::kCurrency: return "currency";
    case ColumnType::kSingle: return "single";
    case ColumnType::kDouble: return "double";
    case ColumnType::kDateTime: return "date";
    case ColumnType::kBinary:
    case ColumnType::kLongBinary: return "binary";
    case ColumnType::kText: return "text";
    case ColumnType::kOle: return "ole";
    case ColumnType::kMemo: return "memo";
    case ColumnType::kGuid: return "guid";
    case ColumnType::kNumeric: return "numeric";
  }
  return "unknown";
}

}  // namespace cli::json_lines
