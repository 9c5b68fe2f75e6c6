#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <optional>

#include "base/bytes.h"

namespace jet {

/// Are the eight bytes at `at` zero? They must lie inside `bits`.
inline bool IsZeroWord(Bytes bits, std::size_t at) {
  std::uint64_t word;
  std::memcpy(&word, bits.data() + at, sizeof word);
  return word == 0;
}

/// The first set bit that is not before `from`; bit k is bit k % 8 of byte k / 8. Maps are mostly long runs of
/// zeros, which pass eight bytes at a time.
inline std::optional<std::size_t> FirstBit(Bytes bits, std::size_t from) {
  std::size_t at = from / 8;
  if (at >= bits.size()) return std::nullopt;
  unsigned byte = LoadU8(bits, at) & 0xFFu << (from % 8);
  while (byte == 0) {
    for (++at; at + 8 <= bits.size() && IsZeroWord(bits, at);) at += 8;
    if (at == bits.size()) return std::nullopt;
    byte = LoadU8(bits, at);
  }
  return 8 * at + static_cast<std::size_t>(std::countr_zero(byte));
}

/// The last set bit before `end`.
inline std::optional<std::size_t> LastBit(Bytes bits, std::size_t end) {
  std::size_t bytes = end / 8;
  unsigned byte = 0;  // the one at `bytes`
  if (bytes >= bits.size())
    bytes = bits.size();
  else
    byte = LoadU8(bits, bytes) & ((1u << (end % 8)) - 1);
  while (byte == 0) {
    while (bytes >= 8 && IsZeroWord(bits, bytes - 8)) bytes -= 8;
    if (bytes == 0) return std::nullopt;
    byte = LoadU8(bits, --bytes);
  }
  return 8 * bytes + static_cast<std::size_t>(std::bit_width(byte)) - 1;
}

}  // namespace jet
