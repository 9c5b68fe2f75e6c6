#pragma once

#include <string>

/// The desktop's programs. Paths are the file system's own bytes; nobody waits for what is started.
class Shell {
 public:
  virtual ~Shell() = default;
  /// The command that shows files like this one in the user's browser; a NUL ends it. Empty when there
  /// is none, or no such file.
  virtual std::string FindExecutable(const std::string& path) = 0;
  /// Starts a command with the path as its last argument. @throws Error 53 when it cannot be started
  virtual void Start(const std::string& command, const std::string& path) = 0;
  /// Has the desktop open the file in whatever it opens such files with. @return whether it took it
  virtual bool Open(const std::string& path) = 0;
};

namespace mdl_AZ {

/// The command that opens the file in a browser window of its own; empty when there is none.
std::string BrowserFor(Shell& shell, const std::string& path);

}  // namespace mdl_AZ
