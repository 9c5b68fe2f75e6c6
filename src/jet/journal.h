#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/bytes.h"
#include "base/file.h"
#include "jet/layout.h"

namespace jet {

/// Which base a rollback journal belongs to, and which state of it.
struct JournalHeader {
  std::uint32_t page_size = 0;
  std::uint32_t page_count = 0;     // of the base before the transaction
  std::uint16_t commit_before = 0;  // the base's first commit counter
  std::uint16_t commit_after = 0;
  std::uint64_t salt = 0;  // random, seeds all checksums: nothing of an earlier transaction passes for this one's
};

/// The file of the journal beside a base.
std::string JournalPath(const std::string& base);
/// Behind the name of a journal that was put aside: it belongs to another base.
inline constexpr const char* kForeignJournal = ".foreign";

/// The journal of a writer: what the pages that a transaction changes were like before it. The file
/// is made by the first transaction and used again by the next ones; it goes when the writer closes.
/// A journal is hot from Begin to Invalidate: whoever opens the base after a crash undoes what it tells.
class JournalWriter {
 public:
  JournalWriter(FileSystem& files, std::string path) : files_(files), path_(std::move(path)) {}
  ~JournalWriter();
  JournalWriter(const JournalWriter&) = delete;
  JournalWriter& operator=(const JournalWriter&) = delete;

  /// Begins a transaction. The first page added must be page 0.
  void Begin(const JournalHeader& header);
  void Add(std::uint32_t page, Bytes image);
  /// Returns when all that was added is on the medium: the base may be changed now.
  void Sync();
  /// Ends the transaction for good: returns when that is on the medium.
  void Invalidate();
  /// Takes back an Invalidate that failed halfway.
  void Revive();
  /// Invalidates for a base that is as it was before: when that fails it does no harm.
  void Discard() noexcept;

  const File& file() const { return *file_; }
  /// Pages that are on the medium since Begin.
  std::uint64_t synced() const { return synced_; }

 private:
  void OpenFile();
  void Flush();

  FileSystem& files_;
  std::string path_;
  std::unique_ptr<File> file_;
  bool folder_synced_ = false;
  bool hot_ = false;  // the header may be in the file
  JournalHeader header_;
  std::uint64_t count_ = 0, synced_ = 0;  // records
  std::uint64_t end_ = 0;                 // bytes of the journal that are in the file
  std::vector<std::byte> buffer_;         // what follows them
};

enum class JournalState {
  kNeedless,  // finished, or cut off before the base was touched
  kForeign,   // of another base, or of another state of this one
  kHot,       // the base may hold a transaction by halves
};

JournalState Examine(const File& journal, const File& base, const Layout& layout);

/// Puts back every page that the journal holds, and the base's length; returns when that is on the
/// medium. The journal has been examined, or is the caller's own. Can be repeated after a failure.
/// @return the number of pages put back
std::uint64_t RollBack(const File& journal, File& base);

/// Ends a journal that stays in its file: returns when that is on the medium.
void Invalidate(File& journal);

}  // namespace jet
