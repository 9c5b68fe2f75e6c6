#include "jet/transaction.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "base/cp1251.h"
#include "base/error.h"
#include "jet/database.h"
#include "jet/paged_base.h"
#include "support/faulty_file.h"
#include "support/temp_folder.h"

namespace {

using jet::Access;
using jet::PageStore;
using jet::Transaction;
using paged_base::Fill;
using paged_base::LetterOf;
using Fault = FaultyFileSystem::Fault;
using Lasting = FaultyFileSystem::Lasting;
using Unsynced = FaultyFileSystem::Unsynced;

const std::string kBase = "base.mdb", kJournal = "base.mdb-journal";
constexpr std::uint32_t kPages = 12;
constexpr std::size_t kPageSize = jet::kJet3.page_size;

jet::StoreOptions Impatient(std::size_t spill_pages) {
  return {
      .cache_bytes = 8 * kPageSize, .spill_bytes = spill_pages * kPageSize, .patience = std::chrono::milliseconds(0)};
}

std::unique_ptr<PageStore> Open(FileSystem& files, Access access, std::size_t spill_pages = 1000) {
  return PageStore::Open(files, kBase, access, Impatient(spill_pages));
}

void ChangeSomePages(Transaction& transaction, char letter) {
  Fill(transaction.Change(2), letter);
  Fill(transaction.AppendPage(), letter);
  Fill(transaction.Change(7), letter);
  Fill(transaction.Change(3), letter);
  Fill(transaction.AppendPage(), letter);
}

// With room for three pages: written early, some of them twice, one kept by a handle all the while.
void ChangeManyPages(Transaction& transaction, char letter) {
  const jet::MutablePage held = transaction.Change(5);
  for (const std::uint32_t page : {1u, 9u, 8u, 2u, 1u, 11u, 8u}) Fill(transaction.Change(page), letter);
  for (int i = 0; i < 5; ++i) Fill(transaction.AppendPage(), letter);
  Fill(transaction.Change(kPages + 1), static_cast<char>(letter + 1));
  Fill(held, letter);
}

struct Work {
  const char* name;
  void (*change)(Transaction&, char letter);
  std::size_t spill_pages;

  // Two transactions and the end of the session. @return how many commits returned
  int Run(FileSystem& files) const {
    int commits = 0;
    try {
      const auto store = Open(files, Access::kReadWrite, spill_pages);
      for (const char letter : {'a', 'm'}) {
        Transaction transaction(*store);
        change(transaction, letter);
        transaction.Commit();
        ++commits;
      }
    } catch (const Error&) {
    }
    return commits;
  }

  // The base before the first, between the two, and after the second transaction.
  std::vector<std::string> States() const {
    FaultyFileSystem files(kBase, paged_base::Make(kPages));
    std::vector<std::string> states = {files.Content(kBase)};
    const auto store = Open(files, Access::kReadWrite, spill_pages);
    for (const char letter : {'a', 'm'}) {
      Transaction transaction(*store);
      change(transaction, letter);
      transaction.Commit();
      states.push_back(files.Content(kBase));
    }
    return states;
  }

