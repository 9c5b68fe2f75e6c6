#pragma once

#include <array>
#include <cstdint>

/// Windows-1251 as a table, shared by the compile-time literals and the run-time converters.
namespace cp1251 {

/// Unicode of the bytes 80..BF. Byte 98 is unassigned and maps to U+0098 and back, so that
/// foreign bytes survive a round trip.
inline constexpr std::array<char16_t, 64> kUpperHalf = {
    0x0402, 0x0403, 0x201A, 0x0453, 0x201E, 0x2026, 0x2020, 0x2021, 0x20AC, 0x2030, 0x0409, 0x2039, 0x040A,
    0x040C, 0x040B, 0x040F, 0x0452, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014, 0x0098, 0x2122,
    0x0459, 0x203A, 0x045A, 0x045C, 0x045B, 0x045F, 0x00A0, 0x040E, 0x045E, 0x0408, 0x00A4, 0x0490, 0x00A6,
    0x00A7, 0x0401, 0x00A9, 0x0404, 0x00AB, 0x00AC, 0x00AD, 0x00AE, 0x0407, 0x00B0, 0x00B1, 0x0406, 0x0456,
    0x0491, 0x00B5, 0x00B6, 0x00B7, 0x0451, 0x2116, 0x0454, 0x00BB, 0x0458, 0x0405, 0x0455, 0x0457};

constexpr char16_t ToUnicode(std::uint8_t byte) {
  if (byte < 0x80) return byte;
  if (byte >= 0xC0) return static_cast<char16_t>(0x0410 + (byte - 0xC0));
  return kUpperHalf[byte - 0x80];
}

inline constexpr int kNotInCodePage = -1;

/// The byte of a Unicode character, kNotInCodePage when the code page lacks it.
constexpr int FromUnicode(char32_t character) {
  if (character < 0x80) return static_cast<int>(character);
  if (character >= 0x0410 && character <= 0x044F) return static_cast<int>(character - 0x0410 + 0xC0);
  for (std::size_t i = 0; i < kUpperHalf.size(); ++i)
    if (kUpperHalf[i] == character) return static_cast<int>(0x80 + i);
  return kNotInCodePage;
}

}  // namespace cp1251
