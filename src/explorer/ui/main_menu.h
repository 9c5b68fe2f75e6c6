#pragma once

#include <QMenuBar>
#include <QStringList>

#include "explorer/ui/tool_bar.h"

/// The commands of the menu bar that are no buttons of the tool bar.
enum class MenuCommand {
  kNewBase,
  kImportPages,
  kCompact,
  kCheck,
  kQuit,
  kNextMessage,
  kPreviousMessage,
  kParentMessage,
  kNextNew,
  kCopyMessage,
  kCopyNumber,
  kExpandBranch,
  kCollapseBranch,
  kLargerText,
  kSmallerText,
  kUsualText,
};

/// The menu bar. What has a button in the tool bar or stands in the tree's pop-up menu is the same action
/// here, so that it is enabled and disabled once.
class MainMenu : public QMenuBar {
  Q_OBJECT
 public:
  /// @param shared  owns the actions that the menu shares, found by their object names; the tool bar's and the tree's
  explicit MainMenu(const QWidget* shared, QWidget* parent);

  /// What needs a base, and what needs a message on show, is disabled until there is one.
  void SetAvailable(bool base_open, bool message_shown);
  /// @param paths  of bases opened lately, the latest first
  void SetRecent(const QStringList& paths);

 signals:
  void Chosen(MenuCommand command);
  void RecentChosen(const QString& path);

 private:
  QMenu* recent_ = nullptr;
};