  std::uint64_t Operations() const {
    FaultyFileSystem files(kBase, paged_base::Make(kPages));
    EXPECT_EQ(Run(files), 2);
    return files.operations();
  }
};

const Work kWorks[] = {{"small", ChangeSomePages, 1000}, {"spilling", ChangeManyPages, 3}};

// Which of the states a base is in once it was opened; -1 = none.
int StateAfterOpening(FaultyFileSystem& files, Access access, const std::vector<std::string>& states) {
  Open(files, access);
  const auto found = std::ranges::find(states, files.Content(kBase));
  Open(files, Access::kReadWrite);
  EXPECT_TRUE(found == states.end() || files.Content(kBase) == *found) << "a reader leaves work to do";
  EXPECT_FALSE(files.Exists(kJournal));
  return found == states.end() ? -1 : static_cast<int>(found - states.begin());
}

TEST(Transaction, CommitsNeedThreeSyncsEach) {
  FaultyFileSystem files(kBase, paged_base::Make(kPages));
  const auto store = Open(files, Access::kReadWrite);
  for (const char letter : {'a', 'b', 'c'}) {
    const std::size_t before = files.operations();
    Transaction transaction(*store);
    ChangeSomePages(transaction, letter);
    transaction.Commit();
    const auto syncs = std::count_if(files.log().begin() + static_cast<std::ptrdiff_t>(before), files.log().end(),
                                     [](const std::string& name) { return name.starts_with("sync"); });
    EXPECT_EQ(syncs, letter == 'a' ? 4 : 3);  // the first one syncs the folder, too
  }
}

TEST(Transaction, WhatIsChangedShowsAtOnceAndGoesWithoutACommit) {
  for (const Work& work : kWorks) {
    FaultyFileSystem files(kBase, paged_base::Make(kPages));
    const auto store = Open(files, Access::kReadWrite, work.spill_pages);
    const jet::Page before = store->pages().Read(6);
    {
      Transaction transaction(*store);
      work.change(transaction, 'x');
      Fill(transaction.Change(6), 'x');
      EXPECT_EQ(LetterOf(before), 'x') << work.name;
      EXPECT_EQ(LetterOf(store->pages().Read(2)), 'x') << work.name;
      EXPECT_EQ(LetterOf(store->pages().Read(kPages)), 'x') << work.name;
      EXPECT_GT(store->pages().page_count(), kPages);
    }
    EXPECT_EQ(store->pages().page_count(), kPages);
    for (std::uint32_t page = 1; page < kPages; ++page)
      EXPECT_EQ(LetterOf(store->pages().Read(page)), '0') << work.name;
    EXPECT_THROW(store->pages().Read(kPages), FormatError);
    EXPECT_EQ(files.Content(kBase), paged_base::Make(kPages));
    Transaction next(*store);
    ChangeSomePages(next, 'y');
    next.Commit();
    EXPECT_EQ(LetterOf(store->pages().Read(kPages + 1)), 'y');
  }
}

TEST(Transaction, BulkChangesDoNotGrowInMemory) {
  FaultyFileSystem files(kBase, paged_base::Make(kPages));
  const auto store = Open(files, Access::kReadWrite, 4);
  Transaction transaction(*store);
  std::size_t most = 0;
  for (int i = 0; i < 300; ++i) {
    Fill(transaction.AppendPage(), 'x');
    most = std::max(most, store->pages().changed().size());
  }
  EXPECT_LE(most, 5u);
  transaction.Commit();
  for (std::uint32_t page = kPages; page < kPages + 300; ++page) ASSERT_EQ(LetterOf(store->pages().Read(page)), 'x');
}

TEST(Transaction, IsRefusedWhereItCannotBe) {
  FaultyFileSystem files(kBase, paged_base::Make(kPages));
  {
    const auto reader = Open(files, Access::kRead);
    EXPECT_THROW(Transaction{*reader}, Error);
  }
  const auto store = Open(files, Access::kReadWrite);
  Transaction transaction(*store);
  EXPECT_THROW(Transaction{*store}, Error);
  EXPECT_THROW(transaction.Change(0), Error);
  EXPECT_THROW(transaction.Change(kPages), FormatError);
  Fill(transaction.Change(1), 'x');
  transaction.Commit();
  EXPECT_THROW(transaction.Change(1), Error);
  EXPECT_THROW(transaction.Commit(), Error);
  EXPECT_NO_THROW(Transaction{*store});
}

TEST(Transaction, ABaseOfTheLargestSizeTakesNoFurtherPage) {
  const TempFolder folder;
  const std::string path = folder.Put("large.mdb", paged_base::Make(3));
  std::filesystem::resize_file(path, std::uint64_t{jet::kLargestBase - 1} * kPageSize);  // sparse
  DiskFileSystem files;
  const auto store = PageStore::Open(files, path, Access::kReadWrite);
  Transaction transaction(*store);
  transaction.AppendPage();
  EXPECT_THROW(transaction.AppendPage(), Error);
}

// The disk fails once, at each operation in turn: the caller hears of it, the base is as it was and
// stays usable.
TEST(FailingDisk, AFailedCommitLeavesTheBaseAsItWas) {
  for (const Work& work : kWorks) {
    const std::vector<std::string> states = work.States();
    const std::uint64_t operations = work.Operations();
    for (const Fault fault : {Fault::kFail, Fault::kTear}) {
      for (std::uint64_t n = 1; n <= operations; ++n) {
        FaultyFileSystem files(kBase, paged_base::Make(kPages));
        files.FailAt(n, fault);
        const int commits = work.Run(files);
        const std::string where = work.name + (" at " + files.log()[n - 1]);
        EXPECT_EQ(files.Content(kBase), states[static_cast<std::size_t>(commits)]) << where;
        EXPECT_EQ(commits == 2, n > operations - 2) << where;  // only the clearing up may fail unheard
        for (const Unsynced unsynced : {Unsynced::kLost, Unsynced::kKept, Unsynced::kMixed})
          EXPECT_EQ(StateAfterOpening(*files.AfterPowerCut(unsynced, n), Access::kReadWrite, states), commits) << where;
      }
    }
  }
}

// From some operation on nothing works any more: the store says so and refuses; opened again on a
// disk that works, the base is whole.
TEST(FailingDisk, ABrokenDiskLeavesTheBaseToBeRecovered) {
  for (const Work& work : kWorks) {
    const std::vector<std::string> states = work.States();
    const std::uint64_t operations = work.Operations();
    for (std::uint64_t n = 1; n <= operations; ++n) {
      FaultyFileSystem files(kBase, paged_base::Make(kPages));
      files.FailAt(n, Fault::kTear, Lasting::kFromThenOn);
      const int commits = work.Run(files);
      for (const Unsynced unsynced : {Unsynced::kLost, Unsynced::kKept, Unsynced::kMixed}) {
        const int state = StateAfterOpening(*files.AfterPowerCut(unsynced, n), Access::kReadWrite, states);
        EXPECT_TRUE(state == commits || state == commits + 1) << work.name << " " << n << ": " << state;
      }
    }
  }
}

TEST(FailingDisk, AStoreThatCannotRestoreItsBaseRefusesUntilReopened) {
  for (const bool closed_first : {false, true}) {
    FaultyFileSystem files(kBase, paged_base::Make(kPages));
    auto store = Open(files, Access::kReadWrite);
    {
      Transaction transaction(*store);
      ChangeSomePages(transaction, 'x');
      files.FailAt(6, Fault::kTear, Lasting::kFromThenOn);  // inside the pages
      try {
        transaction.Commit();
        ADD_FAILURE();
      } catch (const FileError& error) {
        EXPECT_THAT(cp1251::ToUtf8(error.what()), testing::HasSubstr("откройте снова"));
      }
    }
    files.NeverFail();
    ASSERT_NE(files.Content(kBase), paged_base::Make(kPages));
    EXPECT_THROW(Transaction{*store}, Error);
    EXPECT_THROW(store->pages().Read(1), Error);
    if (closed_first) store.reset();
    const auto next = Open(files, Access::kRead);
    EXPECT_EQ(files.Content(kBase), paged_base::Make(kPages));
    EXPECT_EQ(LetterOf(next->pages().Read(2)), '0');
  }
}

// The power goes at each operation in turn, and the disk keeps whatever it likes of what was not
// synced.
TEST(PowerCut, LeavesAllOrNothingOfATransaction) {
  for (const Work& work : kWorks) {
    const std::vector<std::string> states = work.States();
    const std::uint64_t operations = work.Operations();
    for (std::uint64_t n = 1; n <= operations; ++n) {
      FaultyFileSystem files(kBase, paged_base::Make(kPages));
      files.FailAt(n, Fault::kPowerCut);
      const int commits = work.Run(files);
      for (std::uint64_t seed = 0; seed < 40; ++seed) {
        const Unsynced unsynced = seed == 0 ? Unsynced::kLost : seed == 1 ? Unsynced::kKept : Unsynced::kMixed;
        const Access access = seed % 2 == 0 ? Access::kRead : Access::kReadWrite;
        const int state = StateAfterOpening(*files.AfterPowerCut(unsynced, seed), access, states);
        EXPECT_TRUE(state == commits || (commits < 2 && state == commits + 1))
            << work.name << " at " << files.log().back() << ", seed " << seed << ": " << state;
      }
    }
  }
}

TEST(PowerCut, ARecoveryThatIsCutOffIsDoneAgain) {
  for (const Work& work : kWorks) {
    const std::vector<std::string> states = work.States();
    FaultyFileSystem files(kBase, paged_base::Make(kPages));
    files.FailAt(work.name[1] == 'm' ? 6 : 14, Fault::kPowerCut);
    ASSERT_EQ(work.Run(files), 0);
    for (std::uint64_t n = 1;; ++n) {
      const auto first = files.AfterKill();
      ASSERT_NE(first->Content(kBase), states[0]);
      first->FailAt(n, Fault::kPowerCut);
      bool recovered = true;
      try {
        Open(*first, Access::kRead);
      } catch (const FileError&) {
        recovered = false;
      }
      for (std::uint64_t seed = 0; seed < 10; ++seed)
        EXPECT_EQ(StateAfterOpening(*first->AfterPowerCut(Unsynced::kMixed, seed), Access::kReadWrite, states), 0);
      if (recovered && first->operations() < n) break;
    }
  }
}

}  // namespace
