#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "explorer/child_lists.h"
#include "explorer/key_index.h"
#include "explorer/node_key.h"

/// A node of a NodeTree. Stays the same until the node is removed; then it may be used again.
using NodeId = std::uint32_t;
inline constexpr NodeId kRootNode = 0;
inline constexpr NodeId kNoNode = 0xFFFF'FFFF;

/// A number and a text kept once for all nodes that show them.
enum class NodeLabel : std::uint32_t {};

/// Which picture a node has. The results node was picture 23 (24 when selected) of the old image
/// list, a found message picture 5.
enum class NodeImage : std::uint8_t {
  kThreads,
  kBroken,
  kDates,
  kAuthors,
  kResults,
  kThreadStart,
  kReply,
  kBrokenReply,
  kNewMessage,  // a thread start whose thread holds a new message
  kMessage,     // in the date and author groupings
  kFoundMessage,
  kYear,
  kMonth,
  kDay,
  kAuthor,
};
inline constexpr std::size_t kNodeImageCount = 15;

enum class Placement { kFirstChild, kLastChild };

/// The message tree of one window: top nodes under the root, messages and groups under them. A
/// message shown in all three groupings costs about 100 bytes and its text.
class NodeTree {
 public:
  NodeTree();

  /// Expects about so many nodes, labels and characters of text, so that adding them moves little.
  /// Memory that is not used then costs nothing but addresses.
  void Reserve(std::size_t nodes, std::size_t labels, std::size_t characters);
  /// Gives back what growing left unused.
  void ShrinkToFit();

  /// A label that no node shows lasts until the next node is removed.
  /// @param number  the number in the keys of the nodes that will show the label
  NodeLabel AddLabel(std::int32_t number, std::string_view text);

  /// Adds a node as the first or last child of `relative`, or at its sorted place when the children of
  /// `relative` are kept sorted. The key is `kind` with the label's number, an author's node: its text.
  /// @throws Error 35601 when `relative` is kNoNode, 35602 when the tree has the key already
  NodeId Add(NodeId relative, Placement placement, NodeKind kind, NodeLabel label, NodeImage image);
  /// As above with a label of its own.
  NodeId Add(NodeId relative, Placement placement, NodeKind kind, std::int32_t number, std::string_view text,
             NodeImage image);

  /// Removes a node and everything under it; siblings behind it move up by a row.
  void Remove(NodeId node);

  /// Sorts the children by text, equal texts in the order of adding, and keeps them so.
  void SortChildren(NodeId node);

  /// @return kNoNode when there is none
  NodeId Find(const NodeKey& key) const;
  NodeId Find(NodeKind kind, std::int32_t number = 0) const { return Find(NodeKey{.kind = kind, .number = number}); }

  /// Of a top node: kRootNode. Of the root: kNoNode.
  NodeId Parent(NodeId node) const { return links_[node].parent; }
  std::size_t ChildCount(NodeId node) const;
  /// @param row  0-based
  NodeId Child(NodeId node, std::size_t row) const;
  /// The place among the siblings, 0-based.
  std::size_t Row(NodeId node) const;
  /// The start of the thread that a message of the thread grouping stands in, itself perhaps; kNoNode
  /// in broken threads and elsewhere.
  NodeId ThreadStart(NodeId node) const;

  NodeKind Kind(NodeId node) const { return traits_[node].kind; }
  /// A message's Код; else the number of the key.
  std::int32_t Number(NodeId node) const { return LabelOf(node).number; }
  /// The views of Key and Text live until a label is added or a node removed.
  NodeKey Key(NodeId node) const { return KeyOf(Kind(node), links_[node].label); }
  std::string_view Text(NodeId node) const { return LabelText(links_[node].label); }
  NodeLabel Label(NodeId node) const { return links_[node].label; }
  void SetText(NodeId node, std::string_view text);
  NodeImage Image(NodeId node) const { return traits_[node].image; }
  void SetImage(NodeId node, NodeImage image) { traits_[node].image = image; }
  /// Kept for a node without children as well.
  bool Expanded(NodeId node) const { return traits_[node].expanded; }
  void SetExpanded(NodeId node, bool expanded) { traits_[node].expanded = expanded; }

 private:
  struct Links {
    NodeId parent;
    std::uint32_t position;  // in the parent's list, see Traits::newest_first
    ChildLists::List children;
    NodeLabel label;
  };
  struct Traits {
    NodeKind kind;
    NodeImage image;
    bool expanded : 1;
    bool sorted : 1;
    bool newest_first : 1;  // the list of children runs from the last one to the first
  };
  struct LabelData {
    std::uint32_t text_begin;  // in texts_; the text ends where the next label's begins
    std::int32_t number;
  };

  const LabelData& LabelOf(NodeId node) const { return labels_[static_cast<std::size_t>(links_[node].label)]; }
  NodeKey KeyOf(NodeKind kind, NodeLabel label) const;
  std::string_view LabelText(NodeLabel label) const;
  void Release(NodeLabel label);
  std::uint32_t HashOf(NodeId node) const;
  NodeId NewNode(const Links& links, const Traits& traits);
  void InsertChild(NodeId parent, Placement placement, NodeId child);
  std::size_t SortedPosition(NodeId parent, NodeId child) const;
  void Renumber(NodeId parent, std::size_t from);
  void Detach(NodeId node);
  std::vector<NodeId> Subtree(NodeId node) const;

  std::vector<Links> links_;  // of each node
  std::vector<Traits> traits_;
  std::vector<NodeId> unused_nodes_;
  ChildLists children_;
  KeyIndex index_;
  std::vector<LabelData> labels_;
  std::vector<std::uint8_t> label_uses_;  // nodes that show each label
  std::string texts_;
};
