#include "text/strings.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

#include "base/cp1251.h"
#include "base/error.h"
#include "base/ru_literal.h"

namespace text {
namespace {

constexpr std::size_t kAbsent = std::string_view::npos;

// Folded bytes of Russian forum pages, the commonest first; a byte that is not named here is rarer still.
constexpr std::string_view kCommonestFirst =
    " оеаинтсрлвкмдпуязыьгбчйeatinrsol<>=\"dcphmfbugyhw/.,-жшхюцщфэё\r\nkv0123456789:;&zxjq?!"_ru;

// For both cases of a letter.
std::array<std::uint8_t, 256> MakeCommonness() {
  std::array<std::uint8_t, 256> commonness{};
  for (std::size_t byte = 0; byte < commonness.size(); ++byte) {
    const std::size_t rank = kCommonestFirst.find(cp1251::Fold(static_cast<char>(byte)));
    if (rank != kAbsent) commonness[byte] = static_cast<std::uint8_t>(kCommonestFirst.size() - rank);
  }
  return commonness;
}

const std::array<std::uint8_t, 256> kCommonness = MakeCommonness();

std::size_t RarestByte(std::string_view needle) {
  const auto commonness = [](char c) { return kCommonness[static_cast<std::uint8_t>(c)]; };
  const auto rarest =
      std::min_element(needle.begin(), needle.end(), [&](char a, char b) { return commonness(a) < commonness(b); });
  return static_cast<std::size_t>(rarest - needle.begin());
}

const char* FindByte(const char* from, const char* end, char byte) {
  return static_cast<const char*>(std::memchr(from, byte, static_cast<std::size_t>(end - from)));
}

// The first of either byte. Goes ahead in blocks: when one of the two is everywhere and the other nowhere,
// looking for the other up to the end at every hit would make a loop of searches quadratic.
const char* FindEither(const char* from, const char* end, char a, char b) {
  if (a == b) return FindByte(from, end, a);
  constexpr std::ptrdiff_t kFirstBlock = 256, kLargestBlock = 4096;
  for (std::ptrdiff_t block = kFirstBlock; from < end; block = std::min(2 * block, kLargestBlock)) {
    const char* const limit = end - from < block ? end : from + block;
    const char* const first_a = FindByte(from, limit, a);
    const char* const first_b = FindByte(from, first_a != nullptr ? first_a : limit, b);
    if (first_b != nullptr) return first_b;
    if (first_a != nullptr) return first_a;
    from = limit;
  }
  return nullptr;
}

// 0-based, in a text at least as long as the needle.
std::size_t FindIgnoringCase(std::string_view text, std::string_view needle, std::size_t from) {
  const std::size_t anchor = RarestByte(needle);
  const char lower = cp1251::Fold(needle[anchor]), upper = cp1251::Upper(lower);
  const char* const end = text.data() + text.size() - (needle.size() - 1 - anchor);
  for (const char* at = text.data() + from + anchor; at < end; ++at) {
    at = FindEither(at, end, lower, upper);
    if (at == nullptr) return kAbsent;
    const auto begin = static_cast<std::size_t>(at - text.data()) - anchor;
    if (cp1251::EqualIgnoringCase(text.substr(begin, needle.size()), needle)) return begin;
  }
  return kAbsent;
}

std::size_t FindFrom(std::string_view text, std::string_view needle, std::size_t from, LetterCase letter_case) {
  if (needle.empty() || needle.size() > text.size() || from > text.size() - needle.size()) return kAbsent;
  return letter_case == LetterCase::kExact ? text.find(needle, from) : FindIgnoringCase(text, needle, from);
}

// Replaces the occurrence at `hit` and all behind it.
std::string ReplaceFrom(std::size_t hit, std::string_view text, std::string_view needle, std::string_view by,
                        LetterCase letter_case) {
  std::string replaced;
  replaced.reserve(text.size());
  std::size_t kept = 0;
  for (; hit != kAbsent; hit = FindFrom(text, needle, kept, letter_case)) {
    replaced.append(text, kept, hit - kept).append(by);
    kept = hit + needle.size();
  }
  return replaced.append(text, kept);
}

[[noreturn]] void ThrowNoPiece() { throw Error(error_number::kNoSuchItem, "Нет элемента с таким номером"_ru); }

}  // namespace

std::string_view Trim(std::string_view text) { return TrimLeft(TrimRight(text)); }

std::string_view TrimLeft(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  return text;
}

std::string_view TrimRight(std::string_view text) { return text.substr(0, text.find_last_not_of(' ') + 1); }

std::size_t Find(std::size_t start, std::string_view text, std::string_view needle, LetterCase letter_case) {
  if (start < 1) ThrowBadArgument();
  if (start > text.size()) return 0;
  if (needle.empty()) return start;
  return FindFrom(text, needle, start - 1, letter_case) + 1;  // kAbsent + 1 is 0
}

bool Contains(std::string_view text, std::string_view needle, LetterCase letter_case) {
  return Find(1, text, needle, letter_case) != 0;
}

std::string_view Mid(std::string_view text, std::size_t start) { return Mid(text, start, text.size()); }

std::string_view Mid(std::string_view text, std::size_t start, std::size_t count) {
  if (start < 1) ThrowBadArgument();
  return start > text.size() ? std::string_view() : text.substr(start - 1, count);
}

std::string ReplaceAll(std::string_view text, std::string_view needle, std::string_view by, LetterCase letter_case) {
  return ReplaceFrom(FindFrom(text, needle, 0, letter_case), text, needle, by, letter_case);
}

std::string ReplaceAll(std::string text, std::span<const Replacement> replacements, LetterCase letter_case) {
  for (const auto& [needle, by] : replacements) {
    const std::size_t hit = FindFrom(text, needle, 0, letter_case);
    if (hit != kAbsent) text = ReplaceFrom(hit, text, needle, by, letter_case);
  }
  return text;
}

std::vector<std::string_view> Split(std::string_view text, std::string_view separator) {
  std::vector<std::string_view> pieces;
  if (text.empty()) return pieces;
  std::size_t begin = 0;
  while (!separator.empty()) {
    const std::size_t end = text.find(separator, begin);
    if (end == kAbsent) break;
    pieces.push_back(text.substr(begin, end - begin));
    begin = end + separator.size();
  }
  pieces.push_back(text.substr(begin));
  return pieces;
}

std::string_view Piece(std::span<const std::string_view> pieces, std::size_t index) {
  if (index >= pieces.size()) ThrowNoPiece();
  return pieces[index];
}

std::string_view LastPiece(std::string_view text, std::string_view separator) {
  if (text.empty()) ThrowNoPiece();
  const std::size_t last = separator.empty() ? kAbsent : text.rfind(separator);
  return last == kAbsent ? text : text.substr(last + separator.size());
}

}  // namespace text
