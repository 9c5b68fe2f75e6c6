#pragma once

#include <string_view>

#include "explorer/node_tree.h"
#include "store/message_edits.h"

/// The window in which messages are deleted.
class DeletionView {
 public:
  virtual ~DeletionView() = default;
  /// A box with a question mark. @return true for OK
  virtual bool AskOkCancel(std::string_view title, std::string_view text) = 0;
  /// Takes a node and everything under it out of the tree.
  virtual void RemoveNode(NodeId node) = 0;
  /// Into the first panel of the status bar.
  virtual void SetStatus(std::string_view text) = 0;
};

/// Is this a message of the thread grouping?
bool CanDelete(const NodeTree& tree, NodeId node);
/// Does it have replies as well?
bool CanDeleteWithReplies(const NodeTree& tree, NodeId node);

// Both ask the user first, and delete from the base before they change the tree: when the base refuses,
// its Error comes through, and base and tree are as they were.

/// Deletes a message that CanDelete. Its replies leave the tree and stay in the base; with the next
/// build they stand among the broken threads.
void DeleteMessage(const NodeTree& tree, NodeId node, MessageEdits& edits, DeletionView& view);
/// Deletes a message and all that stands under it in the tree. Replies that the tree does not hold,
/// because they are older than the days loaded, stay in the base.
void DeleteWithReplies(const NodeTree& tree, NodeId node, MessageEdits& edits, DeletionView& view);
