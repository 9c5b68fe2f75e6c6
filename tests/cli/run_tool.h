#pragma once

#include <sstream>
#include <string>
#include <vector>

#include "base/file.h"
#include "cli/tool.h"
#include "support/fixed_clock.h"

namespace cli {

struct Outcome {
  int status = 0;
  std::string out, errors;
};

/// The tool as a user calls it, on 15 March 2002.
inline Outcome Kdvbase(const std::vector<std::string>& words) {
  std::ostringstream out, errors;
  DiskFileSystem files;
  const FixedClock clock(2002, 3, 15);
  Outcome outcome;
  outcome.status = RunTool(words, out, errors, files, clock);
  outcome.out = out.str();
  outcome.errors = errors.str();
  return outcome;
}

}  // namespace cli
