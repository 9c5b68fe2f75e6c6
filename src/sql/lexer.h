#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "jet/value.h"

namespace sql {

/// Longer statements are refused, as the old engine did.
inline constexpr std::size_t kLongestStatement = 64 * 1024;

enum class TokenKind : std::uint8_t {
  kWord,     // a name or a keyword, as written
  kName,     // a name in brackets, the brackets taken off: never a keyword
  kLiteral,  // a number, a text or a date
  kSign,     // one of = <> < <= > >= + - * / & ( ) , . ! ;
  kEnd,
};

struct Token {
  TokenKind kind = TokenKind::kEnd;
  std::string text;    // kWord, kName, kSign
  jet::Value value;    // kLiteral
  std::size_t at = 0;  // 0-based place in the statement
};

/// Splits a statement in Windows-1251; the last token is kEnd.
/// @throws SqlError 3075 for an unclosed quote or bracket, a bad number or date, a foreign character
std::vector<Token> Tokenize(std::string_view statement);

}  // namespace sql
