#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/ole_date.h"
#include "sql/ast.h"
#include "sql/like.h"
#include "sql/row_source.h"
#include "sql/scalar.h"

namespace sql {

/// An expression ready to be evaluated: names have become column positions, patterns are compiled,
/// what depends on no row is calculated.
struct BoundExpression {
  enum class Kind : std::uint8_t { kLiteral, kColumn, kOperation };
  Kind kind = Kind::kLiteral;
  Operator op = Operator::kOr;                    // kOperation
  jet::ColumnType type = jet::ColumnType::kText;  // of the result
  std::size_t column = 0;                         // kColumn
  Scalar literal;                                 // kLiteral; a text stands in `text`
  std::string text;
  std::optional<LikePattern> pattern;  // kLike with a pattern that is no calculation
  std::vector<BoundExpression> operands;
};

/// One count, min or max.
struct Aggregate {
  enum class Kind : std::uint8_t { kCountRows, kCountValues, kMin, kMax };
  Kind kind = Kind::kCountRows;
  std::optional<BoundExpression> argument;  // on the source's rows; none for kCountRows
};

/// The rows behind GROUP BY: one column per key, then one per aggregate met while binding.
struct Grouping {
  std::vector<Expression> keys;
  std::vector<BoundExpression> bound_keys;  // on the source's rows
  std::vector<Aggregate> aggregates;
  std::vector<Field> fields;
};

/// What names mean.
struct Scope {
  const std::vector<Field>& fields;  // of the source
  std::string_view source;           // as the statement calls it, for База.Код
  OleDate now;                       // one moment for the whole statement
};

/// For the source's rows. @throws SqlError 3061 for an unknown name, 3075 for an unknown function
BoundExpression Bind(const Expression& expression, const Scope& scope);
/// The groups of GROUP BY `keys`, as yet without aggregates. @throws SqlError as Bind
Grouping BindKeys(std::vector<Expression> keys, const Scope& scope);
/// For the rows of groups; aggregates are added to `grouping`.
/// @throws SqlError as above, and 3075 for a column that is neither a key nor inside an aggregate
BoundExpression BindOnGroups(const Expression& expression, const Scope& scope, Grouping& grouping);

/// Does the expression hold count, min or max?
bool HasAggregate(const Expression& expression);
/// Does the statement make groups, be it one of all rows?
bool IsGrouped(const Select& select);

}  // namespace sql
