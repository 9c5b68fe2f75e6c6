#pragma once

#include <cstdint>
#include <vector>

#include "explorer/node_tree.h"

/// Marks messages that were just downloaded as new, whatever their date. A thread that went on stands open down to
/// them; one that is new itself stays as it is. Messages that the tree does not show are passed over.
/// @param numbers  in any order
/// @return the first of them as the tree stands, kNoNode when it shows none
NodeId MarkDownloaded(NodeTree& tree, std::vector<std::int32_t> numbers);
