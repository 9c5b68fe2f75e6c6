#pragma once

#include <string>
#include <string_view>

/// How the demonstration forums turn what a user wrote into HTML.
namespace demo_pages {

/// For places that the readers of a page do not decode: nicks, addresses. Only what would break the markup
/// is escaped.
std::string InAttribute(std::string_view text);

/// For places that they decode: "&", "<" and ">" escaped, an "&" in the one form that nothing decodes twice.
std::string InText(std::string_view text);

/// As InText, with every CR LF written as `line_break`.
std::string InLines(std::string_view text, std::string_view line_break);

}  // namespace demo_pages
