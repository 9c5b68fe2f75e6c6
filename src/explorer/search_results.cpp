#include "explorer/search_results.h"

#include "base/cat.h"
#include "base/ru_literal.h"

namespace {

constexpr std::string_view kResultsText = "Результаты поиска"_ru;

NodeId AddResultsNode(NodeTree& tree, std::string_view text) {
  return tree.Add(kRootNode, Placement::kLastChild, NodeKind::kResults, 0, text);
}

}  // namespace

void AddResultsNode(NodeTree& tree) { AddResultsNode(tree, kResultsText); }

void AddResultsNode(NodeTree& tree, std::span<const FoundMessage> found) {
  const NodeId results = AddResultsNode(tree, Cat(kResultsText, " : ", found.size(), " записей"_ru));
  for (const FoundMessage& message : found)
    if (tree.Find(NodeKind::kFoundMessage, message.Код) == kNoNode)
      tree.Add(results, Placement::kLastChild, NodeKind::kFoundMessage, message.Код, message.Тема);
}
