#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/file.h"

/// What a disk in memory holds of one file: what is there for sure, and what was written since.
struct FaultyInode {
  struct Change {
    std::uint64_t offset = 0;
    std::string bytes;                                          // empty = the file was cut or lengthened to `offset`
    enum State { kPending, kLost, kDurable } state = kPending;  // kLost: a sync failed; later ones do not save it
  };
  struct Lock {
    const void* owner;
    LockRange range;
    LockKind kind;
  };

  std::string now;      // what programs see
  std::string durable;  // without `changes`
  std::vector<Change> changes;
  std::vector<Lock> locks;
};

/// A file system in memory that fails on command. Writes, truncations, syncs, creations, removals,
/// renames and folder syncs are its operations, counted from 1. After a power cut the disk holds what
/// was synced; of the rest it keeps what the test chooses.
class FaultyFileSystem : public FileSystem {
 public:
  enum class Fault {
    kFail,      // the operation does nothing and throws FileError
    kTear,      // a write stores half of its bytes and throws; others fail
    kPowerCut,  // the operation may be kept or lost like all that is not synced; nothing works any more
  };
  enum class Lasting { kOnce, kFromThenOn };

  FaultyFileSystem() = default;
  /// A disk on which this one file is safe.
  FaultyFileSystem(const std::string& path, std::string content);

  /// @param operation  counts on from operations()
  void FailAt(std::uint64_t operation, Fault fault, Lasting lasting = Lasting::kOnce);
  void NeverFail() { failing_.reset(); }
  /// Operations so far, and the names of them all: "write base.mdb", "sync base.mdb", "sync folder" ...
  std::uint64_t operations() const { return log_.size(); }
  const std::vector<std::string>& log() const { return log_; }

  enum class Unsynced { kLost, kKept, kMixed };
  /// The disk after a power cut at this moment. @param seed  chooses what kMixed keeps: every change of
  ///        the folder, and every change of a file sector by sector
  std::unique_ptr<FaultyFileSystem> AfterPowerCut(Unsynced unsynced, std::uint64_t seed = 0) const;
  /// The disk after all programs were killed: nothing is lost.
  std::unique_ptr<FaultyFileSystem> AfterKill() const { return AfterPowerCut(Unsynced::kKept); }

  /// Past all faults; empty when there is no such file.
  std::string Content(const std::string& path) const;
  void SetContent(const std::string& path, std::string content);
  /// Every write fails as on a medium that is read-only.
  void SetReadOnly(bool read_only) { read_only_ = read_only; }

  std::unique_ptr<File> Open(const std::string& path, OpenMode mode) override;
  bool Exists(const std::string& path) const override;
  void Remove(const std::string& path) override;
  void Rename(const std::string& from, const std::string& to) override;
  void SyncFolderOf(const std::string& path) override;

 private:
  friend class FaultyFile;
  using Inode = std::shared_ptr<FaultyInode>;
  using Folder = std::map<std::string, Inode>;
  struct FolderChange {
    std::string from, to;  // from empty = created, to empty = removed
    Inode inode;
  };
  struct Failing {
    std::uint64_t operation;
    Fault fault;
    Lasting lasting;
  };

  // Counts an operation. @return the fault that strikes it
  std::optional<Fault> Step(std::string name);
  [[noreturn]] void Throw() const;
  static void Apply(const FolderChange& change, Folder& folder);
  void Record(FolderChange change);

  Folder now_, durable_;
  std::vector<FolderChange> changes_;
  std::vector<std::string> log_;
  std::optional<Failing> failing_;
  bool dead_ = false;
  bool read_only_ = false;
};
