#pragma once

#include <cstddef>
#include <string>

#include "jet/database.h"

namespace jet {

/// What there was to see in a base.
struct Seen {
  std::size_t rows = 0, bytes = 0, entries = 0, errors = 0;
};

/// Opens an image and reads all of it: every table's rows with all values, every index both ways
/// with seeks, every saved query. An Error ends the table or query that it befell; anything else
/// that is thrown goes to the caller.
Seen ReadAll(std::string image);

}  // namespace jet
