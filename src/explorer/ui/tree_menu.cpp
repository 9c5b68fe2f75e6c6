#include "explorer/ui/tree_menu.h"

#include "ui/icons.h"

TreeMenu::TreeMenu(QWidget* tree, QWidget* parent) : QMenu(parent) {
  const auto add = [this](const char* name, IconName icon, const QString& text) {
    QAction* entry = addAction(Icon(icon), text);
    entry->setObjectName(QString::fromLatin1(name));
    return entry;
  };
  mnuDelete_ = add("mnuDelete", IconName::kDelete, QStringLiteral("Удалить сообщение"));
  mnuDeleteThread_ = add("mnuDeleteThread", IconName::kDeleteThread, QStringLiteral("Удалить вместе с ответами"));
  mnuDelete_->setShortcut(QKeySequence::Delete);
  mnuDelete_->setShortcutContext(Qt::WidgetShortcut);
  tree->addAction(mnuDelete_);
  SetDeletable(false, false);
  connect(mnuDelete_, &QAction::triggered, this, &TreeMenu::DeleteChosen);
  connect(mnuDeleteThread_, &QAction::triggered, this, &TreeMenu::DeleteThreadChosen);
}

void TreeMenu::SetDeletable(bool message, bool with_replies) {
  mnuDelete_->setEnabled(message);
  mnuDeleteThread_->setEnabled(with_replies);
}

void TreeMenu::AddShared(const QList<QAction*>& commands) {
  addSeparator();
  addActions(commands);
}
