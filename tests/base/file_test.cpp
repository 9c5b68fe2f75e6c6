#include "base/file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>

#include "base/cp1251.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "support/faulty_file.h"
#include "support/temp_folder.h"

namespace {

using testing::HasSubstr;

std::string Read(const File& file, std::uint64_t offset, std::size_t count) {
  std::string bytes(count, '#');
  file.ReadAt(offset, std::as_writable_bytes(std::span(bytes)));
  return bytes;
}

class OnDisk : public testing::Test {
 protected:
  template <typename Action>
  void ExpectFailure(const Action& action, int number, std::string_view reason) {
    try {
      action();
      FAIL() << "no failure";
    } catch (const FileError& error) {
      EXPECT_EQ(error.number(), number);
      EXPECT_THAT(cp1251::ToUtf8(error.what()), HasSubstr(cp1251::ToUtf8(reason)));
    }
  }

  TempFolder folder_;
  DiskFileSystem files_;
};

TEST_F(OnDisk, AFileReadsWritesAndRefusesLikeOneInMemory) {
  MemoryFile memory;
  const auto disk = files_.Open(folder_ / "new", OpenMode::kCreate);
  for (File* const file : {static_cast<File*>(&memory), disk.get()}) {
    SCOPED_TRACE(file == disk.get() ? "on the disk" : "in memory");
    EXPECT_EQ(file->Size(), 0u);
    file->WriteAt(3, AsBytes("def"));  // behind the end: what lies between is NUL
    EXPECT_EQ(Read(*file, 0, 6), std::string("\0\0\0def", 6));
    file->WriteAt(0, AsBytes("abcD"));
    EXPECT_EQ(Read(*file, 1, 4), "bcDe");
    EXPECT_EQ(Read(*file, 6, 0), "");
    EXPECT_THROW(Read(*file, 3, 4), FileError);
    EXPECT_THROW(Read(*file, 7, 1), FileError);
    EXPECT_THROW(Read(*file, ~std::uint64_t{0}, 1), Error);
    file->Truncate(2);
    EXPECT_EQ(file->Size(), 2u);
    file->Truncate(4);
    EXPECT_EQ(Read(*file, 0, 4), std::string("ab\0\0", 4));
    file->Sync();
  }
}

TEST_F(OnDisk, LocksExcludeOtherOpenFilesUntilTheyAreGivenBack) {
  const std::string base = folder_.Put("base");
  const auto first = files_.Open(base, OpenMode::kReadWrite), second = files_.Open(base, OpenMode::kReadWrite),
             reader = files_.Open(base, OpenMode::kRead);
  constexpr LockRange kOne{std::uint64_t{1} << 40, 1}, kOther{kOne.first + 1, 1}, kAll{};
  EXPECT_TRUE(first->TryLock(kOne, LockKind::kExclusive));
  EXPECT_TRUE(first->TryLock(kOne, LockKind::kExclusive));
  EXPECT_FALSE(second->TryLock(kOne, LockKind::kExclusive));
  EXPECT_FALSE(reader->TryLock(kOne, LockKind::kShared));
  EXPECT_TRUE(reader->IsLocked(kAll));
  EXPECT_FALSE(first->IsLocked(kAll));
  EXPECT_TRUE(second->TryLock(kOther, LockKind::kExclusive));
  first->Unlock(kOne);
  EXPECT_TRUE(reader->TryLock(kOne, LockKind::kShared));
  EXPECT_TRUE(second->TryLock(kOne, LockKind::kShared));
  EXPECT_FALSE(first->TryLock(kOne, LockKind::kExclusive));
  reader->Unlock(kOne);
  EXPECT_TRUE(second->TryLock(kOne, LockKind::kExclusive));
  EXPECT_FALSE(first->TryLock(kOne, LockKind::kShared));
}

TEST_F(OnDisk, ALockEndsWithItsFile) {
  const std::string base = folder_.Put("base");
  auto first = files_.Open(base, OpenMode::kReadWrite), second = files_.Open(base, OpenMode::kReadWrite);
  EXPECT_TRUE(first->TryLock({}, LockKind::kExclusive));
  files_.Open(base, OpenMode::kRead).reset();  // must not take the lock with it
  EXPECT_FALSE(second->TryLock({}, LockKind::kExclusive));
  first.reset();
  EXPECT_TRUE(second->TryLock({}, LockKind::kExclusive));
}

TEST_F(OnDisk, FailuresSayWhyAndNameTheFile) {
  const std::string missing = folder_ / "нет.mdb", there = folder_.Put("есть.mdb", "x"), pipe = folder_ / "pipe";
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  using namespace error_number;
  ExpectFailure([&] { files_.Open(missing, OpenMode::kRead); }, kFileNotFound, "нет.mdb: файл не найден"_ru);
  ExpectFailure([&] { files_.Open(there + "/x", OpenMode::kRead); }, kFolderNotFound, "папка не найдена"_ru);
  ExpectFailure([&] { files_.Open(there, OpenMode::kCreate); }, kNoAccess, "такой файл уже есть"_ru);
  ExpectFailure([&] { files_.Open(folder_.path(), OpenMode::kRead); }, kNoAccess, "это папка"_ru);
  ExpectFailure([&] { files_.Open(pipe, OpenMode::kReadWrite); }, kNoAccess, "это не файл"_ru);
  ExpectFailure([&] { files_.Open("/proc/version", OpenMode::kCreate); }, kNoAccess, "");
  ExpectFailure([&] { files_.Remove(missing); }, kFileNotFound, "Не удалось удалить"_ru);
  ExpectFailure([&] { files_.Rename(missing, there); }, kFileNotFound, "Не удалось переименовать"_ru);
  ExpectFailure([&] { files_.SyncFolderOf(missing + "/x"); }, kFileNotFound, "файл не найден"_ru);
  ExpectFailure([&] { files_.Open(there, OpenMode::kRead)->WriteAt(0, AsBytes("y")); }, kNoAccess, "есть.mdb"_ru);
  ExpectFailure([&] { ReadWholeFile(files_, there, 0); }, kNoAccess, "слишком велик"_ru);
  EXPECT_EQ(ReadWholeFile(files_, there, 1), "x");
}

TEST_F(OnDisk, AWriteThatTheDiskRefusesIsAnError) {
  const auto file = files_.Open(folder_ / "large", OpenMode::kCreate);
  ::rlimit before{};
  ::getrlimit(RLIMIT_FSIZE, &before);
  const ::rlimit small{100, before.rlim_max};
  const auto old_handler = ::signal(SIGXFSZ, SIG_IGN);
  ::setrlimit(RLIMIT_FSIZE, &small);
  ExpectFailure([&] { file->WriteAt(0, AsBytes(std::string(200, 'x'))); }, error_number::kNoAccess,
                "файл стал слишком большим"_ru);
  ExpectFailure([&] { file->Truncate(200); }, error_number::kNoAccess, "large: "_ru);
  ::setrlimit(RLIMIT_FSIZE, &before);
  ::signal(SIGXFSZ, old_handler);
}

TEST_F(OnDisk, ExistsMeansAPlainFile) {
  std::filesystem::create_symlink(folder_.Put("file"), folder_ / "link");
  std::filesystem::create_symlink("nowhere", folder_ / "broken");
  for (const char* name : {"file", "link"}) EXPECT_TRUE(files_.Exists(folder_ / name)) << name;
  for (const char* name : {"broken", "", "absent"}) EXPECT_FALSE(files_.Exists(folder_ / name)) << name;
}

TEST_F(OnDisk, ReplacingLeavesTheNewFileAndNothingElse) {
  const std::string path = folder_ / "forum.ini";
  ReplaceWholeFile(files_, path, "one");
  EXPECT_EQ(folder_.Get("forum.ini"), "one");
  folder_.Put("forum.ini.new", "left by a run that was cut off");
  ReplaceWholeFile(files_, path, "");
  EXPECT_EQ(ReadWholeFile(files_, path, 0), "");
  EXPECT_FALSE(files_.Exists(path + ".new"));
}

TEST(ReplaceWholeFile, AFailureKeepsTheOldFile) {
  constexpr int kSteps = 4;  // made, written, synced, renamed
  for (int step = 1; step <= kSteps; ++step) {
    FaultyFileSystem files("forum.ini", "old");
    files.FailAt(static_cast<std::uint64_t>(step), FaultyFileSystem::Fault::kTear);
    EXPECT_THROW(ReplaceWholeFile(files, "forum.ini", "new"), FileError);
    EXPECT_EQ(files.Content("forum.ini"), "old");
    EXPECT_FALSE(files.Exists("forum.ini.new")) << step;
  }
  FaultyFileSystem files("forum.ini", "old");
  ReplaceWholeFile(files, "forum.ini", "new");
  EXPECT_EQ(files.AfterPowerCut(FaultyFileSystem::Unsynced::kLost)->Content("forum.ini"), "new");
}

}  // namespace
