#include "jet/recovery.h"

#include <memory>

#include "base/cat.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "jet/journal.h"
#include "jet/sharing.h"

namespace jet {
namespace {

void RemoveFinished(FileSystem& files, const std::string& journal) {
  try {
    files.Remove(journal);
    files.SyncFolderOf(journal);
  } catch (const FileError&) {
    // A finished journal that stays does no harm; the next transaction uses it.
  }
}

}  // namespace

bool IsLeftHalfDone(FileSystem& files, const std::string& path, const File& base, const Layout& layout) {
  const std::string name = JournalPath(path);
  if (!files.Exists(name) || base.IsLocked(kWriterLock)) return false;
  try {
    return Examine(*files.Open(name, OpenMode::kRead), base, layout) == JournalState::kHot;
  } catch (const FileError& error) {
    if (error.number() == error_number::kFileNotFound) return false;  // its writer has just closed
    throw;
  }
}

void Recover(FileSystem& files, const std::string& path, File& base, const Layout& layout) {
  const std::string name = JournalPath(path);
  if (!files.Exists(name)) return;
  std::unique_ptr<File> journal = files.Open(name, OpenMode::kReadWrite);
  const JournalState state = Examine(*journal, base, layout);
  if (state == JournalState::kForeign) return files.Rename(name, name + kForeignJournal);
  if (state == JournalState::kHot) {
    RollBack(*journal, base);
    Invalidate(*journal);
  }
  journal.reset();
  RemoveFinished(files, name);
}

void RecoverForReader(FileSystem& files, const std::string& path, const Layout& layout,
                      std::chrono::milliseconds patience) try {
  const std::unique_ptr<File> base = files.Open(path, OpenMode::kReadWrite);
  if (BecomeWriter(*base, patience)) Recover(files, path, *base, layout);
} catch (const FileError& error) {
  throw FileError(error.number(), Cat("Запись в базу была прервана сбоем, и вернуть её в прежнее состояние не удалось: "
                                      "нужно право записи в базу и её папку. "_ru,
                                      error.what()));
}

}  // namespace jet
