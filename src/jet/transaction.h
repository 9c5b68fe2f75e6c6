#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "base/error.h"
#include "jet/page_file.h"
#include "jet/page_store.h"

namespace jet {

/// Changes to a base that happen all or not at all. What is changed shows in the store's pages at
/// once, and on the medium when Commit returns; without a Commit, the end undoes it. At most one at a
/// time. Any failure while writing leaves the base as it was and ends the transaction.
class Transaction {
 public:
  /// @throws Error 3027 when the store was opened for reading, Error when another one is open
  explicit Transaction(PageStore& store);
  ~Transaction();
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;

  const PageFile& pages() const { return pages_; }
  /// @param page  any but page 0, which Commit changes itself
  MutablePage Change(std::uint32_t page);
  /// A page of zeros behind the last one. @throws Error when the base has reached its largest size
  MutablePage AppendPage();

  /// No page below this one is free. The page allocator keeps it here, so that it need not look through the
  /// whole map each time.
  std::uint32_t lowest_free() const { return lowest_free_; }
  void SetLowestFree(std::uint32_t page) { lowest_free_ = page; }

  /// Returns when all changes are on the medium. With none it costs nothing.
  /// @throws FileError when they cannot be written, or another program reads for too long: the base
  ///         is as it was before the transaction
  void Commit();
  /// Undoes all changes now and ends the transaction: what was begun must not be committed by halves.
  void RollBack() noexcept {
    if (open_) Undo();
  }

 private:
  void RequireOpen() const;
  void SpillWhenMany();
  void WriteOut(std::span<Frame*> frames);
  void BeginJournal();
  void AddToJournal(std::span<Frame* const> frames);
  void WritePages(std::span<Frame* const> sorted) const;
  bool Undo() noexcept;
  bool RestoreFile() noexcept;
  [[noreturn]] void Fail(const Error& error);
  void End() noexcept;

  PageStore& store_;
  PageFile& pages_;
  JournalWriter& journal_;
  std::uint32_t page_count_;     // before the transaction
  std::vector<bool> journaled_;  // by page number; empty = the journal has not begun
  bool touched_ = false;         // the file may differ from what it was
  bool open_ = true;
  std::uint32_t lowest_free_ = 0;
};

}  // namespace jet
