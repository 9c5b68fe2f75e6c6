#include "sql/row_editor.h"

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
  values_.clear();
  for (const jet::Column& column : table_.def().columns) values_.push_back(DefaultOf(column));
}

void RowEditor::Set(std::size_t column, const jet::Value& value) {
  const jet::Column& target = table_.def().columns[column];
  jet::Value stored = ForColumn(changes_.version(), target, value);
  if (IsEmptyText(stored)) {
    const jet::ColumnProperties& demands = DemandsOf(target);
    if (!demands.allow_zero_length && !demands.required) stored = jet::Null();
  }
  values_[column] = std::move(stored);
}

jet::RowId RowEditor::Store() {
  std::vector<jet::Assignment> row;
  for (std::size_t column = 0; column < values_.size(); ++column)
    if (values_[column]) row.push_back({&table_.def().columns[column], *values_[column]});
  return changes_.Run([&](Transaction& transaction) { return transaction.WriterOf(table_).Insert(row); });
}

void RowEditor::Delete(jet::RowId id) {
  changes_.Run([&](Transaction& transaction) {
    transaction.WriterOf(table_).Delete(id);
    return true;
  });
}

/// A constant such as 0 or ="text". Calculations of the program that made the base are beyond us: its
/// column begins as Null.
std::optional<jet::Value> RowEditor::DefaultOf(const jet::Column& column) {
  std::string_view expression = DemandsOf(column).default_value;
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
