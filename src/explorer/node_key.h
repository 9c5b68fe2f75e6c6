#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// What a node of the message tree is; with a number or an author's name it makes the node's key.
enum class NodeKind : std::uint8_t {
  kRoot,     // above the top nodes, never shown
  kThreads,  // the top nodes, in the order shown
  kBroken,
  kDates,
  kAuthors,
  kResults,
  kThreadMessage,  // messages: one kind for each grouping that shows them
  kDateMessage,
  kAuthorMessage,
  kFoundMessage,
  kYear,  // groups
  kMonth,
  kDay,
  kAuthor,
};

constexpr bool IsMessage(NodeKind kind) { return kind >= NodeKind::kThreadMessage && kind <= NodeKind::kFoundMessage; }

/// Names one node of a tree; unique in it.
struct NodeKey {
  NodeKind kind = NodeKind::kRoot;
  std::int32_t number = 0;       // a message's Код; a year, a month as YYYYMM, a day as YYYYMMDD; else 0
  std::string_view author = {};  // of an author's node; compared exactly, letter case counts
  friend bool operator==(const NodeKey&, const NodeKey&) = default;
};

/// The key as text: "C0001234", "D0001234", "A0001234", "П0001234", "Y2002", "Y2002M3", "Y2002M3Z15",
/// "W" + author, "Цепочка", "Хлам", "Дата", "Автор", "Результаты"; empty for the root.
std::string KeyText(const NodeKey& key);

/// Reads a key back; the author is a view into `text`.
/// @return none unless KeyText of the result is `text` again
std::optional<NodeKey> ParseKey(std::string_view text);

/// The message that a key names: the last seven characters behind one of the letters D, A, C, H, П.
/// Unlike ParseKey it takes H, which old keys may begin with, and no number above 9'999'999.
std::optional<std::int32_t> MessageNumber(std::string_view key);
