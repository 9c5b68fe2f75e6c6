#pragma once

#include <string>

#include "base/cp1251.h"
#include "explorer/node_tree.h"

/// A tree as text, in UTF-8: a line a node with two blanks for each level, its key, and "+" when it is
/// expanded, "*" when it has the picture of a new message, "!" when that of a broken reply.
inline std::string TreeText(const NodeTree& tree, NodeId node = kRootNode, int level = 0) {
  std::string text;
  for (std::size_t row = 0; row < tree.ChildCount(node); ++row) {
    const NodeId child = tree.Child(node, row);
    text.append(static_cast<std::size_t>(level) * 2, ' ') += cp1251::ToUtf8(KeyText(tree.Key(child)));
    if (tree.Expanded(child)) text += " +";
    if (tree.Image(child) == NodeImage::kNewMessage) text += " *";
    if (tree.Image(child) == NodeImage::kBrokenReply) text += " !";
    text += "\n" + TreeText(tree, child, level + 1);
  }
  return text;
}
