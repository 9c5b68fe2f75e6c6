#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <QMainWindow>
#include <QProgressBar>

#include "base/clock.h"
#include "base/progress.h"
#include "config/mdl_AZ.h"
#include "config/settings_store.h"
#include "explorer/tree_builder.h"
#include "explorer/ui/main_menu.h"
#include "explorer/ui/message_commands.h"
#include "explorer/ui/message_pane.h"
#include "explorer/ui/message_tree.h"
#include "explorer/ui/other_windows.h"
#include "explorer/ui/percent_splitter.h"
#include "explorer/ui/reading.h"
#include "explorer/ui/tool_bar.h"
#include "explorer/ui/tree_expansion.h"
#include "explorer/ui/tree_menu.h"
#include "explorer/ui/tree_model.h"
#include "store/message_base.h"
#include "ui/controls.h"
#include "ui/status_panels.h"

/// What the main window works with; all of it outlives the window.
struct ExplorerNeeds {
  FileSystem& files;
  const Clock& clock;
  const mdl_AZ::ForumIni& ini;
  SettingsStore& settings;
  Dialogs& dialogs;
  OtherWindows& windows;
};

/// The main window: the open base as a tree, the chosen message below it, and the commands.
class KDVExplorer : public QMainWindow, private Progress, private TreeTrouble {
  Q_OBJECT
 public:
  explicit KDVExplorer(const ExplorerNeeds& needs);

  /// Puts the window into the state of a start: nothing open, the open-base dialog to come with the
  /// first activation.
  void Form_Load();
  /// Has a base opened and its tree built when the window is activated next.
  /// @param path  the file system's own bytes
  void LoadLater(std::string path);
  /// For a base that was named at the start: its load takes the place of the open-base dialog.
  void LoadInsteadOfDialog(std::string path);
  /// Opens a base at once, unless a command is under way.
  void Load(std::string path);

  /// Makes a file the open base and shows its name, or tells that it cannot be opened.
  /// @return whether it could
  bool OpenBase(const std::string& path);
  /// Builds the tree of the open base anew; without one does nothing.
  void SR();
  /// After a download: builds the tree anew with these messages marked as new and shows the first of them, or the
  /// one that the user wants to read. Where neither is given, all stays as it is.
  void ShowDownloaded(const std::vector<std::int32_t>& stored, std::optional<std::int32_t> to_read);

  MessageBase& Base() { return base_; }
  /// The tree on show, and its chosen node; kRootNode when none is chosen.
  const NodeTree& Tree() const { return model_->Tree(); }
  NodeId ChosenNode() const { return model_->NodeOf(tree_->currentIndex()); }
  /// Tells in the first panel of the status bar.
  void SetStatus(const QString& text);
  /// The number of the message on show, or of the last one that was; 0 before the first.
  std::int32_t msgKod() const { return msgKod_; }
  /// The size of the message text. @param points  0 = the size of the desktop's own font
  void SetTextSize(double points) { pane_->body->SetTextSize(points); }

 protected:
  bool event(QEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  void AddControls();
  void AddMenus();
  void ConnectControls();
  void Form_Activate();
  void LoadPendingBase();
  void ShowOpenDialog(bool days_in_focus);
  void tBar_ButtonClick(const QString& tag, bool archive);
  void tBar_ButtonMenuClick(const QString& tag);
  void Run(void (MessageCommands::*command)());
  void RunOnNode(void (MessageCommands::*command)(const QModelIndex&));
  void Do(MenuCommand command);
  void DoOnMessages(MenuCommand command);
  void UpdateCommands();
  void ShowRecentBases();
  void Show(const MessageView& view, const QString& found);
  void tree_NodeClick(const QModelIndex& index);
  MessageView ViewOfNode(NodeId node);
  void tree_NodeOpened(const QModelIndex& index);
  void TellOlder();
  NodeId NodeOfMessage(std::int32_t number) const;
  NodeId RebuildTree(const std::vector<std::int32_t>& downloaded = {});
  NodeId BuildTreeOfBase(const std::vector<std::int32_t>& downloaded = {});
  BuiltTree ReadTree();
  void ClearTree();
  void SetCaption(const QString& caption);
  void TellWithNumber(const Error& error);

  bool Advance(int percent) override;
  void Tell(std::string_view trouble) override;

  const ExplorerNeeds needs_;
  MessageBase base_;
  std::optional<std::string> pending_load_;
  bool first_activation_ = true;
  bool busy_ = false;  // a base is opened, a tree built or a search under way: no other command runs
  bool message_shown_ = false;
  bool closing_ = false;  // the user closed the window meanwhile
  std::int32_t msgKod_ = 0;

  MainMenu* menu_;
  ToolBar* tBar_;
  StatusPanels* statBarTop_;
  TreeModel* model_;
  MessageTree* tree_;
  TreeExpansion* expansion_;
  MessagePane* pane_;
  Reading* reading_;
  PercentSplitter* imgSplitter_;
  StatusPanels* StatBar_;
  QProgressBar* Progress_;
  TreeMenu* tree_menu_;
  std::unique_ptr<MessageCommands> commands_;
};
