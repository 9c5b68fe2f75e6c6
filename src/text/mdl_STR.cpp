#include "text/mdl_STR.h"

#include <algorithm>
#include <array>
#include <utility>

#include "base/cp1251.h"
#include "base/ru_literal.h"
#include "text/strings.h"

namespace mdl_STR {
namespace {

using text::Replacement;

constexpr std::string_view kBlanksAndBreaks = " \n\t\r";

// In this order, each on the result of the one before: "&amp;#34;" becomes a double quote, "&amp;gt;" becomes "&gt;".
constexpr Replacement kEntities[] = {{"&nbsp;", " "},    {"&gt;", ">"},      {"&#62;", ">"},    {"&lt;", "<"},
                                     {"&#60;", "<"},     {"&amp;", "&"},     {"&quot;", "\""},  {"&#171;", "«"_ru},
                                     {"&#187;", "»"_ru}, {"&#160;", " "},    {"&#32;", " "},    {"&#34;", "\""},
                                     {"&#38;", "&"},     {"&#150;", "–"_ru}, {"&#151;", "—"_ru}};

// The letters at C0 to FF, as either code page reads these bytes.
constexpr std::string_view kWinAlphabet = "АБВГДЕЖЗИЙКЛМНОПРСТУФХЦЧШЩЪЫЬЭЮЯабвгдежзийклмнопрстуфхцчшщъыьэюя"_ru;
constexpr std::string_view kKoi8Alphabet = "юабцдефгхийклмнопярстужвьызшэщчъЮАБЦДЕФГХИЙКЛМНОПЯРСТУЖВЬЫЗШЭЩЧЪ"_ru;
static_assert(kWinAlphabet.size() == 64 && kKoi8Alphabet.size() == 64);

std::size_t Index(char character) { return static_cast<unsigned char>(character); }

std::string WrapLine(std::string_view line, std::int64_t width) {
  std::string wrapped;
  std::int64_t running = 0;  // blanks are not counted
  for (const std::string_view word : text::Split(line, " ")) {
    const auto length = static_cast<std::int64_t>(word.size());
    if (length + running > width) {
      if (!wrapped.empty()) wrapped += "\r\n";
      running = length;
    } else {
      wrapped += ' ';
      running += length;
    }
    wrapped += word;
  }
  return wrapped;
}

}  // namespace

std::string_view ExtractBetween(std::string_view text, std::string_view start, std::string_view end) {
  const std::size_t begin = text::Find(1, text, start);
  if (begin == 0) return {};
  const std::string_view rest = text::Mid(text, begin + start.size());
  const std::size_t stop = text::Find(1, rest, end);
  return stop == 0 ? rest : rest.substr(0, stop - 1);
}

std::string DecodeHtmlEntities(std::string_view text) {
  std::string decoded(text);
  if (text.find('&') == std::string_view::npos) return decoded;
  return text::ReplaceAll(std::move(decoded), kEntities, text::LetterCase::kIgnored);
}

std::string StripTags(std::string_view text) {
  std::string stripped;
  std::size_t kept = 0;
  for (;;) {
    const std::size_t begin = text.find('<', kept);
    if (begin == std::string_view::npos) break;
    const std::size_t end = text.find('>', begin + 1);
    if (end == std::string_view::npos) break;
    stripped.append(text, kept, begin - kept);
    kept = end + 1;
  }
  return stripped.append(text, kept);
}

std::string CollapseSpaces(std::string_view text, Tabs tabs) {
  const std::string source =
      tabs == Tabs::kAsBlanks ? TranslateChars(text, "\t", " ", text::LetterCase::kExact) : std::string(text);
  std::string collapsed;
  for (const char character : text::Trim(source))
    if (character != ' ' || collapsed.empty() || collapsed.back() != ' ') collapsed += character;
  return collapsed;
}

std::string_view TrimLeadingBreaks(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanksAndBreaks);
  return first == std::string_view::npos ? std::string_view() : text.substr(first);
}

std::string_view TrimTrailingBreaks(std::string_view text) {
  return text.substr(0, text.find_last_not_of(kBlanksAndBreaks) + 1);
}

std::string TranslateChars(std::string_view text, std::string_view from, std::string_view to,
                           text::LetterCase letter_case) {
  if (from.empty()) return {};
  const auto key = [&](std::size_t byte) {
    const char character = static_cast<char>(byte);
    return Index(letter_case == text::LetterCase::kExact ? character : cp1251::Fold(character));
  };
  constexpr std::size_t kUnchanged = std::string_view::npos;
  std::array<std::size_t, 256> place;
  place.fill(kUnchanged);
  for (std::size_t i = from.size(); i > 0; --i) place[key(Index(from[i - 1]))] = i - 1;  // the first one wins

  std::string translated(text);
  if (to.empty()) {
    std::erase_if(translated, [&](char character) { return place[key(Index(character))] != kUnchanged; });
    return translated;
  }
  std::array<char, 256> target;
  for (std::size_t byte = 0; byte < target.size(); ++byte) {
    const std::size_t at = place[key(byte)];
    target[byte] = at == kUnchanged ? static_cast<char>(byte) : to[std::min(at, to.size() - 1)];
  }
  for (char& character : translated) character = target[Index(character)];
  return translated;
}

std::string Koi8ToWin(std::string_view text) {
  return TranslateChars(text, kWinAlphabet, kKoi8Alphabet, text::LetterCase::kExact);
}

std::string WinToKoi8(std::string_view text) {
  return TranslateChars(text, kKoi8Alphabet, kWinAlphabet, text::LetterCase::kExact);
}

std::string UrlEncodeKoi8(std::string_view text) {
  constexpr std::string_view kHex = "0123456789ABCDEF";
  const std::string koi8 = WinToKoi8(text);
  std::string encoded;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (koi8[i] == text[i])
      encoded += text[i];
    else
      encoded.append({'%', kHex[Index(koi8[i]) >> 4], kHex[Index(koi8[i]) & 0xF]});
  }
  return encoded;
}

std::string WrapText(std::string& text, std::int32_t width) {
  constexpr Replacement kLineBreaks[] = {
      {"\n\n", "\n"}, {"\r\r", "\r"}, {"\r", "\r\n"}, {"\n", "\r\n"}, {"\r\n\r\n", "\r\n"}};
  text = text::ReplaceAll(std::move(text), kLineBreaks, text::LetterCase::kExact);
  std::string wrapped;
  for (const std::string_view line : text::Split(text, "\r\n")) wrapped += WrapLine(line, width);
  return wrapped;
}

std::string_view CutAtNul(std::string_view text) { return text.substr(0, text.find('\0')); }

}  // namespace mdl_STR
