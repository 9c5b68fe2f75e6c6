#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "base/progress.h"
#include "jet/database.h"

namespace jet {

enum class Severity {
  kWarning,  // wasted room, wrong statistics: nothing is lost, writing goes on
  kError,    // something is damaged
};

struct Finding {
  Severity severity = Severity::kError;
  std::string text;  // Russian, Windows-1251, names the place
};

struct CheckResult {
  static constexpr std::size_t kMostFindings = 1000;

  std::vector<Finding> findings;           // in the order found, the first kMostFindings of each severity
  std::uint64_t errors = 0, warnings = 0;  // all of them
  bool complete = true;                    // false when the user stopped it
};

/// Holds all that the base says against the rules of its format: every page has one owner, maps, definitions,
/// rows, long values and indexes agree with each other. Changes nothing; damage is never thrown.
/// @throws FileError 3045 when a commit of another program does not end
CheckResult Check(Database& base, Progress& progress);

}  // namespace jet
