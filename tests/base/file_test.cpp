#include "base/file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <filesystem>
#include <fstream>

#include "base/cp1251.h"
#include "base/error.h"
#include "base/ru_literal.h"

namespace {

using testing::HasSubstr;

std::string Read(const File& file, std::uint64_t offset, std::size_t count) {
  std::string bytes(count, '#');
  file.ReadAt(offset, std::as_writable_bytes(std::span(bytes)));
  return bytes;
}

// A folder of its own for each test, gone afterwards.
class OnDisk : public testing::Test {
 protected:
  OnDisk() {
    std::string name = testing::TempDir() + "forum-files-XXXXXX";
    folder_ = ::mkdtemp(name.data());
  }
  ~OnDisk() override { std::filesystem::remove_all(folder_); }

  std::string Path(std::string_view name) const { return folder_ + "/" + std::string(name); }
  std::string Content(const std::string& path) { return ReadWholeFile(files_, path, 1'000'000); }
  void Put(const std::string& path, std::string_view content) { std::ofstream(path, std::ios::binary) << content; }

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

  std::string folder_;
  DiskFileSystem files_;
};

// Both kinds of file obey the same rules.
void ExpectFileRules(File& file) {
  EXPECT_EQ(file.Size(), 0u);
  file.WriteAt(3, AsBytes("def"));  // behind the end: what lies between is NUL
  EXPECT_EQ(Read(file, 0, 6), std::string("\0\0\0def", 6));
  file.WriteAt(0, AsBytes("abcD"));
  EXPECT_EQ(Read(file, 1, 4), "bcDe");
  EXPECT_EQ(Read(file, 6, 0), "");
  EXPECT_THROW(Read(file, 3, 4), FileError);
  EXPECT_THROW(Read(file, 7, 1), FileError);
  EXPECT_THROW(Read(file, ~std::uint64_t{0}, 1), Error);
  file.Truncate(2);
  EXPECT_EQ(file.Size(), 2u);
  file.Truncate(4);
  EXPECT_EQ(Read(file, 0, 4), std::string("ab\0\0", 4));
  file.Sync();
}

TEST(MemoryFile, ReadsWritesAndRefusesLikeAFile) {
  MemoryFile file;
  ExpectFileRules(file);
}

TEST_F(OnDisk, ReadsWritesAndRefusesLikeAFile) { ExpectFileRules(*files_.Open(Path("new"), OpenMode::kCreate)); }

TEST_F(OnDisk, LocksExcludeOtherOpenFilesUntilTheyAreGivenBack) {
  auto first = files_.Open(Path("base"), OpenMode::kCreate);
  const auto second = files_.Open(Path("base"), OpenMode::kReadWrite);
  const auto reader = files_.Open(Path("base"), OpenMode::kRead);
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
  auto first = files_.Open(Path("base"), OpenMode::kCreate);
  const auto second = files_.Open(Path("base"), OpenMode::kReadWrite);
  EXPECT_TRUE(first->TryLock({}, LockKind::kExclusive));
  files_.Open(Path("base"), OpenMode::kRead).reset();  // must not take the lock with it
  EXPECT_FALSE(second->TryLock({}, LockKind::kExclusive));
  first.reset();
  EXPECT_TRUE(second->TryLock({}, LockKind::kExclusive));
}

TEST_F(OnDisk, FailuresSayWhyAndNameTheFile) {
  const std::string missing = Path("нет.mdb"), there = Path("есть.mdb"), pipe = Path("pipe");
  Put(there, "x");
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  using namespace error_number;
  ExpectFailure([&] { files_.Open(missing, OpenMode::kRead); }, kFileNotFound, "нет.mdb: файл не найден"_ru);
  ExpectFailure([&] { files_.Open(there + "/x", OpenMode::kRead); }, kFolderNotFound, "папка не найдена"_ru);
  ExpectFailure([&] { files_.Open(there, OpenMode::kCreate); }, kNoAccess, "такой файл уже есть"_ru);
  ExpectFailure([&] { files_.Open(folder_, OpenMode::kRead); }, kNoAccess, "это папка"_ru);
  ExpectFailure([&] { files_.Open(pipe, OpenMode::kReadWrite); }, kNoAccess, "это не файл"_ru);
  ExpectFailure([&] { files_.Open("/proc/version", OpenMode::kCreate); }, kNoAccess, "");
  ExpectFailure([&] { files_.Remove(missing); }, kFileNotFound, "Не удалось удалить"_ru);
  ExpectFailure([&] { files_.Rename(missing, there); }, kFileNotFound, "Не удалось переименовать"_ru);
  ExpectFailure([&] { files_.SyncFolderOf(missing + "/x"); }, kFileNotFound, "файл не найден"_ru);
  ExpectFailure([&] { files_.Open(there, OpenMode::kRead)->WriteAt(0, AsBytes("y")); }, kNoAccess, "есть.mdb"_ru);
  ExpectFailure([&] { ReadWholeFile(files_, there, 0); }, kNoAccess, "слишком велик"_ru);
  EXPECT_EQ(Content(there), "x");
}

TEST_F(OnDisk, AWriteThatTheDiskRefusesIsAnError) {
  const auto file = files_.Open(Path("large"), OpenMode::kCreate);
  ::rlimit before{};
  ::getrlimit(RLIMIT_FSIZE, &before);
  const ::rlimit small{100, before.rlim_max};
  const auto old_handler = ::signal(SIGXFSZ, SIG_IGN);
  ::setrlimit(RLIMIT_FSIZE, &small);
  ExpectFailure([&] { file->WriteAt(0, AsBytes(std::string(200, 'x'))); }, error_number::kNoAccess,
                "слишком большим"_ru);
  ExpectFailure([&] { file->Truncate(200); }, error_number::kNoAccess, "large: "_ru);
  ::setrlimit(RLIMIT_FSIZE, &before);
  ::signal(SIGXFSZ, old_handler);
}

TEST_F(OnDisk, ExistsMeansAPlainFile) {
  Put(Path("file"), "");
  std::filesystem::create_symlink(Path("file"), Path("link"));
  std::filesystem::create_symlink(Path("nowhere"), Path("broken"));
  EXPECT_TRUE(files_.Exists(Path("file")));
  EXPECT_TRUE(files_.Exists(Path("link")));
  EXPECT_FALSE(files_.Exists(Path("broken")));
  EXPECT_FALSE(files_.Exists(folder_));
  EXPECT_FALSE(files_.Exists(Path("absent")));
}

TEST_F(OnDisk, ReplacingLeavesTheNewFileAndNothingElse) {
  const std::string path = Path("forum.ini");
  ReplaceWholeFile(files_, path, "one");
  EXPECT_EQ(Content(path), "one");
  Put(path + ".new", "left by a run that was cut off");
  ReplaceWholeFile(files_, path, "");
  EXPECT_EQ(Content(path), "");
  EXPECT_FALSE(files_.Exists(path + ".new"));
}

// Fails at the named step, as a full or vanishing disk does.
class FailingDisk : public DiskFileSystem {
 public:
  enum Step { kOpen, kWrite, kRename };
  explicit FailingDisk(Step step) : step_(step) {}

