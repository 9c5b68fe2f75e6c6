#pragma once

#include <string>
#include <string_view>

#include "base/bytes.h"
#include "base/code_page.h"

/// All text inside the core is Windows-1251: one character, one byte. These are the edges where
/// it meets Unicode, and the letter-case rules of the whole program.
namespace cp1251 {

/// Stands for every character that the code page lacks.
inline constexpr char kReplacement = '?';

/// The lower-case form of one character; characters without case are returned as they are.
char Fold(char character);
/// The upper-case form of one character.
char Upper(char character);
/// Lower-cases a whole text.
std::string Folded(std::string_view text);

/// Equality without regard to letter case. Е and Ё, и and й are different letters.
bool EqualIgnoringCase(std::string_view a, std::string_view b);
/// Does `text` begin with `prefix`, letter case ignored?
bool StartsWithIgnoringCase(std::string_view text, std::string_view prefix);
/// <0, 0, >0 in the order of sorted lists: other characters, digits, Latin, Cyrillic in alphabet
/// order (ё directly after е); case ignored, ties decided by byte.
int CompareForSorting(std::string_view a, std::string_view b);

std::string ToUtf8(std::string_view text);
/// Malformed UTF-8 and characters outside the code page become kReplacement.
std::string FromUtf8(std::string_view utf8);

/// `utf16` is little-endian; an odd last byte is ignored. Characters outside the code page, a
/// surrogate pair counting as one, become kReplacement.
std::string FromUtf16(Bytes utf16);
/// Little-endian UTF-16 bytes of a text.
std::string ToUtf16(std::string_view text);

}  // namespace cp1251
