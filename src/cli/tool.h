#pragma once

#include <ostream>
#include <span>
#include <string>

#include "base/clock.h"
#include "base/file.h"

namespace cli {

/// Runs the tool with the words of its command line, the program's name left out; everything is UTF-8.
/// @return the exit status: 0 done, 1 failed (the reason on `errors`), 2 misused
int RunTool(std::span<const std::string> words, std::ostream& out, std::ostream& errors, FileSystem& files,
            const Clock& clock);

}  // namespace cli
