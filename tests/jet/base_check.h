#pragma once

#include <set>
#include <string>

#include "jet/database.h"

namespace jet {

/// What contradicts the rules of the format, UTF-8: pages that belong to nobody or to two, usage maps,
/// moved rows, long values, indexes that do not list the rows. Empty in a sound base.
std::set<std::string> FaultsOf(Database& base);

}  // namespace jet
