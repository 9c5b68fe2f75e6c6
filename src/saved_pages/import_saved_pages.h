#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "base/clock.h"
#include "base/file.h"
#include "base/progress.h"
#include "saved_pages/page_files.h"
#include "store/query_recordset.h"

/// What an import of saved pages works with. All that it refers to outlives the call.
struct SavedPagesImport {
  FileSystem& files;
  BatchedRecordset& records;
  const Clock& clock;
  Progress& progress;
  page_files::Trouble& trouble;  // told of every page that gave no message, or one without a date
};

struct ImportTotals {
  std::size_t imported = 0;
  std::size_t without_date = 0;   // of the imported
  std::size_t already_there = 0;  // their number is in the base
  std::size_t not_imported = 0;   // told in `trouble`
  std::size_t not_reached = 0;    // the user stopped before them
};

/// Puts the messages of saved pages into a base, lowest number first. A page that cannot be read, or that the base
/// refuses, does not stop the others; numbers that are there are left as they are, so that an import
/// that was stopped can be repeated. Rows go on the disk in batches, a hundred pages or a second's work
/// at a time; what is counted as imported is on the disk.
/// @param kind   a forum's code
/// @param pages  files; the number of a message stands in the file's name. The e-mails of ows_ptrv authors come
///               from the author's pages beside them, which are passed over themselves
/// @throws Error 5 for a code whose pages nobody reads, and Error when the base cannot be read any more; what
///         was on the disk before stays
ImportTotals ImportSavedPages(const SavedPagesImport& with, std::string_view kind, std::span<const std::string> pages);

/// The totals as a sentence.
std::string ImportSummary(const ImportTotals& totals);
