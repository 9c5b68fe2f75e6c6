#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace sql {

/// Finds one text in many, letter case ignored; prepared once. It searches Windows-1251 bytes and
/// UTF-16 as a base stores it, without converting the texts.
class CaselessSearch {
 public:
  explicit CaselessSearch(std::string_view needle);

  bool FoundIn(std::string_view text) const;
  /// Is searching UTF-16 as good as searching what it decodes to? Not for a needle with "?", which
  /// stands for every foreign character once decoded.
  bool CanSearchUtf16() const { return needle_.find('?') == std::string::npos; }
  /// @param utf16  little-endian, not in the compressed form; an odd last byte is ignored
  bool FoundInUtf16(std::string_view utf16) const;
  /// For a needle of characters above U+00FF. @param text  compressed UTF-16 behind its mark
  /// @return false when the text does not hold the needle; true tells nothing
  bool MayBeInCompressed(std::string_view text) const;

 private:
  std::string needle_;                       // lower case
  std::vector<char> lower_, upper_;          // of each character, in Windows-1251
  std::vector<char16_t> lower16_, upper16_;  // the same in Unicode
  std::array<std::size_t, 2> rare_{};        // positions of the characters that texts hold least often
};

}  // namespace sql
