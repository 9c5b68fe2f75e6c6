#pragma once

#include <set>
#include <string>

#include "base/cp1251.h"
#include "base/progress.h"
#include "jet/check.h"

namespace jet {

/// Everything that the check finds wrong with a base, pages that nobody uses included; UTF-8.
inline std::set<std::string> FaultsOf(Database& base) {
  NoProgress progress;
  std::set<std::string> faults;
  for (const Finding& finding : Check(base, progress).findings) faults.insert(cp1251::ToUtf8(finding.text));
  return faults;
}

/// The same but for wrong counts, which bases put together by hand begin with and crashed programs leave: to compare a
/// base before and after a change.
inline std::set<std::string> DamageOf(Database& base) {
  std::set<std::string> faults = FaultsOf(base);
  std::erase_if(faults, [](const std::string& fault) {
    return fault.find("число строк посчитано неверно") != fault.npos || fault.find("разных ключей") != fault.npos;
  });
  return faults;
}

}  // namespace jet
