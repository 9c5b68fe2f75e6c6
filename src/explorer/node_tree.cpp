#include "explorer/node_tree.h"

#include <algorithm>
#include <functional>

#include "base/checked.h"
#include "base/cp1251.h"
#include "base/error.h"
#include "base/ru_literal.h"

namespace {

std::uint32_t Hash(const NodeKey& key) {
  constexpr std::uint64_t kGolden = 0x9E37'79B9'7F4A'7C15;
  constexpr unsigned kKinds = 16;
  const std::uint64_t own = key.kind == NodeKind::kAuthor ? std::hash<std::string_view>()(key.author)
                                                          : static_cast<std::uint32_t>(key.number);
  return static_cast<std::uint32_t>(((own * kKinds + static_cast<std::uint64_t>(key.kind)) * kGolden) >> 32);
}

/// The kind that a label is kept under: one for all groupings that show a message.
NodeKind LabelKind(NodeKind kind) {
  return kind == NodeKind::kDateMessage || kind == NodeKind::kAuthorMessage ? NodeKind::kThreadMessage : kind;
}

/// A few unused places are not worth the copying.
void Shrink(auto& container) {
  if (container.capacity() - container.size() > container.size() / 8) container.shrink_to_fit();
}

}  // namespace

NodeTree::NodeTree() { SetExpanded(NewLabel(NodeKind::kRoot, 0, {}), true); }

void NodeTree::Reserve(std::size_t labels, std::size_t characters) {
  labels_.reserve(labels);
  texts_.reserve(characters);
  traits_.reserve(labels);
  lists_.reserve(labels);
  places_[kMain].reserve(labels);
  index_.Reserve(labels, [this](std::uint32_t label) { return HashOf(label); });
}

void NodeTree::ShrinkToFit() {
  Shrink(labels_);
  Shrink(texts_);
  Shrink(traits_);
  Shrink(lists_);
  for (auto& places : places_) Shrink(places);
  children_.Compact();
}

NodeLabel NodeTree::AddLabel(std::int32_t number, std::string_view text) {
  return static_cast<NodeLabel>(NewLabel(NodeKind::kThreadMessage, number, text));
}

NodeId NodeTree::Add(NodeId relative, Placement placement, NodeKind kind, NodeLabel message) {
  if (relative == kNoNode || LayerOf(relative) != kMain) throw Error(error_number::kNoSuchNode, "Нет такого узла"_ru);
  const auto label = static_cast<std::uint32_t>(message);
  if (Find(KeyOf(kind, label)) != kNoNode) throw Error(error_number::kNodeExists, "Такой узел уже есть"_ru);
  if (!IsShown(label)) index_.Insert(label, [this](std::uint32_t other) { return HashOf(other); });
  const NodeId node = IdOf(LayerOf(kind), label);
  SetPlace(node, {.parent = relative});
  InsertChild(relative, placement, node);
  return node;
}

NodeId NodeTree::Add(NodeId relative, Placement placement, NodeKind kind, std::int32_t number, std::string_view text) {
  return Add(relative, placement, kind, static_cast<NodeLabel>(NewLabel(LabelKind(kind), number, text)));
}

void NodeTree::Remove(NodeId node) {
  Detach(node);
  for (const NodeId id : Subtree(node)) {
    const std::uint32_t label = LabelOf(id);
    SetPlace(id, {});
    if (!IsShown(label)) index_.Erase(label, [this](std::uint32_t other) { return HashOf(other); });
    if (LayerOf(id) != kMain) continue;
    if (lists_[label] != ChildLists::kNone) children_.Destroy(lists_[label]);
    lists_[label] = ChildLists::kNone;
    traits_[label] = {.kind = traits_[label].kind};
  }
  DropUnusedLabels();
}

void NodeTree::SortChildren(NodeId node) {
  Traits& traits = traits_[LabelOf(node)];
  traits.sorted = true;
  if (ChildCount(node) == 0) return;
  const auto items = children_.Items(lists_[LabelOf(node)]);
  if (traits.newest_first) std::reverse(items.begin(), items.end());
  traits.newest_first = false;
  std::stable_sort(items.begin(), items.end(),
                   [this](NodeId a, NodeId b) { return cp1251::CompareForSorting(Text(a), Text(b)) < 0; });
  Renumber(node, 0);
}

