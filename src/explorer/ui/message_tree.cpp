#include "explorer/ui/message_tree.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

namespace {
constexpr int kIconSize = 16;         // pixels
constexpr int kEmptyTextWidth = 420;  // pixels, the widest line of the sentence
}  // namespace

MessageTree::MessageTree(QWidget* parent) : QTreeView(parent) {
  setHeaderHidden(true);
  setUniformRowHeights(true);
  setEditTriggers(NoEditTriggers);
  setIconSize({kIconSize, kIconSize});
  // Deep threads are read by scrolling sideways; only the rows in sight are measured.
  header()->setStretchLastSection(false);
  header()->setSectionResizeMode(QHeaderView::ResizeToContents);
  header()->setResizeContentsPrecision(0);
}

void MessageTree::SetEmptyText(const QString& text) {
  empty_text_ = text;
  setAccessibleDescription(text);
  viewport()->update();
}

void MessageTree::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  QTreeView::currentChanged(current, previous);
  if (current.isValid()) emit NodeChosen(current);
}

void MessageTree::mousePressEvent(QMouseEvent* event) {
  const QPersistentModelIndex before = currentIndex();
  QTreeView::mousePressEvent(event);
  const QModelIndex hit = indexAt(event->pos());
  if (hit.isValid() && hit == before) emit NodeChosen(hit);
}

void MessageTree::mouseDoubleClickEvent(QMouseEvent* event) {
  QTreeView::mouseDoubleClickEvent(event);
  if (const QModelIndex hit = indexAt(event->pos()); hit.isValid()) emit NodeOpened(hit);
}

void MessageTree::keyPressEvent(QKeyEvent* event) {
  const bool is_enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (!is_enter || !currentIndex().isValid()) return QTreeView::keyPressEvent(event);
  expand(currentIndex());
  emit NodeOpened(currentIndex());
}

// Getting the focus chooses nothing: only the user does.
void MessageTree::focusInEvent(QFocusEvent* event) {
  if (currentIndex().isValid()) return QTreeView::focusInEvent(event);
  QAbstractScrollArea::focusInEvent(event);
  viewport()->update();
}

void MessageTree::contextMenuEvent(QContextMenuEvent* event) {
  const bool by_mouse = event->reason() == QContextMenuEvent::Mouse;
  const QModelIndex node = by_mouse ? indexAt(event->pos()) : currentIndex();
  if (!node.isValid()) return;
  const QPoint place = by_mouse ? event->pos() : visualRect(node).bottomLeft();
  emit MenuWanted(node, viewport()->mapToGlobal(place));
}

// A row reaches to the right border, so that it can be clicked beside its text.
void MessageTree::resizeEvent(QResizeEvent* event) {
  header()->setMinimumSectionSize(viewport()->width());
  QTreeView::resizeEvent(event);
}

void MessageTree::paintEvent(QPaintEvent* event) {
  QTreeView::paintEvent(event);
  if (model() != nullptr && model()->rowCount() > 0) return;
  QPainter painter(viewport());
  QRect room = viewport()->rect().adjusted(12, 12, -12, -12);
  if (room.width() > kEmptyTextWidth)
    room = QRect(room.center().x() - kEmptyTextWidth / 2, room.top(), kEmptyTextWidth, room.height());
  QColor quiet = palette().color(QPalette::Text);
  quiet.setAlphaF(0.7F);
  painter.setPen(quiet);
  painter.drawText(room, Qt::AlignCenter | Qt::TextWordWrap, empty_text_);
}
