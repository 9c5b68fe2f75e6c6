#include "jet/index_node.h"

#include <algorithm>
#include <utility>

#include "base/bytes.h"
#include "base/error.h"
#include "base/ru_literal.h"

namespace jet {
namespace {

// A child's page at the end of an entry is big-endian.
std::uint32_t ChildOf(std::string_view entry) {
  std::uint32_t child = 0;
  for (const char byte : entry.substr(entry.size() - kEntryChildSize))
    child = child << 8 | static_cast<std::uint8_t>(byte);
  return child;
}

std::string EntryOf(const IndexNode::Child& child) {
  std::string entry = child.greatest;
  for (int shift = 24; shift >= 0; shift -= 8)
    entry += static_cast<char>(static_cast<std::uint8_t>(child.page >> shift));
  return entry;
}

}  // namespace

std::size_t IndexNode::Find(std::uint32_t child) const {
  const auto found = std::ranges::find(children, child, &Child::page);
  if (found == children.end()) throw FormatError("Страница индекса повреждена"_ru, page);
  return static_cast<std::size_t>(found - children.begin());
}

IndexNode ReadIndexNode(const PageFile& file, std::uint32_t page, std::uint32_t table) {
  IndexPageContent content = ReadIndexPage(file, page, table);
  if (content.level == 0) throw FormatError("Страница индекса повреждена"_ru, page);
  IndexNode node;
  node.page = page;
  node.level = content.level;
  node.previous = content.previous;
  node.next = content.next;
  node.children.reserve(content.entries.size() + 1);
  for (std::string& entry : content.entries) {
    const std::uint32_t child = ChildOf(entry);
    entry.resize(entry.size() - kEntryChildSize);
    node.children.push_back({std::move(entry), child});
  }
  if (content.tail != 0) node.children.push_back({"", content.tail});
  return node;
}

IndexPageContent ContentOf(const IndexNode& node) {
  IndexPageContent content;
  content.level = node.level;
  content.previous = node.previous;
  content.next = node.next;
  const bool has_tail = node.children.size() > 1;
  content.entries.reserve(node.children.size());
  for (const IndexNode::Child& child : node.children) content.entries.push_back(EntryOf(child));
  if (has_tail) {
    content.tail = node.children.back().page;
    content.entries.pop_back();
  }
  return content;
}

}  // namespace jet
