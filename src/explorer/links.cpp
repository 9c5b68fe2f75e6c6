#include "explorer/links.h"

#include <algorithm>
#include <optional>

#include "base/cat.h"
#include "base/cp1251.h"
#include "text/strings.h"

namespace {

struct Opening {
  std::string_view text;
  std::string_view added;  // in front of the target
};

constexpr Opening kOpenings[] = {{"http://", ""}, {"https://", ""}, {"www.", "http://"}, {"mailto:", ""}};

constexpr std::size_t kLongestAddress = 2048;

bool IsLetterOrDigit(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
         static_cast<unsigned char>(c) >= 0xC0;
}

/// Printable ASCII but what delimits addresses in texts and mark-up; Russian letters end an address.
bool BelongsToAddress(char c) {
  constexpr std::string_view kDelimiters = "\"'<>`{}|\\^";
  return c > ' ' && c < '\x7F' && kDelimiters.find(c) == std::string_view::npos;
}

const Opening* OpeningAt(std::string_view text) {
  for (const Opening& opening : kOpenings)
    if (cp1251::StartsWithIgnoringCase(text, opening.text)) return &opening;
  return nullptr;
}

/// Drops the punctuation of the sentence around an address; a closing bracket stays when the address
/// opened it.
std::string_view WithoutTrailingPunctuation(std::string_view address) {
  constexpr std::string_view kPunctuation = ".,;:!?*";
  const auto count = [&](char c) { return std::count(address.begin(), address.end(), c); };
  auto unopened_round = count(')') - count('('), unopened_square = count(']') - count('[');
  while (!address.empty()) {
    const char last = address.back();
    const bool drop = last == ')'   ? unopened_round-- > 0
                      : last == ']' ? unopened_square-- > 0
                                    : kPunctuation.find(last) != std::string_view::npos;
    if (!drop) break;
    address.remove_suffix(1);
  }
  return address;
}

bool NamesSomething(std::string_view address, const Opening& opening) {
  const std::string_view rest = address.substr(std::min(opening.text.size(), address.size()));
  if (rest.empty() || !IsLetterOrDigit(rest.front())) return false;
  if (opening.text == "mailto:") return rest.find('@') != std::string_view::npos;
  return opening.text != "www." || rest.find('.') != std::string_view::npos;
}

std::string Target(std::string_view address, const Opening& opening) {
  return Cat(opening.added, text::ReplaceAll(address, "&amp;", "&"));
}

/// How many characters from the front of `text` may belong to one address.
std::size_t RunLength(std::string_view text) {
  const auto end = std::find_if_not(text.begin(), text.end(), BelongsToAddress);
  return static_cast<std::size_t>(end - text.begin());
}

/// The quoted value that begins at `at`, when "href=" and a quote stand before it.
std::optional<std::string_view> HrefValue(std::string_view text, std::size_t at) {
  constexpr std::string_view kHref = "href=";
  if (at < kHref.size() + 1) return std::nullopt;
  const char quote = text[at - 1];
  if (quote != '"' && quote != '\'') return std::nullopt;
  if (!cp1251::EqualIgnoringCase(text.substr(at - 1 - kHref.size(), kHref.size()), kHref)) return std::nullopt;
  const std::string_view rest = text.substr(at, kLongestAddress);
  const std::size_t length = rest.find_first_of(quote == '"' ? "\"\r\n" : "'\r\n");
  if (length == std::string_view::npos || rest[length] != quote) return std::nullopt;
  return rest.substr(0, length);
}

bool CanStart(char c) { return c == 'h' || c == 'H' || c == 'w' || c == 'W' || c == 'm' || c == 'M'; }

}  // namespace

std::vector<LinkSpan> FindLinks(std::string_view text) {
  std::vector<LinkSpan> links;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (!CanStart(text[at]) || (at > 0 && IsLetterOrDigit(text[at - 1]))) continue;
    const Opening* opening = OpeningAt(text.substr(at));
    if (opening == nullptr) continue;
    const std::size_t run = RunLength(text.substr(at));
    if (run > kLongestAddress) {
      at += run - 1;
      continue;
    }
    // Within quotes the address is the whole value, punctuation and brackets included.
    const std::string_view address = HrefValue(text, at).value_or(WithoutTrailingPunctuation(text.substr(at, run)));
    if (!NamesSomething(address, *opening)) continue;
    links.push_back({at, address.size(), Target(address, *opening)});
    at += address.size() - 1;
  }
  return links;
}
