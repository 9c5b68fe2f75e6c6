#pragma once

#include <span>

#include <QAbstractItemModel>

#include "explorer/node_tree.h"
#include "explorer/search_results.h"

/// Shows a NodeTree. An index holds the node's id and nothing else, so the model costs no memory a node.
class TreeModel : public QAbstractItemModel {
  Q_OBJECT
 public:
  using QAbstractItemModel::QAbstractItemModel;

  const NodeTree& Tree() const { return tree_; }
  /// The node of an index; kRootNode of an invalid one.
  NodeId NodeOf(const QModelIndex& index) const;
  /// Invalid for kRootNode and kNoNode.
  QModelIndex IndexOf(NodeId node) const;

  /// Shows another tree from now on.
  void SetTree(NodeTree tree);
  /// Removes a node and everything under it.
  void RemoveNode(NodeId node);
  /// Replaces the node of search results by an empty one.
  void ClearResults();
  /// Replaces the node of search results by one that holds these.
  void ShowResults(std::span<const FoundMessage> found);
  /// Notes that a node stands open, or shall when it comes into sight.
  void SetExpanded(NodeId node, bool expanded) { tree_.SetExpanded(node, expanded); }

  QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
  QModelIndex parent(const QModelIndex& child) const override;
  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  bool hasChildren(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 private:
  QString TextOf(NodeId node) const;
  QString AccessibleTextOf(NodeId node) const;

  NodeTree tree_;
};
