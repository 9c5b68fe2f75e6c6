#pragma once

#include <QString>

#include "base/clock.h"
#include "config/settings_store.h"
#include "export/xml_export.h"
#include "store/message_base.h"
#include "ui/dialogs.h"

/// What the command works with; all of it outlives it.
struct ExportCommandNeeds {
  FileSystem& files;
  const Clock& clock;
  const mdl_AZ::ForumIni& ini;
  const mdl_AZ::ForumLog& log;
  const SettingsStore& settings;
  Dialogs& dialogs;
  Shell& shell;
};

/// The command that writes the thread of the chosen message into a file of the program folder.
class ExportCommand {
 public:
  explicit ExportCommand(const ExportCommandNeeds& needs) : needs_(needs) {}

  /// A message that the tree by thread lacks, because it is older than the days on show or that tree is not
  /// built, is looked up in the whole archive. What goes wrong is told by a box.
  /// @param window    the one that tells
  /// @param tree      the tree on show
  /// @param selected  a node of it; kNoNode when none is chosen
  /// @return what the first panel of the status bar says then; empty when nothing was written
  QString ExportMSG_Click(QWidget* window, MessageBase& base, const NodeTree& tree, NodeId selected);

 private:
  ExportOutcome Export(MessageBase& base, const NodeTree& tree, std::int32_t number);

  const ExportCommandNeeds needs_;
};