NodeId NodeTree::Find(const NodeKey& key) const {
  const Layer layer = LayerOf(key.kind);
  const NodeKey of_label{.kind = LabelKind(key.kind), .number = key.number, .author = key.author};
  const std::uint32_t label = index_.Find(Hash(of_label), [&](std::uint32_t candidate) {
    return KeyOf(traits_[candidate].kind, candidate) == of_label && Shows(layer, candidate);
  });
  return label == KeyIndex::kNotFound ? kNoNode : IdOf(layer, label);
}

NodeId NodeTree::Child(NodeId node, std::size_t row) const {
  const auto items = Children(node);
  return traits_[LabelOf(node)].newest_first ? items[items.size() - 1 - row] : items[row];
}

std::size_t NodeTree::Row(NodeId node) const {
  const auto [parent, position] = PlaceOf(node);
  if (parent == kNoNode) return 0;
  return traits_[LabelOf(parent)].newest_first ? ChildCount(parent) - 1 - position : position;
}

NodeId NodeTree::ThreadStart(NodeId node) const {
  if (Kind(node) != NodeKind::kThreadMessage) return kNoNode;
  while (Kind(Parent(node)) == NodeKind::kThreadMessage) node = Parent(node);
  return Kind(Parent(node)) == NodeKind::kThreads ? node : kNoNode;
}

NodeKind NodeTree::Kind(NodeId node) const {
  switch (LayerOf(node)) {
    case kDate: return NodeKind::kDateMessage;
    case kAuthor: return NodeKind::kAuthorMessage;
    default: return traits_[LabelOf(node)].kind;
  }
}

NodeImage NodeTree::Image(NodeId node) const {
  switch (Kind(node)) {
    case NodeKind::kRoot:
    case NodeKind::kThreads: return NodeImage::kThreads;
    case NodeKind::kBroken: return NodeImage::kBroken;
    case NodeKind::kDates: return NodeImage::kDates;
    case NodeKind::kAuthors: return NodeImage::kAuthors;
    case NodeKind::kResults: return NodeImage::kResults;
    case NodeKind::kThreadMessage: return ThreadMessageImage(node);
    case NodeKind::kDateMessage:
    case NodeKind::kAuthorMessage: return NodeImage::kMessage;
    case NodeKind::kFoundMessage: return NodeImage::kFoundMessage;
    case NodeKind::kYear: return NodeImage::kYear;
    case NodeKind::kMonth: return NodeImage::kMonth;
    case NodeKind::kDay: return NodeImage::kDay;
    case NodeKind::kAuthor: return NodeImage::kAuthor;
  }
  return NodeImage::kMessage;
}

NodeImage NodeTree::ThreadMessageImage(NodeId node) const {
  if (traits_[LabelOf(node)].has_new) return NodeImage::kNewMessage;
  switch (Kind(Parent(node))) {
    case NodeKind::kThreads: return NodeImage::kThreadStart;
    case NodeKind::kBroken: return NodeImage::kBrokenReply;
    default: return NodeImage::kReply;
  }
}

void NodeTree::SetExpanded(NodeId node, bool expanded) {
  if (LayerOf(node) == kMain) traits_[LabelOf(node)].expanded = expanded;
}

NodeTree::Layer NodeTree::LayerOf(NodeKind kind) {
  switch (kind) {
    case NodeKind::kDateMessage: return kDate;
    case NodeKind::kAuthorMessage: return kAuthor;
    default: return kMain;
  }
}

std::uint32_t NodeTree::NewLabel(NodeKind kind, std::int32_t number, std::string_view text) {
  const auto label = CheckedCast<std::uint32_t>(labels_.size());
  if (label >> kLabelBits != 0) ThrowOverflow();
  labels_.push_back({CheckedCast<std::uint32_t>(texts_.size()), number});
  texts_.append(text);
  traits_.push_back({.kind = kind});
  lists_.push_back(ChildLists::kNone);
  places_[kMain].emplace_back();
  return label;
}

