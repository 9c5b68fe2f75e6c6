#pragma once

#include <charconv>
#include <concepts>
#include <string>
#include <string_view>

namespace cat {

inline void Append(std::string& to, std::string_view piece) { to.append(piece); }

template <std::integral Number>
requires(!std::same_as<Number, bool> && !std::same_as<Number, char>) void Append(std::string& to, Number number) {
  char digits[24];
  const auto end = std::to_chars(digits, digits + sizeof digits, number).ptr;
  to.append(digits, end);
}

}  // namespace cat

/// Joins texts and whole numbers; numbers in plain decimal.
template <typename... Pieces>
std::string Cat(const Pieces&... pieces) {
  std::string joined;
  (cat::Append(joined, pieces), ...);
  return joined;
}
