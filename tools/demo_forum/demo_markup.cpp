#include "demo_forum/demo_markup.h"

#include "text/strings.h"

namespace demo_pages {
namespace {

constexpr text::Replacement kInAttribute[] = {{"<", "&lt;"}, {">", "&gt;"}, {"\"", "&quot;"}};
constexpr text::Replacement kInText[] = {{"&", "&#38;"}, {"<", "&lt;"}, {">", "&gt;"}};

}  // namespace

std::string InAttribute(std::string_view text) {
  return text::ReplaceAll(std::string(text), kInAttribute, text::LetterCase::kExact);
}

std::string InText(std::string_view text) {
  return text::ReplaceAll(std::string(text), kInText, text::LetterCase::kExact);
}

std::string InLines(std::string_view text, std::string_view line_break) {
  return text::ReplaceAll(InText(text), "\r\n", line_break);
}

}  // namespace demo_pages
