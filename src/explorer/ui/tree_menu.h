#pragma once

#include <QMenu>

/// The pop-up menu of the tree. The right button has made the node under it the current one.
class TreeMenu : public QMenu {
  Q_OBJECT
 public:
  /// @param tree  gets the shortcuts, which count only there
  TreeMenu(QWidget* tree, QWidget* parent);

  /// Both are disabled until somebody says otherwise.
  void SetDeletable(bool message, bool with_replies);
  /// Puts commands of the menu bar at the end, below a line.
  void AddShared(const QList<QAction*>& commands);

 signals:
  void DeleteChosen();
  void DeleteThreadChosen();

 private:
  QAction *mnuDelete_, *mnuDeleteThread_;
};
