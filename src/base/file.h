#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "base/bytes.h"

enum class LockKind { kShared, kExclusive };

/// Bytes that stand for something that programs share. They need not exist: what lies far behind
/// the end of a file hinders nobody who reads or writes it.
struct LockRange {
  std::uint64_t first = 0;
  std::uint64_t count = 0;  // 0 = all from `first` on
};

/// One open file. Every method that can fail throws FileError.
class File {
 public:
  virtual ~File() = default;
  virtual std::uint64_t Size() const = 0;
  /// Fills `to` whole from `offset` (bytes). A file that ends earlier is an error.
  virtual void ReadAt(std::uint64_t offset, MutableBytes to) const = 0;
  /// Writes behind the end lengthen the file.
  virtual void WriteAt(std::uint64_t offset, Bytes from) = 0;
  /// Returns when all that was written is on the medium.
  virtual void Sync() = 0;
  virtual void Truncate(std::uint64_t size) = 0;
  /// Takes an advisory lock, or changes the kind of one that this open file holds. It lasts until
  /// Unlock or until the file is closed. An exclusive lock wants a file opened for writing.
  /// @return false when another program, or another open file of this one, stands in the way
  virtual bool TryLock(LockRange range, LockKind kind) = 0;
  virtual void Unlock(LockRange range) noexcept = 0;
  /// Does anyone else hold a lock there, of either kind?
  virtual bool IsLocked(LockRange range) const = 0;
};

enum class OpenMode {
  kRead,
  kReadWrite,
  kCreate,  // for reading and writing; the file must not exist yet
};

/// What a file was like: two equal stamps mean that nobody has changed it between them.
struct FileStamp {
  std::uint64_t device = 0, file = 0, size = 0;  // bytes
  std::int64_t written = 0, changed = 0;         // nanoseconds of the system's clock
  friend bool operator==(const FileStamp&, const FileStamp&) = default;
};

/// The names of files: the only way of the engine to the disk. Paths are the file system's own
/// bytes. Failures throw FileError with a Russian text that names the path.
class FileSystem {
 public:
  virtual ~FileSystem() = default;
  virtual std::unique_ptr<File> Open(const std::string& path, OpenMode mode) = 0;
  /// Is there a plain file of this name? Folders do not count.
  virtual bool Exists(const std::string& path) const = 0;
  virtual void Remove(const std::string& path) = 0;
  /// Replaces `to` atomically when it exists.
  virtual void Rename(const std::string& from, const std::string& to) = 0;
  /// Makes creations, removals and renames in the folder of `path` durable.
  virtual void SyncFolderOf(const std::string& path) = 0;
  /// The name behind symbolic links, one and the same for all who open the file; `path` itself when
  /// there is no such file.
  virtual std::string RealPath(const std::string& path) const { return path; }
  /// @return none when there is no such file, when it changed so lately that another change could leave the
  ///         stamp as it is, and where files have no stamps
  virtual std::optional<FileStamp> Stamp(const std::string& path) const;
};

class DiskFileSystem : public FileSystem {
 public:
  std::unique_ptr<File> Open(const std::string& path, OpenMode mode) override;
  bool Exists(const std::string& path) const override;
  void Remove(const std::string& path) override;
  void Rename(const std::string& from, const std::string& to) override;
  void SyncFolderOf(const std::string& path) override;
  std::string RealPath(const std::string& path) const override;
  std::optional<FileStamp> Stamp(const std::string& path) const override;
};

/// A file in memory, for tests and for bytes that never touch the disk.
class MemoryFile : public File {
 public:
  MemoryFile() = default;
  explicit MemoryFile(std::string content) : content_(std::move(content)) {}
  const std::string& content() const { return content_; }

  std::uint64_t Size() const override { return content_.size(); }
  void ReadAt(std::uint64_t offset, MutableBytes to) const override;
  void WriteAt(std::uint64_t offset, Bytes from) override;
  void Sync() override {}
  void Truncate(std::uint64_t size) override;
  // Nobody else can have it open.
  bool TryLock(LockRange, LockKind) override { return true; }
  void Unlock(LockRange) noexcept override {}
  bool IsLocked(LockRange) const override { return false; }

 private:
  std::string content_;
};

/// Reads a whole file. @throws FileError, also when it is larger than `limit` bytes
std::string ReadWholeFile(FileSystem& files, const std::string& path, std::uint64_t limit);

/// Puts `content` in the place of the file, or makes it: a temporary file beside it, synced, then
/// renamed over it, so that whoever looks sees the old bytes or the new ones.
void ReplaceWholeFile(FileSystem& files, const std::string& path, std::string_view content);
