#pragma once

#include <functional>
#include <memory>
#include <ostream>
#include <span>
#include <string>

#include "base/clock.h"
#include "base/file.h"
#include "cli/network.h"

namespace cli {

/// For commands that fetch pages; makes null when there is no network.
using NetworkFactory = std::function<std::unique_ptr<Network>()>;

/// Runs the tool with the words of its command line, the program's name left out; everything is UTF-8.
/// @param on_terminal  does somebody look at `out`?
/// @return the exit status: 0 done, 1 failed (the reason on `errors`), 2 misused, 3 stopped by the user
int RunTool(std::span<const std::string> words, std::ostream& out, std::ostream& errors, FileSystem& files,
            const Clock& clock, const NetworkFactory& make_network = {}, bool on_terminal = false);

}  // namespace cli
