#pragma once

#include <QObject>

#include "explorer/ui/message_body.h"
#include "explorer/ui/message_tree.h"
#include "explorer/ui/tree_model.h"

/// Reading by keyboard: from message to message in the order of the tree, closed branches included. The
/// space bar, in the tree and in the text, scrolls the text and goes on to the next message at its end; with
/// Shift back. A step that leads nowhere does nothing.
class Reading : public QObject {
  Q_OBJECT
 public:
  /// All three outlive it; it becomes the tree's child.
  Reading(MessageTree* tree, TreeModel* model, MessageBody* body);

  void Next() { GoTo(NeighbourMessage(Current(), Direction::kForward)); }
  void Previous() { GoTo(NeighbourMessage(Current(), Direction::kBack)); }
  void Parent();
  /// The next message that tree building found to be new; from the last one on to the first.
  void NextNew();
  /// Makes a node the current one, its branch open, in sight.
  void GoTo(NodeId node);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  enum class Direction { kForward, kBack };

  NodeId Current() const { return model_->NodeOf(tree_->currentIndex()); }
  NodeId NeighbourMessage(NodeId from, Direction direction) const;
  void ReadOn(Direction direction);

  MessageTree* tree_;
  TreeModel* model_;
  MessageBody* body_;
};
