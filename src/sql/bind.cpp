#include "sql/bind.h"

#include <algorithm>
#include <utility>

#include "base/cat.h"
#include "base/cp1251.h"
#include "base/ru_literal.h"
#include "sql/evaluate.h"
#include "sql/sql_errors.h"

namespace sql {
namespace {

using jet::ColumnType;

bool IsAggregateName(std::string_view function) {
  return function == "count" || function == "min" || function == "max";
}

/// The type in which groups keep a value: one that a Scalar holds in full.
ColumnType GroupType(ColumnType type) {
  if (type == ColumnType::kGuid) return ColumnType::kText;
  return type == ColumnType::kNumeric ? ColumnType::kDouble : type;
}

bool IsWhole(ColumnType type) {
  return type == ColumnType::kBoolean || type == ColumnType::kByte || type == ColumnType::kInteger ||
         type == ColumnType::kLong;
}

ColumnType TypeOf(const jet::Value& literal) {
  if (std::holds_alternative<bool>(literal)) return ColumnType::kBoolean;
  if (std::holds_alternative<std::int32_t>(literal)) return ColumnType::kLong;
  if (std::holds_alternative<double>(literal)) return ColumnType::kDouble;
  if (std::holds_alternative<OleDate>(literal)) return ColumnType::kDateTime;
  return ColumnType::kText;
}

bool IsText(ColumnType type) { return type == ColumnType::kText || type == ColumnType::kMemo; }

ColumnType SumType(Operator op, ColumnType a, ColumnType b) {
  const bool a_is_date = a == ColumnType::kDateTime, b_is_date = b == ColumnType::kDateTime;
  if (a_is_date && b_is_date) return op == Operator::kSubtract ? ColumnType::kDouble : ColumnType::kDateTime;
  if (a_is_date || b_is_date) return ColumnType::kDateTime;
  if (IsText(a) && IsText(b)) return ColumnType::kMemo;
  return IsWhole(a) && IsWhole(b) ? ColumnType::kLong : ColumnType::kDouble;
}

ColumnType ResultType(Operator op, const std::vector<BoundExpression>& operands) {
  switch (op) {
    case Operator::kConcatenate: return ColumnType::kMemo;
    case Operator::kAdd:
    case Operator::kSubtract: return SumType(op, operands[0].type, operands[1].type);
    case Operator::kMultiply:
      return IsWhole(operands[0].type) && IsWhole(operands[1].type) ? ColumnType::kLong : ColumnType::kDouble;
    case Operator::kNegate: return IsWhole(operands[0].type) ? ColumnType::kLong : ColumnType::kDouble;
    case Operator::kDivide: return ColumnType::kDouble;
    default: return ColumnType::kBoolean;
  }
}

bool IsCalculation(Operator op) { return op >= Operator::kConcatenate; }

class Binder {
 public:
  Binder(const Scope& scope, Grouping* grouping) : scope_(scope), grouping_(grouping) {}

  BoundExpression Run(const Expression& expression) {
    if (grouping_ != nullptr)
      if (const auto key = FindKey(expression)) return Column(grouping_->fields, *key);
    switch (expression.kind) {
      case ExpressionKind::kLiteral: return Literal(expression.value);
      case ExpressionKind::kColumn: return Name(expression);
      case ExpressionKind::kCall: return Call(expression);
      case ExpressionKind::kOperation: return Operation(expression);
    }
    return {};
  }

 private:
  static BoundExpression Literal(const jet::Value& value) {
    BoundExpression literal;
    literal.type = TypeOf(value);
    literal.literal = ToScalar(value, literal.text);
    if (const auto* const text = std::get_if<std::string>(&value)) literal.text = *text;
    return literal;
  }

  static BoundExpression Column(const std::vector<Field>& fields, std::size_t position) {
    BoundExpression column;
    column.kind = BoundExpression::Kind::kColumn;
    column.column = position;
    column.type = fields[position].type;
    return column;
  }

  BoundExpression Name(const Expression& expression) const {
    const bool of_source = expression.table.empty() || cp1251::EqualIgnoringCase(expression.table, scope_.source);
    const auto position = of_source ? FindField(scope_.fields, expression.name) : std::nullopt;
    if (!position)
      ThrowUnknownField(expression.table.empty() ? expression.name : Cat(expression.table, ".", expression.name));
    if (grouping_ != nullptr) ThrowBadStatement(Cat("поле «"_ru, expression.name, "» не входит в GROUP BY"_ru));
    return Column(scope_.fields, *position);
  }

