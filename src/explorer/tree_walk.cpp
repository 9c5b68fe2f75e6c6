#include "explorer/tree_walk.h"

NodeId NodeAfter(const NodeTree& tree, NodeId node) {
  return tree.ChildCount(node) > 0 ? tree.Child(node, 0) : NodeAfterSubtree(tree, node);
}

NodeId NodeAfterSubtree(const NodeTree& tree, NodeId node) {
  while (node != kRootNode) {
    const NodeId parent = tree.Parent(node);
    const std::size_t next = tree.Row(node) + 1;
    if (next < tree.ChildCount(parent)) return tree.Child(parent, next);
    node = parent;
  }
  return kNoNode;
}

NodeId NodeBefore(const NodeTree& tree, NodeId node) {
  if (node != kRootNode) {
    const std::size_t row = tree.Row(node);
    if (row == 0) return tree.Parent(node);
    node = tree.Child(tree.Parent(node), row - 1);
  }
  while (const std::size_t children = tree.ChildCount(node)) node = tree.Child(node, children - 1);
  return node;
}
