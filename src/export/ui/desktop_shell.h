#pragma once

#include "export/shell.h"

/// The programs of the desktop that this runs on.
class DesktopShell : public Shell {
 public:
  /// The browser, though the file may be of another type: the first entry of the variable BROWSER when it
  /// names a program, else what the desktop opens web pages with.
  std::string FindExecutable(const std::string& path) override;
  void Start(const std::string& command, const std::string& path) override;
  bool Open(const std::string& path) override;
};
