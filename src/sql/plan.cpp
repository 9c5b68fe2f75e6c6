#include "sql/plan.h"

#include <algorithm>
#include <utility>

#include "base/cat.h"
#include "base/cp1251.h"
#include "base/ru_literal.h"
#include "sql/execute.h"
#include "sql/melt.h"
#include "sql/packed_source.h"
#include "sql/sql_errors.h"

namespace sql {
namespace {

/// Saved queries that read saved queries; a circle of them must end.
constexpr int kDeepestQuery = 20;
constexpr int kFirstUnnamed = 1000;  // calculations without AS are called Expr1000, Expr1001 ...

bool IsColumn(const BoundExpression& e) { return e.kind == BoundExpression::Kind::kColumn; }
bool IsLiteral(const BoundExpression& e) { return e.kind == BoundExpression::Kind::kLiteral; }

/// Does every spelling of a group's keys give the same answer? Only then may a condition on groups
/// choose rows instead.
bool IsSpellingBlind(const Expression& condition) {
  if (condition.kind != ExpressionKind::kOperation) return false;
  const bool logic = condition.op == Operator::kAnd || condition.op == Operator::kOr || condition.op == Operator::kNot;
  const bool comparison =
      condition.op >= Operator::kEqual && condition.op <= Operator::kBetween && condition.op != Operator::kLike;
  return std::all_of(condition.operands.begin(), condition.operands.end(), [&](const Expression& operand) {
    const bool plain = operand.kind == ExpressionKind::kColumn || operand.kind == ExpressionKind::kLiteral;
    return logic ? IsSpellingBlind(operand) : comparison && plain;
  });
}

class Planner {
 public:
  Planner(SourceCatalog& catalog, OleDate now, Progress& progress)
      : catalog_(catalog), now_(now), progress_(progress) {}

  Plan Run(Select select, int depth = 0) {
    Plan plan;
    plan.source = OpenSource(select, depth);
    const std::string name = select.from.alias.empty() ? select.from.name : select.from.alias;
    const Scope scope{plan.source->fields(), name, now_};
    ExpandStars(select, *plan.source);
    plan.distinct = select.distinct;
    plan.top = select.top;
    if (IsGrouped(select)) {
      BindGroups(select, scope, plan);
    } else {
      BindRows(select, scope, plan);
    }
    ChoosePath(plan);
    return plan;
  }

 private:
  /// Saved queries melt into `select` until it reads a table or made rows.
  std::unique_ptr<RowSource> OpenSource(Select& select, int depth) {
    for (;; ++depth) {
      if (auto table = catalog_.OpenTable(select.from.name)) return table;
      auto query = catalog_.FindQuery(select.from.name);
      if (!query) ThrowUnknownTable(select.from.name);
      if (depth >= kDeepestQuery) ThrowBadStatement(Cat("запрос «"_ru, select.from.name, "» ссылается сам на себя"_ru));
      if (!IsProjection(*query)) return MakeRows(*std::move(query), depth + 1);
      select = Melt(std::move(select), *query);
    }
  }

  std::unique_ptr<RowSource> MakeRows(Select query, int depth) {
    const Plan plan = Run(std::move(query), depth);
    return std::make_unique<PackedSource>(Execute(plan, progress_), plan.outputs.size());
  }

  static void ExpandStars(Select& select, const RowSource& source) {
    std::vector<SelectItem> expanded;
    for (SelectItem& item : select.items) {
      if (!item.star) {
        expanded.push_back(std::move(item));
        continue;
      }
      if (!NamesSource(item.table, select.from)) ThrowUnknownTable(item.table);
      for (const Field& field : source.fields()) {
        SelectItem column;
        column.expression.kind = ExpressionKind::kColumn;
        column.expression.name = field.name;
        expanded.push_back(std::move(column));
      }
    }
    CheckColumnCount(expanded.size());
    select.items = std::move(expanded);
  }

  void BindRows(const Select& select, const Scope& scope, Plan& plan) {
    if (select.where) plan.where = Bind(*select.where, scope);
    const auto bind = [&](const Expression& expression) { return Bind(expression, scope); };
    BindOutputs(select, scope, bind, plan);
  }

  void BindGroups(Select& select, const Scope& scope, Plan& plan) {
    if (select.having && !HasAggregate(*select.having) && IsSpellingBlind(*select.having) && !select.group_by.empty())
      MoveToWhere(select, scope);
    if (select.where) plan.where = Bind(*select.where, scope);
    plan.grouping = BindKeys(select.group_by, scope);
    const auto bind = [&](const Expression& expression) { return BindOnGroups(expression, scope, *plan.grouping); };
    if (select.having) plan.having = bind(*select.having);
    BindOutputs(select, scope, bind, plan);
  }

