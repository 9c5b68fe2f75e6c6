#pragma once

#include <QUrl>

class KDVExplorer;

/// The windows and programs that the main window starts. It names none of them: they stand in folders
/// of their own, and tests put others in their place. Every window is modal over the main window and
/// gone when the call returns. What a program leaves out does nothing; its button is disabled.
class OtherWindows {
 public:
  virtual ~OtherWindows() = default;
  /// The open-base dialog. When the user chooses a base, it tells explorer.LoadLater.
  /// @param days_in_focus  begin with the number of days to load
  virtual void OpenBaseDialog(KDVExplorer& explorer, bool days_in_focus) = 0;
  /// The download window of the open base's forum, or a message why there is none.
  virtual void Download(KDVExplorer&) {}
  virtual void Properties(KDVExplorer&) {}
  virtual void About(KDVExplorer&) {}
  /// Writes the thread of the chosen message to a file.
  virtual void Export(KDVExplorer&) {}
  /// Makes a base and, when one was made, tells explorer.LoadLater.
  virtual void NewBase(KDVExplorer&) {}
  virtual void ImportPages(KDVExplorer&) {}
  virtual void CompactBase(KDVExplorer&) {}
  virtual void CheckBase(KDVExplorer&) {}
  /// Shows an address that a message leads to, in the user's browser or mail program.
  virtual void OpenLink(const QUrl& target) = 0;
};
