#include "base/cp1251.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

namespace cp1251 {
namespace {

constexpr std::uint8_t Byte(char character) { return static_cast<std::uint8_t>(character); }

// Upper and lower forms of the letters outside A-Z and А-Я.
constexpr std::pair<std::uint8_t, std::uint8_t> kCasePairs[] = {
    {0x80, 0x90}, {0x81, 0x83}, {0x8A, 0x9A}, {0x8C, 0x9C}, {0x8D, 0x9D}, {0x8E, 0x9E}, {0x8F, 0x9F}, {0xA1, 0xA2},
    {0xA3, 0xBC}, {0xA5, 0xB4}, {0xA8, 0xB8}, {0xAA, 0xBA}, {0xAF, 0xBF}, {0xB2, 0xB3}, {0xBD, 0xBE}};

using ByteMap = std::array<std::uint8_t, 256>;

constexpr ByteMap Identity() {
  ByteMap map{};
  for (std::size_t i = 0; i < map.size(); ++i) map[i] = static_cast<std::uint8_t>(i);
  return map;
}

constexpr ByteMap MakeLower() {
  ByteMap map = Identity();
  for (std::size_t c = 'A'; c <= 'Z'; ++c) map[c] = static_cast<std::uint8_t>(c + 0x20);
  for (std::size_t c = 0xC0; c <= 0xDF; ++c) map[c] = static_cast<std::uint8_t>(c + 0x20);
  for (const auto& [upper, lower] : kCasePairs) map[upper] = lower;
  return map;
}

constexpr ByteMap kLower = MakeLower();

constexpr ByteMap MakeUpper() {
  ByteMap map = Identity();
  for (std::size_t i = 0; i < map.size(); ++i)
    if (kLower[i] != i) map[kLower[i]] = static_cast<std::uint8_t>(i);
  return map;
}

constexpr ByteMap kUpper = MakeUpper();

// Letters that stand directly behind another one in the alphabet: {letter, the one before it}.
constexpr std::pair<std::uint8_t, std::uint8_t> kAfterLetter[] = {{0xB8, 0xE5} /* ё е */, {0xB4, 0xE3} /* ґ г */,
                                                                  {0xBA, 0xB8} /* є ё */, {0xB3, 0xE8} /* і и */,
                                                                  {0xBF, 0xB3} /* ї і */, {0xA2, 0xF3} /* ў у */};

// Sorting weight of each byte, equal for both cases of a letter.
constexpr std::array<std::uint16_t, 256> MakeWeights() {
  std::array<std::uint16_t, 256> weight{};
  constexpr int kDigit = 0x1000, kLatin = 0x2000, kCyrillic = 0x4000, kStep = 8;
  for (std::size_t i = 0; i < 256; ++i) {
    const int lower = kLower[i];
    const bool has_case = kLower[i] != i || kUpper[i] != i;
    if (lower >= '0' && lower <= '9')
      weight[i] = static_cast<std::uint16_t>(kDigit + lower);
    else if (lower >= 'a' && lower <= 'z')
      weight[i] = static_cast<std::uint16_t>(kLatin + lower);
    else if (lower >= 0xE0)
      weight[i] = static_cast<std::uint16_t>(kCyrillic + (lower - 0xE0) * kStep);
    else if (has_case)  // Serbian and Macedonian letters: behind the Russian alphabet
      weight[i] = static_cast<std::uint16_t>(kCyrillic + 0x20 * kStep + lower);
    else
      weight[i] = static_cast<std::uint16_t>(lower);
  }
  for (const auto& [letter, before] : kAfterLetter) {
    weight[letter] = static_cast<std::uint16_t>(weight[before] + 1);
    weight[kUpper[letter]] = weight[letter];
  }
  return weight;
}

constexpr std::array<std::uint16_t, 256> kWeights = MakeWeights();

char FromUnicodeOrReplacement(char32_t character) {
  const int byte = FromUnicode(character);
  return byte == kNotInCodePage ? kReplacement : static_cast<char>(static_cast<std::uint8_t>(byte));
}

struct Utf8Character {
  char32_t character;
  std::size_t length;
};

constexpr char32_t kMalformed = 0xFFFD;

Utf8Character DecodeUtf8(std::string_view utf8) {
  const std::uint8_t lead = Byte(utf8[0]);
  if (lead < 0x80) return {lead, 1};
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || utf8.size() < length) return {kMalformed, 1};
  char32_t character = lead & (0x7Fu >> length);
  for (std::size_t i = 1; i < length; ++i) {
    const std::uint8_t byte = Byte(utf8[i]);
    if ((byte & 0xC0) != 0x80) return {kMalformed, 1};
    character = (character << 6) | (byte & 0x3F);
  }
  constexpr char32_t kLeast[] = {0x80, 0x800, 0x10000};  // of two, three and four bytes
  if (character < kLeast[length - 2]) return {kMalformed, 1};
  return {character, length};
}

}  // namespace

