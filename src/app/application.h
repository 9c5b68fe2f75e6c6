#pragma once

#include <optional>
#include <string>

#include "app/command_line.h"
#include "base/clock.h"
#include "base/file.h"
#include "config/mdl_AZ.h"
#include "config/program_folder.h"
#include "config/ui/settings_store_qt.h"
#include "explorer/ui/KDVExplorer.h"
#include "export/ui/desktop_shell.h"
#include "ui/dialogs.h"
#include "upkeep/ui/upkeep_needs.h"

/// Puts the program together: the disk, the clock and the settings of this machine, the main window,
/// and the windows that it starts.
class Application : private OtherWindows {
 public:
  explicit Application(const CommandLine& command_line);
  /// Shows the main window; returns when the program ends. @return the exit status
  int Run();

 private:
  void OpenBaseDialog(KDVExplorer& explorer, bool days_in_focus) override;
  void Download(KDVExplorer& explorer) override;
  void Properties(KDVExplorer& explorer) override;
  void About(KDVExplorer& explorer) override;
  void Export(KDVExplorer& explorer) override;
  void NewBase(KDVExplorer& explorer) override;
  void ImportPages(KDVExplorer& explorer) override;
  void CompactBase(KDVExplorer& explorer) override;
  void CheckBase(KDVExplorer& explorer) override;
  void OpenLink(const QUrl& target) override;

  /// Asks what base to make. @return its path; none when none was made
  std::optional<std::string> MakeBase(const std::string& forum, QWidget* parent);
  UpkeepNeeds ForUpkeep() { return {files_, clock_, ini_, dialogs_}; }

  DiskFileSystem files_;
  SystemClock clock_;
  const program_folder::Places places_;
  const mdl_AZ::ForumIni ini_;
  const mdl_AZ::ForumLog log_;
  SettingsStoreQt settings_;
  QtDialogs dialogs_;
  DesktopShell shell_;
  KDVExplorer explorer_;
};
