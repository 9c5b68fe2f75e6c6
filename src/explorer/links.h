#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// An address within a plain text.
struct LinkSpan {
  std::size_t start, length;  // start is 0-based; both in characters of the text
  std::string target;         // begins with http://, https:// or mailto:
};

/// Finds addresses in a message's body, in their order: http://, https://, www. and mailto:, letter
/// case ignored, standing free or as the value of an href="…" that a parser left behind. Nothing else
/// becomes a link, whatever the text says. A window that shows CR LF as one character passes the text
/// with single line ends.
std::vector<LinkSpan> FindLinks(std::string_view text);
