#pragma once

#include <span>
#include <string>
#include <string_view>

#include "text/mdl_STR.h"

/// How a page parser gets at one field. A parser is a list of them.
struct FieldRule {
  std::string_view field;  // the column that the text is meant for
  std::string (*parse)(std::string_view page);
};

/// A field that the list lacks is an empty text.
inline std::string ParseField(std::span<const FieldRule> rules, std::string_view page, std::string_view field) {
  for (const FieldRule& rule : rules)
    if (rule.field == field) return rule.parse(page);
  return {};
}

/// A body without blanks and line breaks around it; " " when nothing is left.
inline std::string BodyToStore(std::string_view body) {
  const std::string_view clean = mdl_STR::TrimTrailingBreaks(mdl_STR::TrimLeadingBreaks(body));
  return clean.empty() ? " " : std::string(clean);
}
