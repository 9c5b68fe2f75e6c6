#pragma once

#include <cstdint>
#include <string>

#include "base/bytes.h"
#include "jet/layout.h"

namespace jet {

/// Appends a stored text as Windows-1251. Jet 3 texts are taken to be Windows-1251 already, whatever
/// code page their base names; of Jet 4 texts each character outside it becomes '?'.
/// @return false when the bytes are no text of that version
bool AppendText(Version version, Bytes stored, std::string& to);

/// The UTF-16 units of a Jet 4 text, in the place of what `to` held. @return false as above
bool DecodeUtf16(Bytes stored, std::u16string& to);

/// Replaces a plain Jet 4 text by its compressed form when it has one that is shorter.
void CompressText(std::string& utf16);

bool KnowsCodePage(int code_page);

/// A stored text as UTF-8, with all of Unicode.
/// @param code_page  1250, 1251 or 1252, for Jet 3 only. @throws Error 5 for others
/// @throws FormatError when the bytes are no text of that version
std::string DecodeUtf8(Version version, Bytes stored, int code_page = 1251);

}  // namespace jet
