#pragma once

#include <QTreeView>

/// The tree of messages. Choosing a node is one thing, whether by mouse or by keyboard.
class MessageTree : public QTreeView {
  Q_OBJECT
 public:
  explicit MessageTree(QWidget* parent = nullptr);
  /// The sentence that stands in the middle while the tree is empty.
  void SetEmptyText(const QString& text);

 signals:
  /// A node became the current one, or was clicked again.
  void NodeChosen(const QModelIndex& node);
  /// A node was clicked twice, or the Enter key was pressed on it, which shows what is under it.
  void NodeOpened(const QModelIndex& node);
  void MenuWanted(const QModelIndex& node, const QPoint& screen_position);

 protected:
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  QString empty_text_;
};