char Fold(char character) { return static_cast<char>(kLower[Byte(character)]); }

char Upper(char character) { return static_cast<char>(kUpper[Byte(character)]); }

std::string Folded(std::string_view text) {
  std::string folded(text);
  for (char& character : folded) character = Fold(character);
  return folded;
}

bool EqualIgnoringCase(std::string_view a, std::string_view b) {
  return a.size() == b.size() && StartsWithIgnoringCase(a, b);
}

bool StartsWithIgnoringCase(std::string_view text, std::string_view prefix) {
  return text.size() >= prefix.size() &&
         std::equal(prefix.begin(), prefix.end(), text.begin(), [](char x, char y) { return Fold(x) == Fold(y); });
}

int CompareForSorting(std::string_view a, std::string_view b) {
  const std::size_t common = std::min(a.size(), b.size());
  for (std::size_t i = 0; i < common; ++i) {
    const int difference = kWeights[Byte(a[i])] - kWeights[Byte(b[i])];
    if (difference != 0) return difference;
  }
  if (a.size() != b.size()) return a.size() < b.size() ? -1 : 1;
  return a.compare(b);
}

std::string ToUtf8(std::string_view text) {
  std::string utf8;
  utf8.reserve(text.size() * 2);
  for (const char character : text) {
    const char16_t unicode = ToUnicode(Byte(character));
    if (unicode < 0x80) {
      utf8 += static_cast<char>(unicode);
    } else if (unicode < 0x800) {
      utf8 += static_cast<char>(0xC0 | (unicode >> 6));
      utf8 += static_cast<char>(0x80 | (unicode & 0x3F));
    } else {
      utf8 += static_cast<char>(0xE0 | (unicode >> 12));
      utf8 += static_cast<char>(0x80 | ((unicode >> 6) & 0x3F));
      utf8 += static_cast<char>(0x80 | (unicode & 0x3F));
    }
  }
  return utf8;
}

std::string FromUtf8(std::string_view utf8) {
  std::string text;
  text.reserve(utf8.size());
  while (!utf8.empty()) {
    const Utf8Character decoded = DecodeUtf8(utf8);
    text += FromUnicodeOrReplacement(decoded.character);
    utf8.remove_prefix(decoded.length);
  }
  return text;
}

std::string FromUtf16(Bytes utf16) {
  std::string text;
  text.reserve(utf16.size() / 2);
  const std::size_t end = utf16.size() & ~std::size_t{1};
  for (std::size_t at = 0; at < end; at += 2) {
    const std::uint16_t unit = LoadU16(utf16, at);
    const bool pair = unit >= 0xD800 && unit < 0xDC00 && at + 2 < end && (LoadU16(utf16, at + 2) & 0xFC00) == 0xDC00;
    text += FromUnicodeOrReplacement(unit);
    if (pair) at += 2;
  }
  return text;
}

std::string ToUtf16(std::string_view text) {
  std::string utf16;
  utf16.reserve(text.size() * 2);
  for (const char character : text) {
    const char16_t unicode = ToUnicode(Byte(character));
    utf16 += static_cast<char>(unicode & 0xFF);
    utf16 += static_cast<char>(unicode >> 8);
  }
  return utf16;
}

}  // namespace cp1251
