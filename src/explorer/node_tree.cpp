#include "explorer/node_tree.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "base/checked.h"
#include "base/cp1251.h"
#include "base/ru_literal.h"

namespace {

std::uint32_t Hash(const NodeKey& key) {
  constexpr std::uint64_t kGolden = 0x9E37'79B9'7F4A'7C15;
  constexpr unsigned kKinds = 16;
  const std::uint64_t own = key.kind == NodeKind::kAuthor ? std::hash<std::string_view>()(key.author)
                                                          : static_cast<std::uint32_t>(key.number);
  return static_cast<std::uint32_t>(((own * kKinds + static_cast<std::uint64_t>(key.kind)) * kGolden) >> 32);
}

/// A few unused places are not worth the copying.
void Shrink(auto& container) {
  if (container.capacity() - container.size() > container.size() / 8) container.shrink_to_fit();
}

}  // namespace

NodeTree::NodeTree() {
  const NodeLabel label = AddLabel(0, {});
  NewNode({.parent = kNoNode, .position = 0, .children = ChildLists::kNone, .label = label},
          {.kind = NodeKind::kRoot, .image = {}, .expanded = true, .sorted = false, .newest_first = false});
}

void NodeTree::Reserve(std::size_t nodes, std::size_t labels, std::size_t characters) {
  links_.reserve(nodes);
  traits_.reserve(nodes);
  labels_.reserve(labels);
  label_uses_.reserve(labels);
  texts_.reserve(characters);
  index_.Reserve(nodes, [this](NodeId node) { return HashOf(node); });
}

void NodeTree::ShrinkToFit() {
  Shrink(links_);
  Shrink(traits_);
  Shrink(labels_);
  Shrink(label_uses_);
  Shrink(texts_);
  children_.Compact();
}

NodeLabel NodeTree::AddLabel(std::int32_t number, std::string_view text) {
  labels_.push_back({CheckedCast<std::uint32_t>(texts_.size()), number});
  label_uses_.push_back(0);
  texts_.append(text);
  return static_cast<NodeLabel>(labels_.size() - 1);
}

NodeId NodeTree::Add(NodeId relative, Placement placement, NodeKind kind, NodeLabel label, NodeImage image) {
  if (relative == kNoNode) throw Error(error_number::kNoSuchNode, "Нет такого узла"_ru);
  if (Find(KeyOf(kind, label)) != kNoNode) throw Error(error_number::kNodeExists, "Такой узел уже есть"_ru);
  const NodeId node =
      NewNode({.parent = relative, .position = 0, .children = ChildLists::kNone, .label = label},
              {.kind = kind, .image = image, .expanded = false, .sorted = false, .newest_first = false});
  InsertChild(relative, placement, node);
  index_.Insert(node, [this](NodeId id) { return HashOf(id); });
  return node;
}

NodeId NodeTree::Add(NodeId relative, Placement placement, NodeKind kind, std::int32_t number, std::string_view text,
                     NodeImage image) {
  return Add(relative, placement, kind, AddLabel(number, text), image);
}

void NodeTree::Remove(NodeId node) {
  Detach(node);
  const std::vector<NodeId> removed = Subtree(node);
  for (const NodeId id : removed) index_.Erase(id, [this](NodeId other) { return HashOf(other); });
  for (const NodeId id : removed) {
    if (links_[id].children != ChildLists::kNone) children_.Destroy(links_[id].children);
    Release(links_[id].label);
    unused_nodes_.push_back(id);
  }
}

void NodeTree::SortChildren(NodeId node) {
  traits_[node].sorted = true;
  if (links_[node].children == ChildLists::kNone) return;
  const auto items = children_.Items(links_[node].children);
  if (traits_[node].newest_first) std::reverse(items.begin(), items.end());
  traits_[node].newest_first = false;
  std::stable_sort(items.begin(), items.end(),
                   [this](NodeId a, NodeId b) { return cp1251::CompareForSorting(Text(a), Text(b)) < 0; });
  Renumber(node, 0);
}

NodeId NodeTree::Find(const NodeKey& key) const {
  return index_.Find(Hash(key), [&](NodeId node) { return traits_[node].kind == key.kind && Key(node) == key; });
}

std::size_t NodeTree::ChildCount(NodeId node) const {
  const ChildLists::List list = links_[node].children;
  return list == ChildLists::kNone ? 0 : children_.Items(list).size();
}

