#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/clock.h"
#include "base/file.h"
#include "base/progress.h"

struct RescueResult {
  bool complete = false;                     // false when the user stopped it: there is no new base then
  std::uint64_t saved = 0;                   // messages in the new base, those in part too
  std::uint64_t lost = 0;                    // messages that are not; the least possible when it is not sure
  bool lost_is_sure = true;                  // false when nothing tells any more how many messages there were
  std::vector<std::int32_t> lost_numbers;    // as far as they are known; all lists are ascending, without repetitions
  std::vector<std::int32_t> in_part;         // numbers of messages of which something is missing; their text says so
  std::vector<std::uint32_t> damaged_pages;  // that messages lie on, or should
  std::vector<std::string> notes;            // what else is not in the new base; Russian, Windows-1251

  bool HasLosses() const { return lost > 0 || !in_part.empty() || !lost_is_sure; }
};

/// Saves the messages of a damaged base into a new one of the same version: every row of the table База that can
/// still be read, and of every row as much as can. The damaged file is only read. The new base holds all of them or,
/// whatever ends the work before that, there is none: until all is in it, it lies under the name `to`.new.
/// @throws FileError 75 when there is a file `to`, FileError, 3265 when the table is not to be found, Error like
///         jet::SalvagedBase
RescueResult RescueMessages(FileSystem& files, const std::string& damaged, const std::string& to, const Clock& clock,
                            Progress& progress);

/// Where to put the new base: beside the damaged one, under a name by which its forum is found again and that no
/// file has: "kdv_2002_rescued.mdb".
std::string ProposedRescuePath(const FileSystem& files, const std::string& damaged);
