#include "explorer/search_results.h"

#include "base/cat.h"
#include "base/ru_literal.h"

namespace {

/// The label of the message's other nodes when it says the same, so that the text is kept once.
NodeLabel LabelFor(NodeTree& tree, const FoundMessage& found) {
  for (const NodeKind kind : {NodeKind::kThreadMessage, NodeKind::kDateMessage, NodeKind::kAuthorMessage}) {
    const NodeId node = tree.Find(kind, found.Код);
    if (node != kNoNode && tree.Text(node) == found.Тема) return tree.Label(node);
  }
  return tree.AddLabel(found.Код, found.Тема);
}

}  // namespace

NodeId AddResultsNode(NodeTree& tree) {
  return tree.Add(kRootNode, Placement::kLastChild, NodeKind::kResults, 0, "Результаты поиска"_ru, NodeImage::kResults);
}

void AddFoundMessages(NodeTree& tree, NodeId results, std::span<const FoundMessage> found) {
  for (const FoundMessage& message : found)
    if (tree.Find(NodeKind::kFoundMessage, message.Код) == kNoNode)
      tree.Add(results, Placement::kLastChild, NodeKind::kFoundMessage, LabelFor(tree, message),
               NodeImage::kFoundMessage);
  tree.SetText(results, Cat("Результаты поиска : "_ru, found.size(), " записей"_ru));
}