NodeId NodeTree::Child(NodeId node, std::size_t row) const {
  const auto items = children_.Items(links_[node].children);
  return traits_[node].newest_first ? items[items.size() - 1 - row] : items[row];
}

std::size_t NodeTree::Row(NodeId node) const {
  const Links& links = links_[node];
  if (links.parent == kNoNode) return 0;
  return traits_[links.parent].newest_first ? ChildCount(links.parent) - 1 - links.position : links.position;
}

NodeId NodeTree::ThreadStart(NodeId node) const {
  if (Kind(node) != NodeKind::kThreadMessage) return kNoNode;
  while (Kind(Parent(node)) == NodeKind::kThreadMessage) node = Parent(node);
  return Kind(Parent(node)) == NodeKind::kThreads ? node : kNoNode;
}

void NodeTree::SetText(NodeId node, std::string_view text) {
  const NodeLabel label = AddLabel(Number(node), text);
  ++label_uses_[static_cast<std::size_t>(label)];
  Release(std::exchange(links_[node].label, label));
}

NodeKey NodeTree::KeyOf(NodeKind kind, NodeLabel label) const {
  if (kind == NodeKind::kAuthor) return {.kind = kind, .number = 0, .author = LabelText(label)};
  return {.kind = kind, .number = labels_[static_cast<std::size_t>(label)].number, .author = {}};
}

std::string_view NodeTree::LabelText(NodeLabel label) const {
  const auto at = static_cast<std::size_t>(label);
  const std::size_t begin = labels_[at].text_begin;
  const std::size_t end = at + 1 < labels_.size() ? labels_[at + 1].text_begin : texts_.size();
  return std::string_view(texts_).substr(begin, end - begin);
}

// Labels are given back only from the end: search results, which come last, are what is replaced often.
void NodeTree::Release(NodeLabel label) {
  --label_uses_[static_cast<std::size_t>(label)];
  while (label_uses_.back() == 0) {
    texts_.resize(labels_.back().text_begin);
    labels_.pop_back();
    label_uses_.pop_back();
  }
}

std::uint32_t NodeTree::HashOf(NodeId node) const { return Hash(Key(node)); }

NodeId NodeTree::NewNode(const Links& links, const Traits& traits) {
  ++label_uses_[static_cast<std::size_t>(links.label)];
  if (!unused_nodes_.empty()) {
    const NodeId node = unused_nodes_.back();
    unused_nodes_.pop_back();
    links_[node] = links;
    traits_[node] = traits;
    return node;
  }
  links_.push_back(links);
  traits_.push_back(traits);
  return CheckedCast<NodeId>(links_.size() - 1);
}

void NodeTree::InsertChild(NodeId parent, Placement placement, NodeId child) {
  ChildLists::List& list = links_[parent].children;
  if (list == ChildLists::kNone) list = children_.Create();
  const std::size_t count = children_.Items(list).size();
  Traits& traits = traits_[parent];
  if (count == 0) traits.newest_first = placement == Placement::kFirstChild && !traits.sorted;
  const bool at_end = (placement == Placement::kFirstChild) == traits.newest_first;
  const std::size_t position = traits.sorted ? SortedPosition(parent, child) : at_end ? count : 0;
  children_.Insert(list, position, child);
  Renumber(parent, position);
}

std::size_t NodeTree::SortedPosition(NodeId parent, NodeId child) const {
  const auto items = children_.Items(links_[parent].children);
  const auto place = std::upper_bound(items.begin(), items.end(), child, [this](NodeId a, NodeId b) {
    return cp1251::CompareForSorting(Text(a), Text(b)) < 0;
  });
  return static_cast<std::size_t>(place - items.begin());
}

void NodeTree::Renumber(NodeId parent, std::size_t from) {
  const auto items = children_.Items(links_[parent].children);
  for (std::size_t i = from; i < items.size(); ++i) links_[items[i]].position = static_cast<std::uint32_t>(i);
}

void NodeTree::Detach(NodeId node) {
  const Links& links = links_[node];
  children_.Erase(links_[links.parent].children, links.position);
  Renumber(links.parent, links.position);
}

std::vector<NodeId> NodeTree::Subtree(NodeId node) const {
  std::vector<NodeId> nodes{node};
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    const ChildLists::List list = links_[nodes[i]].children;
    if (list == ChildLists::kNone) continue;
    const auto items = children_.Items(list);
    nodes.insert(nodes.end(), items.begin(), items.end());
  }
  return nodes;
}
