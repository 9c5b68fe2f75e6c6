#pragma once

#include <span>
#include <stdexcept>
#include <string>

/// What the program is told when it is started. Paths are the file system's own bytes.
struct CommandLine {
  std::string data_dir;  // --data-dir=PATH; empty when not given
  std::string base;      // the base to open at once; empty when not given
  bool help = false;
  bool version = false;
};

/// The arguments are no command line of this program; what() says why, in UTF-8.
class UsageError : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// @param arguments  without the program's own name. @throws UsageError
CommandLine ParseCommandLine(std::span<const char* const> arguments);

/// How the program is started, in UTF-8.
extern const char kUsage[];
