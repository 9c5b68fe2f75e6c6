#include "explorer/ui/reading.h"

#include <QKeyEvent>
#include <QScrollBar>

#include "explorer/tree_walk.h"
#include "explorer/ui/tree_expansion.h"

Reading::Reading(MessageTree* tree, TreeModel* model, MessageBody* body)
    : QObject(tree), tree_(tree), model_(model), body_(body) {
  tree_->installEventFilter(this);
  body_->installEventFilter(this);
}

void Reading::Parent() {
  const NodeId parent = model_->Tree().Parent(Current());
  if (parent != kNoNode && parent != kRootNode) GoTo(parent);
}

void Reading::NextNew() {
  const NodeTree& nodes = model_->Tree();
  const NodeId from = Current();
  NodeId node = from;
  do {
    node = NodeAfter(nodes, node);
    if (node == kNoNode) node = kRootNode;
    if (nodes.IsNewMessage(node)) return GoTo(node);
  } while (node != from);
}

void Reading::GoTo(NodeId node) {
  if (node == kNoNode) return;
  const QModelIndex index = model_->IndexOf(NodeInReach(model_->Tree(), node));
  if (!index.isValid()) return;
  for (QModelIndex above = index.parent(); above.isValid(); above = above.parent()) tree_->expand(above);
  tree_->setCurrentIndex(index);
  tree_->scrollTo(index);
}

NodeId Reading::NeighbourMessage(NodeId from, Direction direction) const {
  const NodeTree& nodes = model_->Tree();
  NodeId node = from;
  do node = direction == Direction::kForward ? NodeAfter(nodes, node) : NodeBefore(nodes, node);
  while (node != kNoNode && node != kRootNode && !IsMessage(nodes.Kind(node)));
  return node;
}

void Reading::ReadOn(Direction direction) {
  QScrollBar* text = body_->verticalScrollBar();
  const bool forward = direction == Direction::kForward;
  if (text->value() != (forward ? text->maximum() : text->minimum()))
    text->triggerAction(forward ? QAbstractSlider::SliderPageStepAdd : QAbstractSlider::SliderPageStepSub);
  else
    forward ? Next() : Previous();
}

bool Reading::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return QObject::eventFilter(watched, event);
  const auto* key = static_cast<QKeyEvent*>(event);
  const bool shift = key->modifiers() == Qt::ShiftModifier;
  if (key->key() != Qt::Key_Space || (!shift && key->modifiers() != Qt::NoModifier)) return false;
  ReadOn(shift ? Direction::kBack : Direction::kForward);
  return true;
}
