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

void CopyFile(FileSystem& files, const std::string& from, const std::string& to) {
  constexpr std::uint64_t kPiece = 1u << 20;
  const std::unique_ptr<File> source = files.Open(from, OpenMode::kRead);
  const std::unique_ptr<File> target = files.Open(to, OpenMode::kCreate);
  const std::uint64_t size = source->Size();
  std::vector<std::byte> buffer(std::min(size, kPiece));
  for (std::uint64_t done = 0; done < size; done += buffer.size()) {
    buffer.resize(std::min(size - done, kPiece));
    source->ReadAt(done, buffer);
    target->WriteAt(done, buffer);
  }
  target->Sync();
}

// A copy, not another name: file systems of memory sticks have no second names, and renaming would
// leave a moment without any base.
void KeepBackup(FileSystem& files, const std::string& base) {
  const std::string backup = BackupPath(base), unfinished = backup + ".new";
  RemoveUnused(files, unfinished);
  try {
    CopyFile(files, base, unfinished);
    files.Rename(unfinished, backup);
  } catch (const FileError&) {
    try {
      if (files.Exists(unfinished)) files.Remove(unfinished);
    } catch (const FileError&) {
      // What stays is removed by the next run; the first failure is the one to tell.
    }
    throw;
  }
  files.SyncFolderOf(backup);
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
  KeepBackup(files, real);
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
