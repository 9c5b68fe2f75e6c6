#include "explorer/downloaded_messages.h"

#include <algorithm>

#include "explorer/tree_walk.h"

namespace {

/// Downloaded numbers in rising order.
class Downloaded {
 public:
  explicit Downloaded(std::vector<std::int32_t> numbers) : numbers_(std::move(numbers)) {
    std::sort(numbers_.begin(), numbers_.end());
  }
  const std::vector<std::int32_t>& numbers() const { return numbers_; }
  bool Holds(const NodeTree& tree, NodeId node) const {
    return IsMessage(tree.Kind(node)) && std::binary_search(numbers_.begin(), numbers_.end(), tree.Number(node));
  }

 private:
  std::vector<std::int32_t> numbers_;
};

void OpenDownTo(NodeTree& tree, NodeId node) {
  for (node = tree.Parent(node); IsMessage(tree.Kind(node)); node = tree.Parent(node)) tree.SetExpanded(node, true);
}

// Below a downloaded message nothing is left to do: the one on top of them marks and opens the thread.
void MarkInThread(NodeTree& tree, NodeId node, const Downloaded& downloaded) {
  tree.MarkNewMessage(node);
  if (downloaded.Holds(tree, tree.Parent(node))) return;
  const NodeId start = tree.ThreadStart(node);
  if (start == kNoNode) return;
  tree.MarkNew(start);
  if (start != node && !downloaded.Holds(tree, start)) OpenDownTo(tree, node);
}

NodeId First(const NodeTree& tree, const Downloaded& downloaded) {
  if (downloaded.numbers().empty()) return kNoNode;
  NodeId node = kRootNode;
  do node = NodeAfter(tree, node);
  while (node != kNoNode && !downloaded.Holds(tree, node));
  return node;
}

}  // namespace

NodeId MarkDownloaded(NodeTree& tree, std::vector<std::int32_t> numbers) {
  const Downloaded downloaded(std::move(numbers));
  for (const std::int32_t number : downloaded.numbers())
    if (const NodeId node = tree.Find(NodeKind::kThreadMessage, number); node != kNoNode)
      MarkInThread(tree, node, downloaded);
  return First(tree, downloaded);
}
