#pragma once

#include <string>
#include <string_view>

#include "base/ru_literal.h"
#include "text/strings.h"

/// What pages cannot carry, as the forums' rules have it: the text that comes out for one that went in.
namespace page_losses {

inline std::string Replaced(std::string_view text, std::string_view needle, std::string_view by) {
  return text::ReplaceAll(text, needle, by, text::LetterCase::kIgnored);
}

inline std::string Before(std::string_view text, std::string_view marker) {
  const std::size_t at = text::Find(1, text, marker);
  return std::string(at == 0 ? text : text.substr(0, at - 1));
}

/// A reference to a dash that the author spelled out is decoded, however it is escaped.
inline std::string DecodedDashes(std::string_view text) {
  return Replaced(Replaced(text, "&#150;", "–"_ru), "&#151;", "—"_ru);
}

/// Nicks and addresses are not decoded: what had to be escaped for the page stays so.
inline std::string Escaped(std::string_view text) {
  return Replaced(Replaced(Replaced(text, "<", "&lt;"), ">", "&gt;"), "\"", "&quot;");
}

inline std::string WithoutOuterBreaks(std::string_view text) {
  constexpr std::string_view kOuter = " \t\r\n";
  const std::size_t first = text.find_first_not_of(kOuter);
  if (first == std::string_view::npos) return {};
  return std::string(text.substr(first, text.find_last_not_of(kOuter) + 1 - first));
}

}  // namespace page_losses
