#pragma once

#include <string>

#include <QProgressBar>

#include "base/progress.h"
#include "explorer/delete_messages.h"
#include "explorer/search.h"
#include "explorer/ui/message_tree.h"
#include "explorer/ui/tree_model.h"
#include "store/base_edits.h"
#include "ui/dialogs.h"
#include "ui/status_panels.h"

/// What the commands work with; all of it outlives them.
struct MessageCommandNeeds {
  QWidget* window;  // the one that asks
  Dialogs& dialogs;
  MessageBase& base;
  TreeModel* model;
  MessageTree* tree;
  StatusPanels* status;
  QProgressBar* bar;
  Progress& progress;  // shows the percentage and lets the window live
};

/// The commands of the main window that ask the user first: search, e-mail look-up and deletion. They
/// tell by a box what fails. Without an open base they do nothing.
class MessageCommands : private SearchView, private DeletionView {
 public:
  explicit MessageCommands(const MessageCommandNeeds& needs) : needs_(needs), edits_(needs.base) {}

  /// Esc stops it. Only one at a time, and no other command meanwhile.
  void FindText();
  void FindEmails();
  /// Do nothing for a node that is not to be deleted so.
  void Delete(const QModelIndex& node);
  void DeleteWithReplies(const QModelIndex& node);

  /// The text that the results on show were found by, as typed.
  const std::string& searched() const { return searched_; }

 private:
  template <typename Action>
  void Try(Action action);
  /// @return "" when there is nothing to look for
  std::string AskText(const QString& prompt, const QString& title);

  void ClearResults() override;
  void ShowResults(std::span<const FoundMessage> found) override;
  void SetStatus(std::string_view text) override;
  bool AskOkCancel(std::string_view title, std::string_view text) override;
  void RemoveNode(NodeId node) override { needs_.model->RemoveNode(node); }

  const MessageCommandNeeds needs_;
  BaseEdits edits_;
  std::string typed_, searched_;
};