  std::unique_ptr<File> Open(const std::string& path, OpenMode mode) override {
    if (step_ == kOpen) Fail();
    return std::make_unique<FailingFile>(DiskFileSystem::Open(path, mode), step_ == kWrite);
  }
  void Rename(const std::string& from, const std::string& to) override {
    if (step_ == kRename) Fail();
    DiskFileSystem::Rename(from, to);
  }

 private:
  [[noreturn]] static void Fail() { throw FileError(error_number::kNoAccess, "на диске нет места"_ru); }

  class FailingFile : public File {
   public:
    FailingFile(std::unique_ptr<File> file, bool fail) : file_(std::move(file)), fail_(fail) {}
    std::uint64_t Size() const override { return file_->Size(); }
    void ReadAt(std::uint64_t offset, MutableBytes to) const override { file_->ReadAt(offset, to); }
    void WriteAt(std::uint64_t offset, Bytes from) override {
      file_->WriteAt(offset, from.first(from.size() / 2));
      if (fail_) Fail();
    }
    void Sync() override {}
    void Truncate(std::uint64_t size) override { file_->Truncate(size); }
    bool TryLock(LockRange range, LockKind kind) override { return file_->TryLock(range, kind); }
    void Unlock(LockRange range) noexcept override { file_->Unlock(range); }
    bool IsLocked(LockRange range) const override { return file_->IsLocked(range); }

   private:
    std::unique_ptr<File> file_;
    bool fail_;
  };

  Step step_;
};

TEST_F(OnDisk, AFailedReplacementKeepsTheOldFile) {
  const std::string path = Path("forum.ini");
  Put(path, "old");
  for (const auto step : {FailingDisk::kOpen, FailingDisk::kWrite, FailingDisk::kRename}) {
    FailingDisk failing(step);
    EXPECT_THROW(ReplaceWholeFile(failing, path, "new"), FileError);
    EXPECT_EQ(Content(path), "old");
    EXPECT_FALSE(files_.Exists(path + ".new")) << step;
  }
}

}  // namespace
