#pragma once

#include "explorer/node_tree.h"

/// The node below a node when every branch stands open; kNoNode behind the last one. From kRootNode: the first.
NodeId NodeAfter(const NodeTree& tree, NodeId node);
/// The node below a node and everything under it; kNoNode behind the last one.
NodeId NodeAfterSubtree(const NodeTree& tree, NodeId node);
/// The node above it; kRootNode above the first one. From kRootNode: the last.
NodeId NodeBefore(const NodeTree& tree, NodeId node);
