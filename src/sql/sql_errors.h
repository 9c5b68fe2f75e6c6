#pragma once

#include <string_view>

namespace sql {

/// The number of ThrowRowDeleted.
inline constexpr int kRowDeleted = 3167;

/// What a user reads when a statement is wrong; each text names the culprit.
/// 3075: `detail` tells what does not parse.
[[noreturn]] void ThrowBadStatement(std::string_view detail);
/// 3061: there is no such field in what the statement reads.
[[noreturn]] void ThrowUnknownField(std::string_view name);
/// 3078: there is no such table or saved query.
[[noreturn]] void ThrowUnknownTable(std::string_view name);
/// 93: the pattern of a Like is malformed.
[[noreturn]] void ThrowBadPattern(std::string_view pattern);
/// 13: the operands cannot be compared or calculated with.
[[noreturn]] void ThrowTypeMismatch();
/// 3027: these rows are a copy or a calculation.
[[noreturn]] void ThrowNotUpdatable();
/// 3167: the current row is not there any more.
[[noreturn]] void ThrowRowDeleted();

}  // namespace sql
