#pragma once

#include <string_view>

#include "sql/ast.h"

namespace sql {

/// Deeper nesting is refused, so that no statement exhausts the stack.
inline constexpr int kDeepestNesting = 100;
/// The most levels of operations that a tree of expressions may have.
inline constexpr int kHighestExpression = 250;

/// Reads a whole statement in Windows-1251; docs/sql.md has the grammar.
/// @throws SqlError 3075; the text shows the place
Statement ParseStatement(std::string_view statement);

/// Reads a condition as it stands behind WHERE. @throws SqlError 3075
Expression ParseCondition(std::string_view condition);

/// Is this text a statement rather than the name of a table or a saved query?
bool LooksLikeStatement(std::string_view text);

}  // namespace sql
