#include "jet/compact.h"

#include <algorithm>
#include <memory>

#include "base/error.h"
#include "jet/base_copier.h"
#include "jet/create.h"
#include "jet/database.h"
#include "jet/sharing.h"

namespace jet {
namespace {

/// The rows are copied; what is left takes no share of its own.
constexpr int kNearlyDone = 99;

/// @return false when the user stopped it
bool CopyFile(FileSystem& files, const std::string& from, const std::string& to, Progress& progress) {
  constexpr std::uint64_t kPiece = 1u << 20;
  const std::unique_ptr<File> source = files.Open(from, OpenMode::kRead);
  const std::unique_ptr<File> target = files.Open(to, OpenMode::kCreate);
  const std::uint64_t size = source->Size();
  std::vector<std::byte> buffer(std::min(size, kPiece));
  for (std::uint64_t done = 0; done < size; done += buffer.size()) {
    buffer.resize(std::min(size - done, kPiece));
    source->ReadAt(done, buffer);
    target->WriteAt(done, buffer);
    if (!progress.Advance(kNearlyDone)) return false;
  }
  target->Sync();
  return true;
}

void RemoveQuietly(FileSystem& files, const std::string& path) noexcept try {
  if (files.Exists(path)) files.Remove(path);
} catch (const FileError&) {
  // What stays is removed by the next run.
}

// A copy, not another name: file systems of memory sticks have no second names, and renaming would
// leave a moment without any base.
// @return false when the user stopped it: the backup before is still there
bool KeepBackup(FileSystem& files, const std::string& base, Progress& progress) {
  const std::string backup = BackupPath(base), unfinished = backup + ".new";
  RemoveUnused(files, unfinished);
  try {
    if (!CopyFile(files, base, unfinished, progress)) {
      RemoveQuietly(files, unfinished);
      return false;
    }
    files.Rename(unfinished, backup);
  } catch (const FileError&) {
    RemoveQuietly(files, unfinished);
    throw;
  }
  files.SyncFolderOf(backup);
  return true;
}

CompactResult Copy(Database& from, UnfinishedBase& to, const CompactOptions& options, Progress& progress) {
  CompactResult result = BaseCopier(from, to.base(), options, progress).Run();
  result.size_before = from.pages().size();
  result.size_after = to.base().pages().size();
  return result;
}

}  // namespace

std::string BackupPath(const std::string& base) { return base + ".bak"; }

CompactResult Compact(FileSystem& files, const std::string& path, const CompactOptions& options, Progress& progress) {
  Database from = Database::Open(files, path, Access::kReadWrite);  // nobody else writes until the end
  const std::string real = files.RealPath(path);
  UnfinishedBase to(files, real, from.store().header());
  CompactResult result = Copy(from, to, options, progress);
  if (!result.complete) return result;
  if (!KeepBackup(files, real, progress)) return {};
  to.Publish();
  progress.Advance(100);
  return result;
}

CompactResult CompactInto(FileSystem& files, const std::string& path, const std::string& to_path,
                          const CompactOptions& options, Progress& progress) {
  Database from = Database::Open(files, path, Access::kRead);
  const Database::Reading reading(from);
  UnfinishedBase to(files, to_path, from.store().header());
  CompactResult result = Copy(from, to, options, progress);
  if (!result.complete) return result;
  to.PublishNew();
  progress.Advance(100);
  return result;
}

}  // namespace jet
