#include "jet/journal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/cp1251.h"
#include "base/error.h"
#include "jet/database.h"
#include "jet/paged_base.h"
#include "jet/sharing.h"
#include "jet/transaction.h"
#include "support/faulty_file.h"
#include "support/temp_folder.h"

namespace {

using jet::Access;
using jet::PageStore;
using jet::Transaction;
using paged_base::Fill;
using paged_base::LetterOf;
using Fault = FaultyFileSystem::Fault;

constexpr std::uint32_t kPages = 6;
const jet::StoreOptions kImpatient{.patience = std::chrono::milliseconds(0)};

void Store(PageStore& store, std::uint32_t page, char letter) {
  Transaction transaction(store);
  Fill(transaction.Change(page), letter);
  Fill(transaction.AppendPage(), letter);
  transaction.Commit();
}

template <typename Call>
void ExpectLocked(Call call) {
  try {
    call();
    ADD_FAILURE() << "nothing thrown";
  } catch (const Error& error) {
    EXPECT_EQ(error.number(), error_number::kLocked) << cp1251::ToUtf8(error.what());
  }
}

// A base whose writer was killed with half of its pages written.
class Killed : public testing::Test {
 protected:
  Killed() {
    FaultyFileSystem files("base.mdb", before_);
    files.FailAt(5, Fault::kPowerCut);  // create, write, sync, sync folder, then the first page
    EXPECT_THROW(Store(*PageStore::Open(files, "base.mdb", Access::kReadWrite), 3, 'x'), FileError);
    files_ = files.AfterKill();
    half_ = files_->Content("base.mdb");
    journal_ = files_->Content("base.mdb-journal");
    EXPECT_NE(half_, before_);
  }

  const std::string before_ = paged_base::Make(kPages);
  std::unique_ptr<FaultyFileSystem> files_;
  std::string half_, journal_;
};

TEST_F(Killed, IsRestoredByWhoeverOpensItNext) {
  for (const Access access : {Access::kRead, Access::kReadWrite}) {
    FaultyFileSystem files("base.mdb", half_);
    files.SetContent("base.mdb-journal", journal_);
    const auto store = PageStore::Open(files, "base.mdb", access);
    EXPECT_EQ(LetterOf(store->pages().Read(3)), '0');
    EXPECT_EQ(files.Content("base.mdb"), before_);
    EXPECT_FALSE(files.Exists("base.mdb-journal"));
  }
}

TEST_F(Killed, OnAReadOnlyMediumSaysWhatIsWrong) {
  files_->SetReadOnly(true);
  try {
    PageStore::Open(*files_, "base.mdb", Access::kRead);
    ADD_FAILURE();
  } catch (const FileError& error) {
    EXPECT_THAT(cp1251::ToUtf8(error.what()), testing::HasSubstr("прервана сбоем"));
  }
}

TEST_F(Killed, OnlyAWholeJournalOfThisVeryBaseIsApplied) {
  const auto with = [](std::string text, std::size_t at, std::string_view bytes) {
    return text.replace(at, bytes.size(), bytes);
  };
  // Flips a bit: of what is random (the salt) a fixed letter would now and then change nothing.
  const auto damaged = [](std::string text, std::size_t at) {
    text[at] ^= 1;
    return text;
  };
  const std::size_t counter = paged_base::kLayout.page_size - jet::kCommitCountersSize;
  const std::size_t record = 512 + paged_base::kLayout.page_size + 12;
  const struct {
    const char* name;
    std::string base, journal;
    std::string want;
    bool put_aside;
  } cases[] = {
      {"whole", half_, journal_, before_, false},
      {"empty", half_, "", half_, false},
      {"cut in the header", half_, journal_.substr(0, 30), half_, false},
      {"a byte of the header differs", half_, damaged(journal_, 25), half_, false},
      {"finished", half_, with(journal_, 0, std::string(40, '\0')), half_, false},
      {"cut in the first page", half_, journal_.substr(0, 1000), half_, false},
      {"a byte of the first page differs", half_, damaged(journal_, 700), half_, false},
      {"another base", damaged(half_, 0x14 + 0x60), journal_, damaged(half_, 0x14 + 0x60), true},
      {"a later state", with(half_, counter, "\x05"), journal_, with(half_, counter, "\x05"), true},
      {"another commit of the old engine", with(half_, counter + 8, "\x05"), journal_, with(half_, counter + 8, "\x05"),
       true},
      {"a shorter base", half_.substr(0, 4 * 2048), journal_, half_.substr(0, 4 * 2048), true},
  };
  for (const auto& c : cases) {
    FaultyFileSystem files("base.mdb", c.base);
    files.SetContent("base.mdb-journal", c.journal);
    { const auto store = PageStore::Open(files, "base.mdb", Access::kReadWrite); }
    EXPECT_TRUE(files.Content("base.mdb") == c.want) << c.name;
    EXPECT_FALSE(files.Exists("base.mdb-journal")) << c.name;
    EXPECT_EQ(files.Content("base.mdb-journal.foreign"), c.put_aside ? c.journal : "") << c.name;
  }
  // The second page was never synced, so the base holds what it was.
  FaultyFileSystem files("base.mdb", before_);
  files.SetContent("base.mdb-journal", journal_.substr(0, record + 100));
  PageStore::Open(files, "base.mdb", Access::kRead);
  EXPECT_EQ(files.Content("base.mdb"), before_);
}

// On a real disk: two open files of one program exclude each other like two programs.
class Shared : public testing::Test {
 protected:
  std::unique_ptr<PageStore> Open(Access access) { return PageStore::Open(files_, path_, access, kImpatient); }

