#include "sql/row_editor.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

#include "base/error.h"
#include "jet/table_writer.h"
#include "sql/bind.h"
#include "sql/parser.h"
#include "sql/stored_value.h"

namespace sql {
namespace {

bool IsEmptyText(const jet::Value& value) {
  const auto* const text = std::get_if<std::string>(&value);
  return text != nullptr && text->empty();
}

}  // namespace

void RowEditor::Start() {
  changes_.RequireWritable();
  if (targets_.empty()) ReadDemands();
  row_.clear();
  for (const Target& target : targets_)
    if (target.initial) row_.push_back({target.column, *target.initial});
}

void RowEditor::ReadDemands() {
  const jet::TableProperties& properties = changes_.PropertiesOf(table_);
  for (const jet::Column& column : table_.def().columns) {
    const jet::ColumnProperties& demands = properties.Of(column.name);
    const bool empty_becomes_null = !demands.allow_zero_length && !demands.required;
    targets_.push_back({&column, empty_becomes_null, DefaultOf(column, demands.default_value)});
  }
}

void RowEditor::Set(std::size_t column, jet::Value value) {
  const Target& target = targets_.at(column);
  jet::Value stored = ForColumn(changes_.version(), *target.column, std::move(value));
  if (target.empty_becomes_null && IsEmptyText(stored)) stored = jet::Null();
  const auto known = std::ranges::find(row_, target.column, &jet::Assignment::column);
  if (known == row_.end())
    row_.push_back({target.column, std::move(stored)});
  else
    known->value = std::move(stored);
}

jet::RowId RowEditor::Store() {
  return changes_.Run([&](Transaction& transaction) { return transaction.WriterOf(table_).Insert(row_); });
}

void RowEditor::Delete(jet::RowId id) {
  changes_.Run([&](Transaction& transaction) {
    transaction.WriterOf(table_).Delete(id);
    return true;
  });
}

/// A constant such as 0 or ="text". Calculations of the program that made the base are beyond us: its
/// column begins as Null.
std::optional<jet::Value> RowEditor::DefaultOf(const jet::Column& column, std::string_view expression) const {
  if (expression.starts_with('=')) expression.remove_prefix(1);
  if (expression.empty()) return std::nullopt;
  try {
    const std::vector<Field> no_fields;
    const BoundExpression bound = Bind(ParseCondition(expression), {no_fields, {}, {}});
    if (bound.kind != BoundExpression::Kind::kLiteral) return std::nullopt;
    Scalar constant = bound.literal;
    if (constant.kind == ScalarKind::kText) constant.text = bound.text;
    return ForColumn(changes_.version(), column, ToValue(constant));
  } catch (const Error&) {
    return std::nullopt;
  }
}

}  // namespace sql
