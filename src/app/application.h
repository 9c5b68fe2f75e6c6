#pragma once

#include <string>

#include "app/command_line.h"
#include "base/clock.h"
#include "base/file.h"
#include "config/mdl_AZ.h"
#include "config/ui/settings_store_qt.h"
#include "explorer/ui/KDVExplorer.h"
#include "ui/dialogs.h"

/// Puts the program together: the disk, the clock and the settings of this machine, the main window,
/// and the windows that it starts.
class Application : private OtherWindows {
 public:
  explicit Application(const CommandLine& command_line);
  /// Shows the main window; returns when the program ends. @return the exit status
  int Run();

 private:
  void OpenBaseDialog(KDVExplorer& explorer, bool days_in_focus) override;
  void OpenLink(const QUrl& target) override;

  DiskFileSystem files_;
  SystemClock clock_;
  const mdl_AZ::ForumIni ini_;
  const mdl_AZ::ForumLog log_;
  SettingsStoreQt settings_;
  QtDialogs dialogs_;
  KDVExplorer explorer_;
};