  TempFolder folder_;
  std::string path_ = folder_.Put("base.mdb", paged_base::Make(kPages));
  DiskFileSystem files_;
};

TEST_F(Shared, OneWriterAtATime) {
  auto first = Open(Access::kReadWrite);
  ExpectLocked([&] { Open(Access::kReadWrite); });
  Store(*first, 1, 'a');
  ExpectLocked([&] { jet::Database::Open(files_, path_, Access::kReadWrite); });
  first.reset();
  EXPECT_FALSE(files_.Exists(path_ + "-journal"));
  EXPECT_EQ(LetterOf(Open(Access::kReadWrite)->pages().Read(1)), 'a');
}

TEST_F(Shared, AWriterUnderAnotherNameIsTheSame) {
  std::filesystem::create_symlink("base.mdb", folder_ / "link.mdb");
  const auto first = PageStore::Open(files_, folder_ / "link.mdb", Access::kReadWrite, kImpatient);
  Store(*first, 1, 'a');
  EXPECT_TRUE(files_.Exists(path_ + "-journal"));
  ExpectLocked([&] { Open(Access::kReadWrite); });
}

// Compacting puts a new file in the place of the old one; a writer that has just opened the old one
// would write where nobody looks.
TEST_F(Shared, AFileThatIsReplacedWhileItIsOpenedIsNotWritten) {
  class Replacing : public DiskFileSystem {
   public:
    std::unique_ptr<File> Open(const std::string& path, OpenMode mode) override {
      auto file = DiskFileSystem::Open(path, mode);
      if (mode == OpenMode::kReadWrite && Exists(path + ".new")) Rename(path + ".new", path);
      return file;
    }
  } files;
  folder_.Put("base.mdb.new", paged_base::Make(kPages));
  ExpectLocked([&] { PageStore::Open(files, path_, Access::kReadWrite, kImpatient); });
  EXPECT_NO_THROW(PageStore::Open(files, path_, Access::kReadWrite, kImpatient));
}

TEST_F(Shared, AReaderSeesCommitsFromItsNextStatementOn) {
  const auto writer = Open(Access::kReadWrite), reader = Open(Access::kRead);
  const jet::Page held = reader->pages().Read(2);
  Store(*writer, 2, 'a');
  EXPECT_EQ(LetterOf(reader->pages().Read(2)), '0');
  EXPECT_EQ(reader->generation(), 0u);
  {
    const PageStore::Reading statement(*reader);
    EXPECT_EQ(reader->generation(), 1u);
    EXPECT_EQ(LetterOf(reader->pages().Read(2)), 'a');
    EXPECT_EQ(reader->pages().page_count(), kPages + 1);
    EXPECT_EQ(LetterOf(held), '0');
  }
  const PageStore::Reading statement(*reader);
  EXPECT_EQ(reader->generation(), 1u);
}

TEST_F(Shared, AStatementKeepsCommitsOutAndNothingIsWritten) {
  const auto writer = Open(Access::kReadWrite), reader = Open(Access::kRead);
  const std::string before = folder_.Get("base.mdb");
  {
    const PageStore::Reading statement(*reader), nested(*reader);
    ExpectLocked([&] { Store(*writer, 2, 'a'); });
    EXPECT_EQ(folder_.Get("base.mdb"), before);
    EXPECT_EQ(writer->pages().page_count(), kPages);
    EXPECT_EQ(LetterOf(writer->pages().Read(2)), '0');
  }
  Store(*writer, 2, 'b');
  const PageStore::Reading statement(*reader);
  EXPECT_EQ(LetterOf(reader->pages().Read(2)), 'b');
}

TEST_F(Shared, ReadersWaitWhileATransactionIsPartlyWritten) {
  auto writer = PageStore::Open(files_, path_, Access::kReadWrite, {.spill_bytes = 2 * 2048});
  const auto reader = Open(Access::kRead);
  {
    Transaction transaction(*writer);
    for (std::uint32_t page = 1; page < kPages; ++page) Fill(transaction.Change(page), 'x');
    ExpectLocked([&] { PageStore::Reading{*reader}; });
    ExpectLocked([&] { Open(Access::kRead); });
  }
  const PageStore::Reading statement(*reader);
  EXPECT_EQ(LetterOf(reader->pages().Read(1)), '0');
}

TEST_F(Shared, AReaderUndoesWhatACrashLeftWhileItWasOpen) {
  const auto reader = Open(Access::kRead);
  const std::string before = folder_.Get("base.mdb");
  std::string half, journal;
  {
    const auto writer = PageStore::Open(files_, path_, Access::kReadWrite, {.spill_bytes = 2 * 2048});
    Transaction transaction(*writer);
    for (std::uint32_t page = 1; page < kPages; ++page) Fill(transaction.Change(page), 'x');
    half = folder_.Get("base.mdb");
    journal = folder_.Get("base.mdb-journal");
  }
  ASSERT_NE(half, before);
  const auto same_file = files_.Open(path_, OpenMode::kReadWrite);  // the reader's, so no new file
  same_file->WriteAt(0, AsBytes(half));
  folder_.Put("base.mdb-journal", journal);
  const PageStore::Reading statement(*reader);
  EXPECT_EQ(LetterOf(reader->pages().Read(1)), '0');
  EXPECT_EQ(folder_.Get("base.mdb"), before);
}

TEST_F(Shared, ABaseInUseByTheOldEngineIsNotWritten) {
  const std::string ldb = folder_.Put("base.ldb", "user");
  {
    const auto user = files_.Open(ldb, OpenMode::kReadWrite);
    ASSERT_TRUE(user->TryLock({0x10000001, 1}, LockKind::kShared));
    ExpectLocked([&] { Open(Access::kReadWrite); });
    EXPECT_NO_THROW(Open(Access::kRead));
  }
  EXPECT_NO_THROW(Open(Access::kReadWrite));  // left by a session that is over
  EXPECT_FALSE(files_.Exists(ldb));
}

}  // namespace
