#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "jet/value.h"

namespace sql {

enum class ExpressionKind : std::uint8_t { kLiteral, kColumn, kCall, kOperation };

/// And and Or hold all their terms (two or more); Between holds value, low, high; In holds the
/// value, then the list; Is Null, Not and negation hold one operand; the rest hold two.
enum class Operator : std::uint8_t {
  kOr,
  kAnd,
  kNot,
  kEqual,
  kNotEqual,
  kLess,
  kLessOrEqual,
  kGreater,
  kGreaterOrEqual,
  kLike,
  kIsNull,
  kIn,
  kBetween,
  kConcatenate,
  kAdd,
  kSubtract,
  kMultiply,
  kDivide,
  kNegate,
};

struct Expression {
  ExpressionKind kind = ExpressionKind::kLiteral;
  Operator op = Operator::kOr;       // kOperation
  bool star = false;                 // kCall: count(*)
  int height = 1;                    // levels of operations, itself included
  jet::Value value;                  // kLiteral
  std::string table, name;           // kColumn (table may be empty); kCall: the function's name
  std::vector<Expression> operands;  // kOperation, kCall
};

/// The same expression, letter case of names and the table part of columns aside.
bool SameExpression(const Expression& a, const Expression& b);

/// Both conditions joined by And. @param first  may be none
Expression Conjunction(std::optional<Expression> first, Expression second);

/// One entry of the list behind SELECT.
struct SelectItem {
  bool star = false;  // all columns; `expression` is unused then
  std::string table;  // of База.*
  Expression expression;
  std::string alias;  // empty = none
};

struct OrderItem {
  Expression expression;
  bool descending = false;
};

/// A table or a saved query; the statement may call it by another name.
struct SourceName {
  std::string name, alias;
};

struct Select {
  bool distinct = false;
  std::optional<std::int32_t> top;
  std::vector<SelectItem> items;
  SourceName from;
  std::optional<Expression> where;
  std::vector<Expression> group_by;
  std::optional<Expression> having;
  std::vector<OrderItem> order_by;
};

struct Delete {
  SourceName from;
  std::optional<Expression> where;
};

using Statement = std::variant<Select, Delete>;

}  // namespace sql
