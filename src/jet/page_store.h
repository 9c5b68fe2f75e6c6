#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <memory>
#include <string>

#include "base/file.h"
#include "jet/header.h"
#include "jet/journal.h"
#include "jet/layout.h"
#include "jet/page_file.h"

namespace jet {

enum class Access { kRead, kReadWrite };

struct StoreOptions {
  std::size_t cache_bytes = PageFile::kDefaultCacheBytes;
  /// Changed pages above this are written before their transaction ends.
  std::size_t spill_bytes = PageFile::kDefaultCacheBytes / 2;
  /// How long to wait for other programs that read or write the base.
  std::chrono::milliseconds patience{5000};
};

/// The pages of an open base that other programs may have open too: one of them for writing, all for
/// reading. Not for several threads.
class PageStore {
 public:
  /// Undoes first what a writer that crashed left half done, also for reading.
  /// @param files  outlives the store
  /// @throws FileError 3045 when another program writes, FileError, Error 3343 like ReadHeader
  static std::unique_ptr<PageStore> Open(FileSystem& files, const std::string& path, Access access,
                                         const StoreOptions& options = {});
  /// A base that nobody else can see, for reading.
  explicit PageStore(std::unique_ptr<File> file);
  PageStore(const PageStore&) = delete;
  PageStore& operator=(const PageStore&) = delete;

  const Header& header() const { return header_; }
  PageFile& pages() { return *pages_; }
  const PageFile& pages() const { return *pages_; }
  /// Grows when a Reading finds that another program has changed the base: what was learned from its
  /// pages before may be wrong now.
  std::uint64_t generation() const { return generation_; }

  /// While it lives nobody changes the base: other programs wait with their commits, so it should
  /// last for a statement, not for a window. May be nested; free of charge inside another and in a
  /// store opened for writing.
  class Reading {
   public:
    /// @throws FileError 3045 when a commit of another program does not end in time
    explicit Reading(PageStore& store) : store_(store) { store_.BeginReading(); }
    ~Reading() { store_.EndReading(); }
    Reading(const Reading&) = delete;
    Reading& operator=(const Reading&) = delete;

   private:
    PageStore& store_;
  };

 private:
  friend class Transaction;

  /// What changes with every commit.
  struct CommitMark {
    std::array<std::byte, kCommitCountersSize> counters{};
    std::uint32_t pages = 0;
    friend bool operator==(const CommitMark&, const CommitMark&) = default;
  };

  PageStore(FileSystem& files, std::string path, const StoreOptions& options);
  void OpenForWriting(std::unique_ptr<File> file);
  void OpenForReading(std::unique_ptr<File> file);

  const Layout& layout() const { return LayoutOf(header_.version); }
  bool is_shared_reader() const { return files_ != nullptr && journal_ == nullptr; }
  void BeginReading();
  void EndReading() noexcept;
  void EnterGate(File& file) const;
  void Refresh();
  CommitMark ReadCommitMark() const;

  /// @throws Error 3027 when opened for reading
  void BeginTransaction();
  void EndTransaction() noexcept { in_transaction_ = false; }
  /// Keeps readers out until OpenGate. @throws FileError 3045 when they do not end in time
  void CloseGate();
  void OpenGate() noexcept;
  /// The base holds a transaction by halves: whoever opens it next puts that right.
  void GiveUp() noexcept;

  FileSystem* files_ = nullptr;  // nullptr = nobody else can see the base
  std::string path_;
  StoreOptions options_;
  Header header_;
  std::unique_ptr<PageFile> pages_;
  std::unique_ptr<JournalWriter> journal_;  // of a store opened for writing; goes before the locks do
  CommitMark seen_;
  std::uint64_t generation_ = 0;
  int readings_ = 0;
  bool in_transaction_ = false;
  bool gate_closed_ = false;
};

}  // namespace jet
