#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
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

/// A message, kept once for all groupings that show it: its number and its text.
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
/// message shown in all three groupings costs about 65 bytes and its text.
class NodeTree {
 public:
  NodeTree();

  /// Expects about so many messages and groups and characters of text, so that adding them moves
  /// little. Memory that is not used then costs nothing but addresses.
  void Reserve(std::size_t labels, std::size_t characters);
  /// Gives back what growing left unused.
  void ShrinkToFit();

  /// A label that no node shows lasts until the next node is removed.
  /// @param number  the message's Код
  NodeLabel AddLabel(std::int32_t number, std::string_view text);

  /// Adds a node for a message as the first or last child of `relative`, or at its sorted place when
  /// the children of `relative` are kept sorted.
  /// @param kind  kThreadMessage, kDateMessage or kAuthorMessage; with the number it is the node's key
  /// @throws Error 35601 when `relative` is kNoNode or a message of the date or author grouping, which
  /// has no children, 35602 when the tree has the key already
  NodeId Add(NodeId relative, Placement placement, NodeKind kind, NodeLabel label);
  /// As above for a node of any kind with a label of its own. The key is `kind` with the number, an
  /// author's node: with the text.
  NodeId Add(NodeId relative, Placement placement, NodeKind kind, std::int32_t number, std::string_view text);

  /// Removes a node and everything under it; siblings behind it move up by a row.
  void Remove(NodeId node);

  /// Sorts the children by text, equal texts in the order of adding, and keeps them so.
  void SortChildren(NodeId node);

  /// @return kNoNode when there is none
  NodeId Find(const NodeKey& key) const;
  NodeId Find(NodeKind kind, std::int32_t number = 0) const { return Find(NodeKey{.kind = kind, .number = number}); }

  /// Of a top node: kRootNode. Of the root: kNoNode.
  NodeId Parent(NodeId node) const { return PlaceOf(node).parent; }
  std::size_t ChildCount(NodeId node) const { return Children(node).size(); }
  /// @param row  0-based
  NodeId Child(NodeId node, std::size_t row) const;
  /// The place among the siblings, 0-based.
  std::size_t Row(NodeId node) const;
  /// The start of the thread that a message of the thread grouping stands in, itself perhaps; kNoNode
  /// in broken threads and elsewhere.
  NodeId ThreadStart(NodeId node) const;

  NodeKind Kind(NodeId node) const;
  /// A message's Код; else the number of the key.
  std::int32_t Number(NodeId node) const { return labels_[LabelOf(node)].number; }
  /// The views of Key and Text live until a label is added or a node removed.
  NodeKey Key(NodeId node) const { return KeyOf(Kind(node), LabelOf(node)); }
  std::string_view Text(NodeId node) const { return LabelText(LabelOf(node)); }
  NodeImage Image(NodeId node) const;
  /// Gives a thread start the picture of a new message.
  void MarkNew(NodeId thread_start) { traits_[LabelOf(thread_start)].has_new = true; }
  /// Notes that a message of the thread grouping is itself new, whatever picture it has.
  void MarkNewMessage(NodeId message) { traits_[LabelOf(message)].is_new = true; }
  bool IsNewMessage(NodeId node) const { return LayerOf(node) == kMain && traits_[LabelOf(node)].is_new; }
  /// Kept for a node without children as well, but not for messages of the date and author groupings.
  bool Expanded(NodeId node) const { return LayerOf(node) == kMain && traits_[LabelOf(node)].expanded; }
  void SetExpanded(NodeId node, bool expanded);

 private:
  // A node is a label in a layer: the layer stands in the top bits of its id, the label's place in the
  // others. Messages of the date and author groupings, which have no children, have a layer each;
  // everything else is in the main one.
  enum Layer : std::uint32_t { kMain, kDate, kAuthor, kLayers };
  static constexpr unsigned kLabelBits = 30;

  struct Label {
    std::uint32_t text_begin;  // in texts_; the text ends where the next label's begins
    std::int32_t number;
  };
  struct Place {
    NodeId parent = kNoNode;     // of the root too, and where a layer does not show the label
    std::uint32_t position = 0;  // in the parent's list, see Traits::newest_first
  };
  struct Traits {  // of the node in the main layer
    NodeKind kind;
    bool expanded : 1 = false;
    bool sorted : 1 = false;
    bool newest_first : 1 = false;  // the list of children runs from the last one to the first
    bool has_new : 1 = false;  // the thread that starts here
    bool is_new : 1 = false;   // the message
  };

  NodeImage ThreadMessageImage(NodeId node) const;

  static Layer LayerOf(NodeId node) { return static_cast<Layer>(node >> kLabelBits); }
  static Layer LayerOf(NodeKind kind);
  static std::uint32_t LabelOf(NodeId node) { return node & ((1U << kLabelBits) - 1); }
  static NodeId IdOf(Layer layer, std::uint32_t label) { return layer << kLabelBits | label; }

  std::uint32_t NewLabel(NodeKind kind, std::int32_t number, std::string_view text);
  std::string_view LabelText(std::uint32_t label) const;
  NodeKey KeyOf(NodeKind kind, std::uint32_t label) const;
  std::uint32_t HashOf(std::uint32_t label) const;
  bool Shows(Layer layer, std::uint32_t label) const;
  bool IsShown(std::uint32_t label) const;
  void DropUnusedLabels();

  const Place& PlaceOf(NodeId node) const { return places_[LayerOf(node)][LabelOf(node)]; }
  Place& PlaceOf(NodeId node) { return places_[LayerOf(node)][LabelOf(node)]; }
  void SetPlace(NodeId node, const Place& place);
  std::span<const NodeId> Children(NodeId node) const;
  void InsertChild(NodeId parent, Placement placement, NodeId child);
  std::size_t SortedPosition(NodeId parent, NodeId child) const;
  void Renumber(NodeId parent, std::size_t from);
  void Detach(NodeId node);
  std::vector<NodeId> Subtree(NodeId node) const;

  std::vector<Label> labels_;
  std::string texts_;
  std::vector<Traits> traits_;                      // of each label
  std::vector<ChildLists::List> lists_;             // of each label's node in the main layer
  std::array<std::vector<Place>, kLayers> places_;  // of each label; the last ones may be missing
  ChildLists children_;
  KeyIndex index_;  // of the labels that some node shows
};