std::string_view NodeTree::LabelText(std::uint32_t label) const {
  const std::size_t begin = labels_[label].text_begin;
  const std::size_t end = label + 1 < labels_.size() ? labels_[label + 1].text_begin : texts_.size();
  return std::string_view(texts_).substr(begin, end - begin);
}

NodeKey NodeTree::KeyOf(NodeKind kind, std::uint32_t label) const {
  if (kind == NodeKind::kAuthor) return {.kind = kind, .number = 0, .author = LabelText(label)};
  return {.kind = kind, .number = labels_[label].number, .author = {}};
}

std::uint32_t NodeTree::HashOf(std::uint32_t label) const { return Hash(KeyOf(traits_[label].kind, label)); }

bool NodeTree::Shows(Layer layer, std::uint32_t label) const {
  const auto& places = places_[layer];
  return label < places.size() && places[label].parent != kNoNode;
}

bool NodeTree::IsShown(std::uint32_t label) const {
  return Shows(kMain, label) || Shows(kDate, label) || Shows(kAuthor, label);
}

// Labels are given back only from the end: search results, which come last, are what is replaced often.
void NodeTree::DropUnusedLabels() {
  while (labels_.size() > 1 && !IsShown(static_cast<std::uint32_t>(labels_.size() - 1))) {
    texts_.resize(labels_.back().text_begin);
    labels_.pop_back();
    traits_.pop_back();
    lists_.pop_back();
    for (auto& places : places_)
      if (places.size() > labels_.size()) places.pop_back();
  }
}

void NodeTree::SetPlace(NodeId node, const Place& place) {
  auto& places = places_[LayerOf(node)];
  const std::size_t label = LabelOf(node);
  if (places.size() <= label) {
    places.reserve(labels_.capacity());
    places.resize(label + 1);
  }
  places[label] = place;
}

std::span<const NodeId> NodeTree::Children(NodeId node) const {
  if (LayerOf(node) != kMain || lists_[LabelOf(node)] == ChildLists::kNone) return {};
  return children_.Items(lists_[LabelOf(node)]);
}

void NodeTree::InsertChild(NodeId parent, Placement placement, NodeId child) {
  ChildLists::List& list = lists_[LabelOf(parent)];
  if (list == ChildLists::kNone) list = children_.Create();
  const std::size_t count = ChildCount(parent);
  Traits& traits = traits_[LabelOf(parent)];
  if (count == 0) traits.newest_first = placement == Placement::kFirstChild && !traits.sorted;
  const bool at_end = (placement == Placement::kFirstChild) == traits.newest_first;
  const std::size_t position = traits.sorted ? SortedPosition(parent, child) : at_end ? count : 0;
  children_.Insert(list, position, child);
  Renumber(parent, position);
}

std::size_t NodeTree::SortedPosition(NodeId parent, NodeId child) const {
  const auto items = Children(parent);
  const auto place = std::upper_bound(items.begin(), items.end(), child, [this](NodeId a, NodeId b) {
    return cp1251::CompareForSorting(Text(a), Text(b)) < 0;
  });
  return static_cast<std::size_t>(place - items.begin());
}

void NodeTree::Renumber(NodeId parent, std::size_t from) {
  const auto items = Children(parent);
  for (std::size_t i = from; i < items.size(); ++i) PlaceOf(items[i]).position = static_cast<std::uint32_t>(i);
}

void NodeTree::Detach(NodeId node) {
  const auto [parent, position] = PlaceOf(node);
  children_.Erase(lists_[LabelOf(parent)], position);
  Renumber(parent, position);
}

std::vector<NodeId> NodeTree::Subtree(NodeId node) const {
  std::vector<NodeId> nodes{node};
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    const auto items = Children(nodes[i]);
    nodes.insert(nodes.end(), items.begin(), items.end());
  }
  return nodes;
}