  /// Rows that no wanted group holds need not be grouped.
  static void MoveToWhere(Select& select, const Scope& scope) {
    Grouping keys = BindKeys(select.group_by, scope);
    BindOnGroups(*select.having, scope, keys);  // names must be keys
    select.where = Conjunction(std::move(select.where), *std::move(select.having));
    select.having.reset();
  }

  template <typename BindOne>
  static void BindOutputs(const Select& select, const Scope& scope, const BindOne& bind, Plan& plan) {
    for (const SelectItem& item : select.items) {
      Output output{{}, bind(item.expression)};
      output.field = {OutputName(item, scope, plan), output.expression.type};
      plan.outputs.push_back(std::move(output));
    }
    for (const OrderItem& item : select.order_by)
      plan.order.push_back({bind(OrderExpression(item, select, scope)), item.descending});
  }

  static std::string OutputName(const SelectItem& item, const Scope& scope, const Plan& plan) {
    if (!item.alias.empty()) return item.alias;
    if (item.expression.kind != ExpressionKind::kColumn) {
      const auto unnamed = std::count_if(plan.outputs.begin(), plan.outputs.end(),
                                         [](const Output& output) { return output.field.name.starts_with("Expr"); });
      return Cat("Expr", kFirstUnnamed + unnamed);
    }
    return scope.fields[*FindField(scope.fields, item.expression.name)].name;
  }

  /// A number means an entry of the list; a name may be one that AS gives.
  static const Expression& OrderExpression(const OrderItem& item, const Select& select, const Scope& scope) {
    if (const auto* const position = std::get_if<std::int32_t>(&item.expression.value)) {
      if (*position < 1 || static_cast<std::size_t>(*position) > select.items.size())
        ThrowBadStatement(Cat("ORDER BY "_ru, *position, ": нет такого столбца"_ru));
      return select.items[static_cast<std::size_t>(*position) - 1].expression;
    }
    const bool plain_name = item.expression.kind == ExpressionKind::kColumn && item.expression.table.empty();
    if (!plain_name || FindField(scope.fields, item.expression.name)) return item.expression;
    const auto named = std::find_if(select.items.begin(), select.items.end(), [&](const SelectItem& candidate) {
      return cp1251::EqualIgnoringCase(candidate.alias, item.expression.name);
    });
    return named == select.items.end() ? item.expression : named->expression;
  }

  static void ChoosePath(Plan& plan) {
    if (plan.where) {
      if (const auto seek = FindSeek(*plan.where, *plan.source)) {
        plan.path = *seek;
        return;
      }
    }
    if (plan.grouping || plan.order.empty() || !IsColumn(plan.order.front().expression)) return;
    const OrderKey& first = plan.order.front();
    const std::size_t column = first.expression.column;
    if (!plan.source->CanWalk(column)) return;
    // An index does not tell which rows stand level: further keys and TOP would have to know.
    if ((plan.order.size() > 1 || plan.top) && !plan.source->IsUnique(column)) return;
    plan.path = {first.descending ? AccessPath::Kind::kDescending : AccessPath::Kind::kAscending, column, 0};
    plan.order.clear();
  }

  SourceCatalog& catalog_;
  OleDate now_;
  Progress& progress_;
};

}  // namespace

Plan MakePlan(const Select& select, SourceCatalog& catalog, OleDate now, Progress& progress) {
  return Planner(catalog, now, progress).Run(select);
}

std::optional<AccessPath> FindSeek(const BoundExpression& condition, const RowSource& source) {
  if (condition.kind != BoundExpression::Kind::kOperation) return std::nullopt;
  if (condition.op == Operator::kAnd) {
    for (const BoundExpression& term : condition.operands)
      if (auto seek = FindSeek(term, source)) return seek;
  }
  if (condition.op != Operator::kEqual) return std::nullopt;
  const BoundExpression& left = condition.operands[0];
  const BoundExpression& right = condition.operands[1];
  const BoundExpression& column = IsColumn(left) ? left : right;
  const BoundExpression& key = IsColumn(left) ? right : left;
  if (!IsColumn(column) || !IsLiteral(key) || key.literal.kind != ScalarKind::kLong || !source.CanSeek(column.column))
    return std::nullopt;
  return AccessPath{AccessPath::Kind::kEqual, column.column, static_cast<std::int32_t>(key.literal.number)};
}

}  // namespace sql
