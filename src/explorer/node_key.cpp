#include "explorer/node_key.h"

#include <algorithm>
#include <charconv>

#include "base/cat.h"
#include "base/ru_literal.h"
#include "text/numbers.h"

namespace {

struct NamedKind {
  NodeKind kind;
  std::string_view text;
};

constexpr NamedKind kTopNodes[] = {{NodeKind::kThreads, "Цепочка"_ru},
                                   {NodeKind::kBroken, "Хлам"_ru},
                                   {NodeKind::kDates, "Дата"_ru},
                                   {NodeKind::kAuthors, "Автор"_ru},
                                   {NodeKind::kResults, "Результаты"_ru}};

constexpr NamedKind kMessageLetters[] = {{NodeKind::kThreadMessage, "C"},
                                         {NodeKind::kDateMessage, "D"},
                                         {NodeKind::kAuthorMessage, "A"},
                                         {NodeKind::kFoundMessage, "П"_ru}};

constexpr int kDigits = 7;

std::string_view NameOf(NodeKind kind) {
  for (const auto& top : kTopNodes)
    if (top.kind == kind) return top.text;
  for (const auto& letter : kMessageLetters)
    if (letter.kind == kind) return letter.text;
  return {};
}

/// Takes `prefix` and the number behind it off the front of `text`.
std::optional<std::int32_t> TakeNumber(std::string_view& text, std::string_view prefix) {
  if (!text.starts_with(prefix)) return std::nullopt;
  std::int32_t number = 0;
  const char* const end = text.data() + text.size();
  const auto [rest, failure] = std::from_chars(text.data() + prefix.size(), end, number);
  if (failure != std::errc()) return std::nullopt;
  text = {rest, static_cast<std::size_t>(end - rest)};
  return number;
}

std::optional<NodeKey> ParseDateGroup(std::string_view text) {
  constexpr std::int32_t kLastYear = 9999, kLastMonth = 12;
  const auto year = TakeNumber(text, "Y");
  if (!year || *year < 0 || *year > kLastYear) return std::nullopt;
  if (text.empty()) return NodeKey{.kind = NodeKind::kYear, .number = *year};
  const auto month = TakeNumber(text, "M");
  if (!month || *month < 0 || *month > kLastMonth) return std::nullopt;
  if (text.empty()) return NodeKey{.kind = NodeKind::kMonth, .number = *year * 100 + *month};
  const auto day = TakeNumber(text, "Z");
  if (!day || *day < 0 || *day > 31) return std::nullopt;
  return NodeKey{.kind = NodeKind::kDay, .number = (*year * 100 + *month) * 100 + *day};
}

std::optional<NodeKey> Parse(std::string_view text) {
  for (const auto& top : kTopNodes)
    if (top.text == text) return NodeKey{.kind = top.kind};
  for (const auto& letter : kMessageLetters)
    if (const auto number = TakeNumber(text, letter.text)) return NodeKey{.kind = letter.kind, .number = *number};
  if (text.starts_with("W")) return NodeKey{.kind = NodeKind::kAuthor, .author = text.substr(1)};
  return ParseDateGroup(text);
}

}  // namespace

std::string KeyText(const NodeKey& key) {
  switch (key.kind) {
    case NodeKind::kYear: return Cat("Y", key.number);
    case NodeKind::kMonth: return Cat("Y", key.number / 100, "M", key.number % 100);
    case NodeKind::kDay: return Cat("Y", key.number / 10'000, "M", key.number / 100 % 100, "Z", key.number % 100);
    case NodeKind::kAuthor: return Cat("W", key.author);
    default: break;
  }
  if (!IsMessage(key.kind)) return std::string(NameOf(key.kind));
  return Cat(NameOf(key.kind), text::Padded(key.number, kDigits));
}

std::optional<NodeKey> ParseKey(std::string_view text) {
  const auto key = Parse(text);
  if (!key || KeyText(*key) != text) return std::nullopt;
  return key;
}

std::optional<std::int32_t> MessageNumber(std::string_view key) {
  constexpr std::string_view kLetters = "DACHП"_ru;
  if (key.empty() || kLetters.find(key.front()) == std::string_view::npos) return std::nullopt;
  const std::size_t digits = std::min<std::size_t>(key.size(), kDigits);
  return text::LenientLong(key.substr(key.size() - digits));
}
