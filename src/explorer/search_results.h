#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "explorer/node_tree.h"

/// A message that a search has found.
struct FoundMessage {
  std::int32_t Код = 0;
  std::string Тема;
};

/// Adds the node of search results, empty, as the last top node.
NodeId AddResultsNode(NodeTree& tree);

/// Adds the messages under that node, in their order, and their count to its text. A number found twice
/// has one node.
void AddFoundMessages(NodeTree& tree, NodeId results, std::span<const FoundMessage> found);
