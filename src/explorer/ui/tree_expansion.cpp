#include "explorer/ui/tree_expansion.h"

#include <QKeyEvent>
#include <QScopedValueRollback>
#include <QTreeView>

namespace {

// A view lays out what is open by recursion; no chain of replies may exhaust its stack.
constexpr std::size_t kDeepestLevel = 1000;
// So many nodes are opened one by one; for more the view lays itself out once.
constexpr std::size_t kFewNodes = 64;

struct NodeAtLevel {
  NodeId node;
  std::size_t level;
};

std::size_t LevelOf(const NodeTree& tree, NodeId node) {
  std::size_t level = 0;
  for (; node != kRootNode; node = tree.Parent(node)) ++level;
  return level;
}

/// Calls `visit` for everything under `top` whose parents it answered with true, a level at a time.
template <typename Visit>
void VisitBelow(const NodeTree& tree, NodeId top, Visit visit) {
  std::vector<NodeAtLevel> open{{top, LevelOf(tree, top)}};
  for (std::size_t i = 0; i < open.size(); ++i) {
    const auto [node, level] = open[i];
    if (level >= kDeepestLevel) continue;
    for (std::size_t row = 0; row < tree.ChildCount(node); ++row) {
      const NodeId child = tree.Child(node, row);
      if (tree.ChildCount(child) > 0 && visit(child)) open.push_back({child, level + 1});
    }
  }
}

}  // namespace

NodeId NodeInReach(const NodeTree& tree, NodeId node) {
  for (std::size_t level = LevelOf(tree, node); level > kDeepestLevel; --level) node = tree.Parent(node);
  return node;
}

TreeExpansion::TreeExpansion(QTreeView* view, TreeModel* model) : QObject(view), view_(view), model_(model) {
  connect(view, &QTreeView::expanded, this, &TreeExpansion::Expanded);
  connect(view, &QTreeView::collapsed, this,
          [this](const QModelIndex& index) { model_->SetExpanded(model_->NodeOf(index), false); });
  connect(model, &QAbstractItemModel::modelReset, this, [this] { Restore(kRootNode); });
  view->installEventFilter(this);
}

void TreeExpansion::ExpandAll(const QModelIndex& index) {
  const NodeId top = model_->NodeOf(index);
  VisitBelow(model_->Tree(), top, [this](NodeId node) {
    model_->SetExpanded(node, true);
    return true;
  });
  if (top == kRootNode || view_->isExpanded(index))
    Restore(top);
  else
    view_->expand(index);
}

bool TreeExpansion::eventFilter(QObject* watched, QEvent* event) {
  if (watched != view_ || event->type() != QEvent::KeyPress) return false;
  if (static_cast<QKeyEvent*>(event)->key() != Qt::Key_Asterisk || !view_->currentIndex().isValid()) return false;
  ExpandAll(view_->currentIndex());
  return true;
}

void TreeExpansion::Expanded(const QModelIndex& index) {
  if (opening_) return;
  model_->SetExpanded(model_->NodeOf(index), true);
  Restore(model_->NodeOf(index));
}

void TreeExpansion::Restore(NodeId top) { Open(NodesToOpen(top)); }

std::vector<NodeId> TreeExpansion::NodesToOpen(NodeId top) const {
  std::vector<NodeId> nodes;
  VisitBelow(model_->Tree(), top, [&](NodeId node) {
    if (!model_->Tree().Expanded(node)) return false;
    if (!view_->isExpanded(model_->IndexOf(node))) nodes.push_back(node);
    return true;
  });
  return nodes;
}

void TreeExpansion::Open(const std::vector<NodeId>& nodes) {
  const QScopedValueRollback<bool> opening(opening_, true);
  // Once a layout is due the view only notes what is open; setting the root again makes it due.
  if (nodes.size() > kFewNodes) view_->setRootIndex(view_->rootIndex());
  for (const NodeId node : nodes) view_->expand(model_->IndexOf(node));
}
