#include "sql/evaluate.h"

#include <limits>

#include "base/error.h"
#include "base/ru_literal.h"
#include "sql/sql_errors.h"

namespace sql {
namespace {

constexpr int kDivisionByZero = 11;

Truth ToTruth(bool value) { return value ? Truth::kTrue : Truth::kFalse; }

Truth Not(Truth truth) {
  if (truth == Truth::kUnknown) return truth;
  return ToTruth(truth == Truth::kFalse);
}

Truth Both(Truth a, Truth b) {
  if (a == Truth::kFalse || b == Truth::kFalse) return Truth::kFalse;
  return a == Truth::kTrue && b == Truth::kTrue ? Truth::kTrue : Truth::kUnknown;
}

Truth TruthOf(const Scalar& value) {
  if (value.IsNull()) return Truth::kUnknown;
  if (value.kind == ScalarKind::kText) ThrowTypeMismatch();
  return ToTruth(value.number != 0);
}

bool Holds(Operator op, const Scalar& a, const Scalar& b) {
  switch (op) {
    case Operator::kEqual: return Equal(a, b);
    case Operator::kNotEqual: return !Equal(a, b);
    case Operator::kLess: return Compare(a, b) < 0;
    case Operator::kLessOrEqual: return Compare(a, b) <= 0;
    case Operator::kGreater: return Compare(a, b) > 0;
    default: return Compare(a, b) >= 0;
  }
}

Truth CompareWith(Operator op, const Scalar& a, const Scalar& b) {
  return a.IsNull() || b.IsNull() ? Truth::kUnknown : ToTruth(Holds(op, a, b));
}

bool IsWhole(const Scalar& value) { return value.kind == ScalarKind::kLong || value.kind == ScalarKind::kBoolean; }

/// Whole numbers give whole numbers of 32 bits; beyond them is an error, not another type.
Scalar WholeResult(double result) {
  if (result < std::numeric_limits<std::int32_t>::min() || result > std::numeric_limits<std::int32_t>::max())
    ThrowOverflow();
  return Scalar::Long(static_cast<std::int32_t>(result));
}

double Apply(Operator op, double a, double b) {
  switch (op) {
    case Operator::kAdd: return a + b;
    case Operator::kSubtract: return a - b;
    case Operator::kMultiply: return a * b;
    default:
      if (b == 0) throw SqlError(kDivisionByZero, "Деление на ноль в выражении запроса"_ru);
      return a / b;
  }
}

Scalar Arithmetic(Operator op, const Scalar& a, const Scalar& b) {
  if (a.IsNull() || b.IsNull()) return {};
  if (a.kind == ScalarKind::kText || b.kind == ScalarKind::kText) ThrowTypeMismatch();
  const double result = Apply(op, a.number, b.number);
  if (op != Operator::kDivide && IsWhole(a) && IsWhole(b)) return WholeResult(result);
  const bool sum = op == Operator::kAdd || op == Operator::kSubtract;
  const bool a_is_date = a.kind == ScalarKind::kDate, b_is_date = b.kind == ScalarKind::kDate;
  const bool difference = op == Operator::kSubtract && a_is_date && b_is_date;
  if (sum && (a_is_date || b_is_date) && !difference) return Scalar::Date({result});
  return Scalar::Double(result);
}

Scalar Negated(const Scalar& value) {
  if (value.IsNull()) return {};
  if (value.kind == ScalarKind::kText) ThrowTypeMismatch();
  return IsWhole(value) ? WholeResult(-value.number) : Scalar::Double(-value.number);
}

Scalar ToScalar(Truth truth) { return truth == Truth::kUnknown ? Scalar() : Scalar::Boolean(truth == Truth::kTrue); }

}  // namespace

void Evaluator::SetRow(const RowAccess& row) {
  row_ = &row;
  ++row_number_;
  if (!results_.empty()) results_.clear();
}

Scalar Evaluator::Column(std::size_t column) {
  Slot& slot = slots_[column];
  if (slot.row != row_number_) {
    slot.value = row_->Read(column, slot.buffer);
    slot.row = row_number_;
  }
  return slot.value;
}

Scalar Evaluator::ValueOf(const BoundExpression& expression) {
  switch (expression.kind) {
    case BoundExpression::Kind::kColumn: return Column(expression.column);
    case BoundExpression::Kind::kOperation: return Calculate(expression);
    case BoundExpression::Kind::kLiteral: break;
  }
  if (expression.literal.kind == ScalarKind::kText) return Scalar::Text(expression.text);
  return expression.literal;
}

Truth Evaluator::Test(const BoundExpression& condition) {
  if (condition.kind == BoundExpression::Kind::kOperation) return TestOperation(condition);
  return TruthOf(ValueOf(condition));
}

Truth Evaluator::TestOperation(const BoundExpression& operation) {
  switch (operation.op) {
    case Operator::kOr: return TestOr(operation);
    case Operator::kAnd: return TestAnd(operation);
    case Operator::kNot: return Not(Test(operation.operands[0]));
    case Operator::kEqual:
    case Operator::kNotEqual:
    case Operator::kLess:
    case Operator::kLessOrEqual:
    case Operator::kGreater:
    case Operator::kGreaterOrEqual: return TestComparison(operation);
    case Operator::kLike: return TestLike(operation);
    case Operator::kIsNull: return ToTruth(IsNull(operation.operands[0]));
    case Operator::kIn: return TestIn(operation);
    case Operator::kBetween: return TestBetween(operation);
    default: return TruthOf(Calculate(operation));
  }
}

Truth Evaluator::TestAnd(const BoundExpression& operation) {
  Truth result = Truth::kTrue;
  for (const BoundExpression& term : operation.operands) {
    result = Both(result, Test(term));
    if (result == Truth::kFalse) break;
  }
  return result;
}

Truth Evaluator::TestOr(const BoundExpression& operation) {
  Truth result = Truth::kFalse;
  for (const BoundExpression& term : operation.operands) {
    result = Not(Both(Not(result), Not(Test(term))));
    if (result == Truth::kTrue) break;
  }
  return result;
}

Truth Evaluator::TestComparison(const BoundExpression& operation) {
  const Scalar left = ValueOf(operation.operands[0]);
  return CompareWith(operation.op, left, ValueOf(operation.operands[1]));
}

Truth Evaluator::TestLike(const BoundExpression& operation) {
  const BoundExpression& value = operation.operands[0];
  const bool text_column = value.kind == BoundExpression::Kind::kColumn &&
                           (value.type == jet::ColumnType::kText || value.type == jet::ColumnType::kMemo);
  if (operation.pattern && operation.pattern->CanMatchStored() && text_column &&
      slots_[value.column].row != row_number_) {
    const StoredText stored = row_->ReadStored(value.column);
    if (stored.encoding == StoredText::Encoding::kNull) return Truth::kUnknown;
    if (const auto matches = operation.pattern->MatchStored(stored)) return ToTruth(*matches);
  }
  const Scalar left = ValueOf(value), right = ValueOf(operation.operands[1]);
  if (left.IsNull() || right.IsNull()) return Truth::kUnknown;
  std::string joined;  // of a value that is no text
  if (left.kind != ScalarKind::kText) AppendAsText(left, joined);
  const std::string_view text = left.kind == ScalarKind::kText ? left.text : joined;
  if (operation.pattern) return ToTruth(operation.pattern->Matches(text));
  std::string pattern;
  AppendAsText(right, pattern);
  return ToTruth(LikePattern(pattern).Matches(text));
}

Truth Evaluator::TestIn(const BoundExpression& operation) {
  const Scalar value = ValueOf(operation.operands[0]);
  Truth result = Truth::kFalse;
  for (std::size_t i = 1; i < operation.operands.size(); ++i) {
    const Truth equal = CompareWith(Operator::kEqual, value, ValueOf(operation.operands[i]));
    if (equal == Truth::kTrue) return equal;
    if (equal == Truth::kUnknown) result = equal;
  }
  return result;
}

Truth Evaluator::TestBetween(const BoundExpression& operation) {
  const Scalar value = ValueOf(operation.operands[0]);
  const Truth above = CompareWith(Operator::kGreaterOrEqual, value, ValueOf(operation.operands[1]));
  return Both(above, CompareWith(Operator::kLessOrEqual, value, ValueOf(operation.operands[2])));
}

bool Evaluator::IsNull(const BoundExpression& expression) {
  if (expression.kind == BoundExpression::Kind::kColumn) return row_->IsNull(expression.column);
  return ValueOf(expression).IsNull();
}

Scalar Evaluator::Calculate(const BoundExpression& operation) {
  switch (operation.op) {
    case Operator::kConcatenate: {
      const Scalar left = ValueOf(operation.operands[0]);
      return Joined(left, ValueOf(operation.operands[1]));
    }
    case Operator::kAdd:
    case Operator::kSubtract:
    case Operator::kMultiply:
    case Operator::kDivide: {
      const Scalar left = ValueOf(operation.operands[0]), right = ValueOf(operation.operands[1]);
      const bool texts = left.kind == ScalarKind::kText && right.kind == ScalarKind::kText;
      return operation.op == Operator::kAdd && texts ? Joined(left, right) : Arithmetic(operation.op, left, right);
    }
    case Operator::kNegate: return Negated(ValueOf(operation.operands[0]));
    default: return ToScalar(TestOperation(operation));
  }
}

Scalar Evaluator::Joined(const Scalar& a, const Scalar& b) {
  std::string& joined = results_.emplace_back();
  AppendAsText(a, joined);
  AppendAsText(b, joined);
  return Scalar::Text(joined);
}

}  // namespace sql