  BoundExpression Call(const Expression& expression) {
    const std::size_t arguments = expression.operands.size();
    if (expression.name == "now" && arguments == 0 && !expression.star) return Literal(scope_.now);
    if (!IsAggregateName(expression.name) || (arguments == 0 && !expression.star) ||
        (expression.star && expression.name != "count"))
      ThrowBadStatement(Cat("неизвестная функция «"_ru, expression.name, "» или не те аргументы"_ru));
    if (grouping_ == nullptr) ThrowBadStatement(Cat("функция «"_ru, expression.name, "» здесь недопустима"_ru));
    return AddAggregate(expression);
  }

  BoundExpression AddAggregate(const Expression& call) {
    Aggregate aggregate;
    ColumnType type = ColumnType::kLong;
    if (!call.star) aggregate.argument = Bind(call.operands.front(), scope_);
    if (call.name == "count") {
      aggregate.kind = call.star ? Aggregate::Kind::kCountRows : Aggregate::Kind::kCountValues;
    } else {
      aggregate.kind = call.name == "min" ? Aggregate::Kind::kMin : Aggregate::Kind::kMax;
      type = GroupType(aggregate.argument->type);
    }
    grouping_->aggregates.push_back(std::move(aggregate));
    grouping_->fields.push_back({call.name, type});
    return Column(grouping_->fields, grouping_->fields.size() - 1);
  }

  BoundExpression Operation(const Expression& expression) {
    BoundExpression operation;
    operation.kind = BoundExpression::Kind::kOperation;
    operation.op = expression.op;
    operation.operands.reserve(expression.operands.size());
    for (const Expression& operand : expression.operands) operation.operands.push_back(Run(operand));
    operation.type = ResultType(operation.op, operation.operands);
    if (operation.op == Operator::kLike) CompilePattern(operation);
    return IsCalculation(operation.op) && OnlyLiterals(operation) ? Calculated(operation) : operation;
  }

  static void CompilePattern(BoundExpression& like) {
    const BoundExpression& pattern = like.operands[1];
    if (pattern.kind == BoundExpression::Kind::kLiteral && pattern.literal.kind == ScalarKind::kText)
      like.pattern.emplace(pattern.text);
  }

  static bool OnlyLiterals(const BoundExpression& operation) {
    return std::all_of(operation.operands.begin(), operation.operands.end(),
                       [](const BoundExpression& operand) { return operand.kind == BoundExpression::Kind::kLiteral; });
  }

  static BoundExpression Calculated(const BoundExpression& operation) {
    Evaluator evaluator(0);
    BoundExpression literal;
    literal.type = operation.type;
    literal.literal = evaluator.ValueOf(operation);
    literal.text = std::exchange(literal.literal.text, {});
    return literal;
  }

  std::optional<std::size_t> FindKey(const Expression& expression) const {
    const auto& keys = grouping_->keys;
    const auto found =
        std::find_if(keys.begin(), keys.end(), [&](const Expression& key) { return SameExpression(key, expression); });
    if (found == keys.end()) return std::nullopt;
    return static_cast<std::size_t>(found - keys.begin());
  }

  const Scope& scope_;
  Grouping* grouping_;
};

}  // namespace

BoundExpression Bind(const Expression& expression, const Scope& scope) {
  return Binder(scope, nullptr).Run(expression);
}

BoundExpression BindOnGroups(const Expression& expression, const Scope& scope, Grouping& grouping) {
  return Binder(scope, &grouping).Run(expression);
}

Grouping BindKeys(std::vector<Expression> keys, const Scope& scope) {
  Grouping grouping;
  for (const Expression& key : keys) {
    grouping.bound_keys.push_back(Bind(key, scope));
    grouping.fields.push_back({key.name, GroupType(grouping.bound_keys.back().type)});
  }
  grouping.keys = std::move(keys);
  return grouping;
}

bool HasAggregate(const Expression& expression) {
  return (expression.kind == ExpressionKind::kCall && IsAggregateName(expression.name)) ||
         std::any_of(expression.operands.begin(), expression.operands.end(), HasAggregate);
}

bool IsGrouped(const Select& select) {
  return !select.group_by.empty() || select.having ||
         std::any_of(select.items.begin(), select.items.end(),
                     [](const SelectItem& item) { return HasAggregate(item.expression); });
}

}  // namespace sql
