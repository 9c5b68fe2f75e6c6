#include "sql/ast.h"

#include <algorithm>
#include <utility>

#include "base/cp1251.h"

namespace sql {

bool SameExpression(const Expression& a, const Expression& b) {
  return a.kind == b.kind && a.op == b.op && a.star == b.star && a.value == b.value &&
         cp1251::EqualIgnoringCase(a.name, b.name) &&
         std::equal(a.operands.begin(), a.operands.end(), b.operands.begin(), b.operands.end(), SameExpression);
}

Expression Conjunction(std::optional<Expression> first, Expression second) {
  if (!first) return second;
  Expression both;
  both.kind = ExpressionKind::kOperation;
  both.op = Operator::kAnd;
  both.height = std::max(first->height, second.height) + 1;
  both.operands.push_back(*std::move(first));
  both.operands.push_back(std::move(second));
  return both;
}

}  // namespace sql
