#pragma once

#include <array>
#include <bitset>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "sql/caseless_search.h"
#include "sql/row_source.h"

namespace sql {

/// A pattern of Like, compiled once. Letter case is ignored, the whole value must match:
/// * any run, ? any character, # a digit, [a-я] one of, [!a-я] one not of, [*] the character itself,
/// [] nothing.
class LikePattern {
 public:
  /// @throws SqlError 93 for "[" without "]" and for a range that runs backwards
  explicit LikePattern(std::string_view pattern);

  bool Matches(std::string_view text) const;
  /// Can stored text be searched without decoding it?
  bool CanMatchStored() const { return contained_.has_value(); }
  /// `text` is not Null. @return none when these bytes must be decoded after all
  std::optional<bool> MatchStored(const StoredText& text) const;

 private:
  using CharacterSet = std::bitset<256>;

  void AddLiteral(char character);
  std::size_t AddBrackets(std::string_view pattern, std::size_t open);
  void AddSet(const CharacterSet& set);
  std::optional<std::string> ContainedText(std::string_view pattern) const;

  static constexpr std::size_t kAnyRun = static_cast<std::size_t>(-1);
  std::vector<CharacterSet> sets_;           // the distinct characters or classes
  std::vector<std::size_t> steps_;           // what must follow: a position in sets_, or kAnyRun
  std::optional<CaselessSearch> contained_;  // for *text*, the form of every search
  std::optional<CaselessSearch> wide_part_;  // the longest part of that text which compressed text holds as it is
};

}  // namespace sql
