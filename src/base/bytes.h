#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

/// A view of raw bytes; lives as long as what it was taken from.
using Bytes = std::span<const std::byte>;
using MutableBytes = std::span<std::byte>;

/// The bytes of a text and back, without copying.
inline Bytes AsBytes(std::string_view text) { return std::as_bytes(std::span(text.data(), text.size())); }
inline std::string_view AsText(Bytes bytes) { return {reinterpret_cast<const char*>(bytes.data()), bytes.size()}; }

/// Little-endian numbers put together by shifting. The caller has checked that `at` and what
/// follows lie inside `bytes`; whoever reads foreign bytes goes through a checked view instead.
inline std::uint8_t LoadU8(Bytes bytes, std::size_t at) { return std::to_integer<std::uint8_t>(bytes[at]); }
inline std::uint16_t LoadU16(Bytes bytes, std::size_t at) {
  return static_cast<std::uint16_t>(LoadU8(bytes, at) | (LoadU8(bytes, at + 1) << 8));
}
inline std::uint32_t LoadU24(Bytes bytes, std::size_t at) {
  return static_cast<std::uint32_t>(LoadU16(bytes, at) | (LoadU8(bytes, at + 2) << 16));
}
inline std::uint32_t LoadU32(Bytes bytes, std::size_t at) {
  return LoadU16(bytes, at) | (static_cast<std::uint32_t>(LoadU16(bytes, at + 2)) << 16);
}
inline std::uint64_t LoadU64(Bytes bytes, std::size_t at) {
  return LoadU32(bytes, at) | (static_cast<std::uint64_t>(LoadU32(bytes, at + 4)) << 32);
}
inline double LoadF64(Bytes bytes, std::size_t at) { return std::bit_cast<double>(LoadU64(bytes, at)); }
inline float LoadF32(Bytes bytes, std::size_t at) { return std::bit_cast<float>(LoadU32(bytes, at)); }

inline void StoreU8(MutableBytes bytes, std::size_t at, unsigned value) {
  bytes[at] = static_cast<std::byte>(value & 0xFF);
}
inline void StoreU16(MutableBytes bytes, std::size_t at, unsigned value) {
  StoreU8(bytes, at, value);
  StoreU8(bytes, at + 1, value >> 8);
}
inline void StoreU24(MutableBytes bytes, std::size_t at, std::uint32_t value) {
  StoreU16(bytes, at, value & 0xFFFF);
  StoreU8(bytes, at + 2, value >> 16);
}
inline void StoreU32(MutableBytes bytes, std::size_t at, std::uint32_t value) {
  StoreU16(bytes, at, value & 0xFFFF);
  StoreU16(bytes, at + 2, value >> 16);
}
inline void StoreU64(MutableBytes bytes, std::size_t at, std::uint64_t value) {
  StoreU32(bytes, at, static_cast<std::uint32_t>(value & 0xFFFFFFFF));
  StoreU32(bytes, at + 4, static_cast<std::uint32_t>(value >> 32));
}
inline void StoreF64(MutableBytes bytes, std::size_t at, double value) {
  StoreU64(bytes, at, std::bit_cast<std::uint64_t>(value));
}
