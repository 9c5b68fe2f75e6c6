#pragma once

#include <vector>

#include <QObject>

#include "explorer/ui/tree_model.h"

class QTreeView;

/// The node itself, or, in a chain of replies that is too deep for a view to stand open, the one above it that
/// a view still shows.
NodeId NodeInReach(const NodeTree& tree, NodeId node);

/// Keeps what stands open in a view and what the tree says in step. A view pays for every node that it
/// knows to be open, so it hears of one only when the nodes above it are open: a whole archive with all
/// threads open costs nothing until it is looked at.
class TreeExpansion : public QObject {
  Q_OBJECT
 public:
  /// Watches `view`, which shows `model` already, and becomes its child.
  TreeExpansion(QTreeView* view, TreeModel* model);

  /// Opens a node and everything under it, as "*" on the keyboard does.
  void ExpandAll(const QModelIndex& index);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Expanded(const QModelIndex& index);
  void Restore(NodeId top);
  std::vector<NodeId> NodesToOpen(NodeId top) const;
  void Open(const std::vector<NodeId>& nodes);

  QTreeView* view_;
  TreeModel* model_;
  bool opening_ = false;
};
