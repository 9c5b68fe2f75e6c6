#include "sql/like.h"

#include <algorithm>
#include <cstdint>

#include "base/code_page.h"
#include "base/cp1251.h"
#include "sql/sql_errors.h"

namespace sql {
namespace {

std::size_t Code(char character) { return static_cast<unsigned char>(character); }
char Character(std::size_t code) { return static_cast<char>(static_cast<unsigned char>(code)); }

int CompareCharacters(char a, char b) {
  const char left = cp1251::Fold(a), right = cp1251::Fold(b);
  if (left == right) return 0;
  return cp1251::CompareForSorting(std::string_view(&left, 1), std::string_view(&right, 1));
}

/// Compressed UTF-16 announces itself so; its characters are not where plain text has them.
constexpr std::string_view kCompressed = "\xFF\xFE";

/// The longest run of characters that take two bytes in compressed text too: Cyrillic letters.
std::string_view LongestWidePart(std::string_view text) {
  const auto is_wide = [](char c) { return cp1251::ToUnicode(static_cast<std::uint8_t>(c)) > 0xFF; };
  std::string_view longest;
  for (std::size_t begin = 0, end = 0; begin < text.size(); begin = end + 1) {
    for (end = begin; end < text.size() && is_wide(text[end]); ++end) {
    }
    if (end - begin > longest.size()) longest = text.substr(begin, end - begin);
  }
  return longest;
}

}  // namespace

LikePattern::LikePattern(std::string_view pattern) {
  for (std::size_t at = 0; at < pattern.size(); ++at) {
    switch (pattern[at]) {
      case '*':
        if (steps_.empty() || steps_.back() != kAnyRun) steps_.push_back(kAnyRun);
        break;
      case '?': AddSet(CharacterSet().set()); break;
      case '#': {
        CharacterSet digits;
        for (char c = '0'; c <= '9'; ++c) digits.set(Code(c));
        AddSet(digits);
        break;
      }
      case '[': at = AddBrackets(pattern, at); break;
      default: AddLiteral(pattern[at]);
    }
  }
  if (const auto text = ContainedText(pattern)) {
    contained_.emplace(*text);
    if (const std::string_view wide = LongestWidePart(*text); !wide.empty()) wide_part_.emplace(wide);
  }
}

void LikePattern::AddLiteral(char character) {
  CharacterSet set;
  set.set(Code(cp1251::Fold(character)));
  set.set(Code(cp1251::Upper(character)));
  set.set(Code(character));
  AddSet(set);
}

void LikePattern::AddSet(const CharacterSet& set) {
  const auto known = std::find(sets_.begin(), sets_.end(), set);
  steps_.push_back(static_cast<std::size_t>(known - sets_.begin()));
  if (known == sets_.end()) sets_.push_back(set);
}

/// @return the place of the closing bracket
std::size_t LikePattern::AddBrackets(std::string_view pattern, std::size_t open) {
  const std::size_t close = pattern.find(']', open);
  if (close == std::string_view::npos) ThrowBadPattern(pattern);
  std::string_view list = pattern.substr(open + 1, close - open - 1);
  if (list.empty()) return close;
  const bool negated = list.size() > 1 && list.front() == '!';
  if (negated) list.remove_prefix(1);

  CharacterSet set;
  for (std::size_t at = 0; at < list.size(); ++at) {
    const bool is_range = at + 2 < list.size() && list[at + 1] == '-';
    const char low = list[at], high = is_range ? list[at + 2] : low;
    if (CompareCharacters(low, high) > 0) ThrowBadPattern(pattern);
    for (std::size_t code = 0; code < set.size(); ++code) {
      const char c = Character(code);
      if (CompareCharacters(low, c) <= 0 && CompareCharacters(c, high) <= 0) set.set(code);
    }
    if (is_range) at += 2;
  }
  AddSet(negated ? ~set : set);
  return close;
}

/// The text of a pattern *text* without other signs; none for other patterns.
std::optional<std::string> LikePattern::ContainedText(std::string_view pattern) const {
  if (pattern.size() < 2 || pattern.front() != '*' || pattern.back() != '*') return std::nullopt;
  const std::string_view inner = pattern.substr(1, pattern.size() - 2);
  if (inner.find_first_of("*?#[") != std::string_view::npos) return std::nullopt;
  return std::string(inner);
}

/// Goes along text and pattern; on a mismatch the last * takes one character more.
bool LikePattern::Matches(std::string_view text) const {
  if (contained_) return contained_->FoundIn(text);
  std::size_t at = 0, step = 0;
  std::size_t run_step = kAnyRun, run_end = 0;  // behind the last *, and what it has taken so far
  while (at < text.size()) {
    if (step < steps_.size() && steps_[step] == kAnyRun) {
      run_step = ++step;
      run_end = at;
      if (step == steps_.size()) return true;
    } else if (step < steps_.size() && sets_[steps_[step]].test(Code(text[at]))) {
      ++step;
      ++at;
    } else if (run_step != kAnyRun) {
      step = run_step;
      at = ++run_end;
    } else {
      return false;
    }
  }
  while (step < steps_.size() && steps_[step] == kAnyRun) ++step;
  return step == steps_.size();
}

std::optional<bool> LikePattern::MatchStored(const StoredText& text) const {
  if (!contained_) return std::nullopt;
  if (text.encoding == StoredText::Encoding::kWindows1251) return contained_->FoundIn(text.bytes);
  if (text.bytes.substr(0, 2) == kCompressed) {
    if (wide_part_ && !wide_part_->MayBeInCompressed(text.bytes.substr(2))) return false;
    return std::nullopt;
  }
  if (!contained_->CanSearchUtf16()) return std::nullopt;
  return contained_->FoundInUtf16(text.bytes);
}

}  // namespace sql
