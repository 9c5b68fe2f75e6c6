#include "jet/text_codec.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

#include "base/code_page.h"
#include "base/cp1251.h"
#include "base/error.h"
#include "base/ru_literal.h"

namespace jet {
namespace {

constexpr std::uint16_t kCompressedMark = 0xFEFF;  // a text that begins so is compressed

bool IsCompressed(Bytes stored) { return stored.size() >= 2 && LoadU16(stored, 0) == kCompressedMark; }

// Hands every UTF-16 unit of a Jet 4 text to `take`. In compressed text a zero byte switches
// between one byte a character and two.
template <typename Take>
bool ForEachUnit(Bytes stored, Take take) {
  bool single = IsCompressed(stored);
  const bool compressed = single;
  std::size_t at = compressed ? 2 : 0;
  const std::size_t end = stored.size();
  while (at < end) {
    if (compressed && LoadU8(stored, at) == 0) {
      single = !single;
      ++at;
    } else if (single) {
      take(static_cast<char16_t>(LoadU8(stored, at++)));
    } else {
      if (end - at < 2) return false;
      take(static_cast<char16_t>(LoadU16(stored, at)));
      at += 2;
    }
  }
  return true;
}

// Latin and Cyrillic at one look-up; the rest of Unicode asks the code page.
constexpr std::size_t kQuickUnits = 0x500;

constexpr char ByteOf(char16_t unit) {
  const int byte = cp1251::FromUnicode(unit);
  return byte == cp1251::kNotInCodePage ? cp1251::kReplacement : static_cast<char>(static_cast<std::uint8_t>(byte));
}

constexpr std::array<char, kQuickUnits> MakeQuickBytes() {
  std::array<char, kQuickUnits> bytes{};
  for (std::size_t unit = 0; unit < kQuickUnits; ++unit) bytes[unit] = ByteOf(static_cast<char16_t>(unit));
  return bytes;
}

constexpr std::array<char, kQuickUnits> kQuickBytes = MakeQuickBytes();

constexpr bool IsHighSurrogate(char16_t unit) { return (unit & 0xFC00) == 0xD800; }
constexpr bool IsLowSurrogate(char16_t unit) { return (unit & 0xFC00) == 0xDC00; }

// A block of ASCII and А-я only, in steps that the compiler takes for all its units at once.
// @return false when it holds other characters; `to` then means nothing
template <std::size_t kUnits>
bool DecodeBlock(const std::byte* block, char* to) {
  if constexpr (std::endian::native != std::endian::little) return false;
  constexpr std::uint16_t kFirstLetter = 0x410, kLetters = 64, kToByte = 0x350;
  std::array<std::uint16_t, kUnits> units, others, bytes;
  std::memcpy(units.data(), block, sizeof units);
  for (std::size_t i = 0; i < kUnits; ++i) {
    const auto letter = static_cast<std::uint16_t>(units[i] - kFirstLetter);
    const auto shift = static_cast<std::uint16_t>(units[i] < 0x80 ? 0 : kToByte);
    others[i] = static_cast<std::uint16_t>(units[i] < 0x80 ? 0 : (letter < kLetters ? 0 : 1));
    bytes[i] = static_cast<std::uint16_t>(units[i] - shift);
  }
  for (std::size_t i = 0; i < kUnits; ++i) to[i] = static_cast<char>(bytes[i]);
  return others == decltype(others){};
}

// The last units of a text, fewer than a block: as a block that begins among those already decoded.
template <std::size_t kUnits>
bool DecodeLast(Bytes stored, char* end) {
  std::array<char, kUnits> last;
  if (stored.size() < 2 * kUnits || !DecodeBlock<kUnits>(stored.last(2 * kUnits).data(), last.data())) return false;
  std::copy(last.begin(), last.end(), end - kUnits);
  return true;
}

// Puts down the byte of one unit. @param previous  the unit before it, which becomes this one
inline char* DecodeUnit(char16_t unit, char16_t& previous, char* out) {
  if (unit < kQuickUnits)
    *out++ = kQuickBytes[unit];
  else if (!(IsLowSurrogate(unit) && IsHighSurrogate(previous)))  // a pair is one character
    *out++ = ByteOf(unit);
  previous = unit;
  return out;
}

// Plain text: a block at a time where that goes, else unit by unit. @return behind the last byte
char* DecodePlain(Bytes stored, char* out) {
  constexpr std::size_t kUnits = 8, kHalf = kUnits / 2;
  const char* const begin = out;
  char16_t previous = 0;
  std::size_t at = 0;
  const auto take_units = [&](std::size_t end) {
    for (; at < end; at += 2) out = DecodeUnit(static_cast<char16_t>(LoadU16(stored, at)), previous, out);
  };
  while (stored.size() - at >= 2 * kUnits) {
    if (DecodeBlock<kUnits>(stored.data() + at, out)) {
      out += kUnits;
      previous = 0;
      at += 2 * kUnits;
    } else {
      take_units(at + 2 * kUnits);
    }
  }
  const std::size_t rest = (stored.size() - at) / 2;
  const bool one_to_one = out == begin + at / 2;  // no pair so far
  if (one_to_one && DecodeLast<kUnits>(stored, out + rest)) return out + rest;
  if (at == 0 && DecodeLast<kHalf>(stored, out + rest) && DecodeBlock<kHalf>(stored.data(), out)) return out + rest;
  take_units(stored.size());
  return out;
}

bool AppendJet4(Bytes stored, std::string& to) {
  const bool compressed = IsCompressed(stored);
  if (!compressed && stored.size() % 2 != 0) return false;
  const std::size_t old_size = to.size();
  to.resize(old_size + (compressed ? stored.size() : stored.size() / 2));  // room for every unit
  char* out = to.data() + old_size;
  bool whole = true;
  if (compressed) {
    char16_t previous = 0;
    whole = ForEachUnit(stored, [&](char16_t unit) { out = DecodeUnit(unit, previous, out); });
  } else {
    out = DecodePlain(stored, out);
  }
  to.resize(whole ? static_cast<std::size_t>(out - to.data()) : old_size);
  return whole;
}

void AppendUtf8(char32_t character, std::string& to) {
  const auto continuation = [](char32_t bits) { return static_cast<char>(0x80 | (bits & 0x3F)); };
  if (character < 0x80) {
    to += static_cast<char>(character);
  } else if (character < 0x800) {
    to += static_cast<char>(0xC0 | (character >> 6));
    to += continuation(character);
  } else if (character < 0x10000) {
    to += static_cast<char>(0xE0 | (character >> 12));
    to += continuation(character >> 6);
    to += continuation(character);
  } else {
    to += static_cast<char>(0xF0 | (character >> 18));
    to += continuation(character >> 12);
    to += continuation(character >> 6);
    to += continuation(character);
  }
}

std::string Jet4ToUtf8(Bytes stored) {
  constexpr char32_t kMalformed = 0xFFFD;  // a surrogate without its other half
  std::u16string units;
  if (!DecodeUtf16(stored, units)) throw FormatError("Текст повреждён"_ru);
  std::string utf8;
  for (std::size_t i = 0; i < units.size(); ++i) {
    const char16_t unit = units[i];
    if (IsHighSurrogate(unit) && i + 1 < units.size() && IsLowSurrogate(units[i + 1])) {
      AppendUtf8(0x10000u + ((unit & 0x3FFu) << 10) + (units[++i] & 0x3FFu), utf8);
    } else {
      AppendUtf8(IsHighSurrogate(unit) || IsLowSurrogate(unit) ? kMalformed : unit, utf8);
    }
  }
  return utf8;
}

using UpperHalf = std::array<char16_t, 128>;

// Unicode of the bytes 80..FF; bytes without a character stand for themselves.
constexpr UpperHalf kCodePage1250 = {
    0x20AC, 0x0081, 0x201A, 0x0083, 0x201E, 0x2026, 0x2020, 0x2021, 0x0088, 0x2030, 0x0160, 0x2039, 0x015A,
    0x0164, 0x017D, 0x0179, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014, 0x0098, 0x2122,
    0x0161, 0x203A, 0x015B, 0x0165, 0x017E, 0x017A, 0x00A0, 0x02C7, 0x02D8, 0x0141, 0x00A4, 0x0104, 0x00A6,
    0x00A7, 0x00A8, 0x00A9, 0x015E, 0x00AB, 0x00AC, 0x00AD, 0x00AE, 0x017B, 0x00B0, 0x00B1, 0x02DB, 0x0142,
    0x00B4, 0x00B5, 0x00B6, 0x00B7, 0x00B8, 0x0105, 0x015F, 0x00BB, 0x013D, 0x02DD, 0x013E, 0x017C, 0x0154,
    0x00C1, 0x00C2, 0x0102, 0x00C4, 0x0139, 0x0106, 0x00C7, 0x010C, 0x00C9, 0x0118, 0x00CB, 0x011A, 0x00CD,
    0x00CE, 0x010E, 0x0110, 0x0143, 0x0147, 0x00D3, 0x00D4, 0x0150, 0x00D6, 0x00D7, 0x0158, 0x016E, 0x00DA,
    0x0170, 0x00DC, 0x00DD, 0x0162, 0x00DF, 0x0155, 0x00E1, 0x00E2, 0x0103, 0x00E4, 0x013A, 0x0107, 0x00E7,
    0x010D, 0x00E9, 0x0119, 0x00EB, 0x011B, 0x00ED, 0x00EE, 0x010F, 0x0111, 0x0144, 0x0148, 0x00F3, 0x00F4,
    0x0151, 0x00F6, 0x00F7, 0x0159, 0x016F, 0x00FA, 0x0171, 0x00FC, 0x00FD, 0x0163, 0x02D9};

constexpr UpperHalf MakeCodePage1251() {
  UpperHalf upper{};
  for (std::size_t i = 0; i < upper.size(); ++i) upper[i] = cp1251::ToUnicode(static_cast<std::uint8_t>(0x80 + i));
  return upper;
}

constexpr UpperHalf MakeCodePage1252() {
  constexpr std::array<char16_t, 32> kBelowA0 = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                 0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                                 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};
  UpperHalf upper{};
  for (std::size_t i = 0; i < upper.size(); ++i)
    upper[i] = i < kBelowA0.size() ? kBelowA0[i] : static_cast<char16_t>(0x80 + i);
  return upper;
}

constexpr UpperHalf kCodePage1251 = MakeCodePage1251();
constexpr UpperHalf kCodePage1252 = MakeCodePage1252();

const UpperHalf* FindCodePage(int code_page) {
  switch (code_page) {
    case 1250: return &kCodePage1250;
    case 1251: return &kCodePage1251;
    case 1252: return &kCodePage1252;
    default: return nullptr;
  }
}

}  // namespace

