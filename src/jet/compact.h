#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/file.h"
#include "base/progress.h"

namespace jet {

struct CompactOptions {
  /// Indexes over text whose order the engine does not know: left away, so that the copy can be written
  /// to. Otherwise a base that has one is not compacted.
  bool leave_unknown_indexes_out = false;
};

struct CompactResult {
  bool complete = false;  // false when the user stopped it: nothing has changed then
  std::uint64_t rows = 0;
  std::uint64_t size_before = 0, size_after = 0;  // bytes
  std::vector<std::string> notes;                 // what is not as it was; Russian, Windows-1251
};

/// Copies a base into a fresh file that holds nothing but its rows, sorted by primary key: tables of all
/// kinds, saved queries, relationships, forms and what else the catalog lists, indexes built anew. The copy
/// takes the base's place in one step; the old file stays beside it as `path`.bak. Whatever fails, the old
/// base is where it was. For all that time nobody else can write to the base.
/// @throws FileError 3045 when another program writes to it, FileError, FormatError for a damaged base
CompactResult Compact(FileSystem& files, const std::string& path, const CompactOptions& options, Progress& progress);

/// The same into another file, which must not exist yet; the base stays as it is.
CompactResult CompactInto(FileSystem& files, const std::string& path, const std::string& to,
                          const CompactOptions& options, Progress& progress);

/// Where Compact keeps the old base.
std::string BackupPath(const std::string& base);

}  // namespace jet
