#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "text/strings.h"

/// Clean-up of what the forums' pages hold. Texts are Windows-1251; empty texts give empty texts.
namespace mdl_STR {

/// Cuts out the text between two markers; letter case is ignored.
/// @return a view of `text`: what stands after the first `start`, up to the first `end` behind it;
///         the whole rest when `end` is missing, empty when `start` is missing
std::string_view ExtractBetween(std::string_view text, std::string_view start, std::string_view end);

/// Decodes fifteen forms of &gt; &lt; &amp; &quot; &nbsp; and some numeric references, one after another,
/// letter case ignored. Every other reference stays. A reference that an "&amp;" begins is decoded as well
/// when its turn comes after "&amp;".
std::string DecodeHtmlEntities(std::string_view text);

/// Removes everything from a "<" to the next ">", putting nothing in its place. From a "<" that no ">"
/// follows, the text is kept.
std::string StripTags(std::string_view text);

enum class Tabs { kKept, kAsBlanks };
/// Removes outer blanks and makes one blank of every run of them.
std::string CollapseSpaces(std::string_view text, Tabs tabs);

/// Views of `text` without blanks, LFs, TABs and CRs at one end.
std::string_view TrimLeadingBreaks(std::string_view text);
std::string_view TrimTrailingBreaks(std::string_view text);

/// Replaces every character of the alphabet `from` by the one at the same place of `to`. A shorter `to` is
/// filled up with its last character; an empty one makes the characters vanish. An empty `from` gives the
/// empty text: so on purpose.
std::string TranslateChars(std::string_view text, std::string_view from, std::string_view to,
                           text::LetterCase letter_case);

/// KOI8-R bytes to Windows-1251. Only the 64 letters А-я change; Ё, ё and all else stay as they are.
std::string Koi8ToWin(std::string_view text);
/// The other way.
std::string WinToKoi8(std::string_view text);
/// Every letter А-я as "%" and two upper-case hexadecimal digits of its KOI8-R byte; nothing else is escaped.
std::string UrlEncodeKoi8(std::string_view text);

/// Breaks a text into lines at blanks, each line about `width` characters long, blanks not counted; a line
/// whose first word fits begins with a blank: both on purpose.
/// @param text  its line breaks are made CR LF on the way, empty lines vanish
std::string WrapText(std::string& text, std::int32_t width);

/// What stands before the first NUL.
std::string_view CutAtNul(std::string_view text);

}  // namespace mdl_STR