bool AppendText(Version version, Bytes stored, std::string& to) {
  if (version == Version::kJet4) return AppendJet4(stored, to);
  to.append(AsText(stored));
  return true;
}

bool DecodeUtf16(Bytes stored, std::u16string& to) {
  to.clear();
  return ForEachUnit(stored, [&to](char16_t unit) { to += unit; });
}

// Single bytes stand in runs between two switches, so short runs stay as they are: nothing ever takes
// more room than it did, but for the mark and the first switch. A unit of which the lower byte is zero
// cannot stand in compressed text at all.
void CompressText(std::string& utf16) {
  const char* const plain = utf16.data();
  const std::size_t size = utf16.size();
  std::string compressed(size + 3, '\0');
  compressed.replace(0, 2, "\xFF\xFE");
  char* out = compressed.data() + 2;
  bool single = true;
  for (std::size_t at = 0, end = 0; at < size; at = end) {
    const bool fits_byte = plain[at + 1] == 0;
    for (; end < size && (plain[end + 1] == 0) == fits_byte; end += 2)
      if (plain[end] == 0) return;
    const std::size_t units = (end - at) / 2, switches = (single ? 0u : 1u) + (end < size ? 1u : 0u);
    const bool as_bytes = fits_byte && (single || switches < units);
    if (as_bytes != single) *out++ = '\0';
    single = as_bytes;
    if (!single) {
      out = std::copy(plain + at, plain + end, out);
      continue;
    }
    for (std::size_t unit = at; unit < end; unit += 2) *out++ = plain[unit];
  }
  compressed.resize(static_cast<std::size_t>(out - compressed.data()));
  if (compressed.size() < size) utf16 = std::move(compressed);
}

bool KnowsCodePage(int code_page) { return FindCodePage(code_page) != nullptr; }

std::string DecodeUtf8(Version version, Bytes stored, int code_page) {
  if (version == Version::kJet4) return Jet4ToUtf8(stored);
  const UpperHalf* upper = FindCodePage(code_page);
  if (upper == nullptr) ThrowBadArgument();
  std::string utf8;
  for (const std::byte byte : stored) {
    const auto code = std::to_integer<std::uint8_t>(byte);
    AppendUtf8(code < 0x80 ? code : (*upper)[code - 0x80], utf8);
  }
  return utf8;
}

}  // namespace jet
