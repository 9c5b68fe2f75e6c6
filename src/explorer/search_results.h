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
void AddResultsNode(NodeTree& tree);
/// Adds the node with the messages under it, in their order, and their count in its text. A number
/// found twice has one node.
void AddResultsNode(NodeTree& tree, std::span<const FoundMessage> found);
