#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Elementary text operations with the old platform's rules. Positions are 1-based; texts are
/// Windows-1251; "ignoring case" folds by that code page.
namespace text {

enum class LetterCase { kExact, kIgnored };

/// Removes blanks (20 hex) at both ends; TAB, CR, LF and the non-breaking space stay.
std::string_view Trim(std::string_view text);
std::string_view TrimLeft(std::string_view text);
std::string_view TrimRight(std::string_view text);

/// @return the 1-based position of `needle` at or behind `start`; 0 when absent. An empty text gives
///         0; an empty needle gives `start`; a start behind the end gives 0.
/// @throws Error 5 when start < 1
std::size_t Find(std::size_t start, std::string_view text, std::string_view needle,
                 LetterCase letter_case = LetterCase::kIgnored);
/// Does `needle` occur anywhere?
bool Contains(std::string_view text, std::string_view needle, LetterCase letter_case = LetterCase::kIgnored);

/// The rest from the 1-based `start`; empty behind the end. @throws Error 5 when start < 1
std::string_view Mid(std::string_view text, std::size_t start);
std::string_view Mid(std::string_view text, std::size_t start, std::size_t count);

/// Replaces every occurrence, left to right, never looking into what it inserted. An empty needle
/// leaves the text as it is.
std::string ReplaceAll(std::string_view text, std::string_view needle, std::string_view by,
                       LetterCase letter_case = LetterCase::kExact);

struct Replacement {
  std::string_view needle, by;
};
/// Applies the replacements one after another, each to the result of the one before.
std::string ReplaceAll(std::string text, std::span<const Replacement> replacements, LetterCase letter_case);

/// Pieces between exact separators; neighbouring separators give empty pieces. An empty text gives
/// no piece at all.
std::vector<std::string_view> Split(std::string_view text, std::string_view separator);
/// A piece of a split text. @throws Error 9 when there is none of that 0-based number
std::string_view Piece(std::span<const std::string_view> pieces, std::size_t index);
/// The last piece of a text, split or not; the others are not made. @throws Error 9 for an empty text
std::string_view LastPiece(std::string_view text, std::string_view separator);

}  // namespace text
