#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "base/code_page.h"

namespace ru_literal {

/// A UTF-8 source literal, passed as a template argument.
template <std::size_t N>
struct Utf8 {
  char text[N]{};
  consteval Utf8(const char (&source)[N]) {
    for (std::size_t i = 0; i < N; ++i) text[i] = source[i];
  }
};

struct Decoded {
  char32_t character;
  std::size_t length;  // bytes of UTF-8
};

constexpr Decoded DecodeUtf8(const char* text) {
  const auto at = [text](std::size_t i) { return static_cast<char32_t>(static_cast<unsigned char>(text[i])); };
  if (at(0) < 0x80) return {at(0), 1};
  if (at(0) < 0xE0) return {((at(0) & 0x1F) << 6) | (at(1) & 0x3F), 2};
  if (at(0) < 0xF0) return {((at(0) & 0x0F) << 12) | ((at(1) & 0x3F) << 6) | (at(2) & 0x3F), 3};
  throw "no character beyond U+FFFF is in Windows-1251";
}

template <Utf8 kSource>
constexpr std::size_t Length() {
  std::size_t length = 0;
  for (std::size_t i = 0; i + 1 < sizeof(kSource.text); i += DecodeUtf8(kSource.text + i).length) ++length;
  return length;
}

template <Utf8 kSource>
consteval auto Convert() {
  std::array<char, Length<kSource>() + 1> bytes{};
  std::size_t from = 0;
  for (std::size_t to = 0; to + 1 < bytes.size(); ++to) {
    const Decoded decoded = DecodeUtf8(kSource.text + from);
    const int byte = cp1251::FromUnicode(decoded.character);
    if (byte == cp1251::kNotInCodePage) throw "the literal holds a character that Windows-1251 lacks";
    bytes[to] = static_cast<char>(static_cast<unsigned char>(byte));
    from += decoded.length;
  }
  return bytes;
}

template <Utf8 kSource>
inline constexpr auto kConverted = Convert<kSource>();

}  // namespace ru_literal

/// A Russian literal as Windows-1251 bytes, converted while compiling and NUL-terminated behind
/// the view; a character outside the code page does not compile.
template <ru_literal::Utf8 kSource>
consteval std::string_view operator""_ru() {
  return {ru_literal::kConverted<kSource>.data(), ru_literal::kConverted<kSource>.size() - 1};
}
