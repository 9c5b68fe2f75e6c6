// The index against a sorted set, and its pages against what the format promises, while entries come
// and go in many orders.

#include "jet/index_writer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <numeric>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "base/cp1251.h"
#include "base/error.h"
#include "base/progress.h"
#include "jet/check.h"
#include "jet/database.h"
#include "jet/header.h"
#include "jet/index.h"
#include "jet/page_store.h"
#include "jet/usage_map.h"
#include "support/faulty_file.h"

namespace jet {
namespace {

constexpr std::uint32_t kTable = 2, kMaps = 3, kRoot = 4, kFirstFree = 5;
const std::string kBase = "base.mdb";

// A header, the global map, a page with the index's map, an empty root.
std::string EmptyIndex(const Layout& layout) {
  std::string image(kFirstFree * layout.page_size, '\0');
  const auto page = [&](std::uint32_t number) {
    return std::as_writable_bytes(std::span(image)).subspan(number * layout.page_size, layout.page_size);
  };
  image.replace(0, kFileMagic.size(), kFileMagic);
  image.replace(kProductAt, kProduct.size(), kProduct);
  StoreU8(page(0), kVersionAt, static_cast<unsigned>(layout.version));
  ApplyHeaderMask(layout, page(0));
  for (std::size_t at = layout.page_size - kCommitCountersSize; at < layout.page_size; at += 2)
    StoreU16(page(0), at, kFirstCommit);

  const std::size_t map_size = layout.version == Version::kJet3 ? 133 : 69;
  const std::size_t row = layout.page_size - map_size;
  for (const std::uint32_t number : {1u, kMaps}) {
    StoreU16(page(number), kPageKindAt, 0x0101);
    StoreU16(page(number), layout.data_page.row_count, 1);
    StoreU16(page(number), layout.data_page.row_table, static_cast<unsigned>(row));
  }
  for (std::size_t at = 0; at < map_size - kInlineMapBitsAt; ++at)
    StoreU8(page(1), row + kInlineMapBitsAt + at, at == 0 ? 0xFFu << kFirstFree : 0xFF);
  StoreU8(page(kMaps), row + kInlineMapBitsAt, 1u << kRoot);

  StoreU16(page(kRoot), kPageKindAt, 0x0100 | page_kind::kIndexLeaf);
  StoreU32(page(kRoot), kOwnerAt, kTable);
  StoreU16(page(kRoot), kFreeSpaceAt, static_cast<unsigned>(layout.page_size - layout.index_page.entries));
  return image;
}

struct Entry {
  std::string key;
  RowId row;
  friend auto operator<=>(const Entry&, const Entry&) = default;

  std::string bytes() const {
    return key + std::string{char(row.page >> 16), char(row.page >> 8), char(row.page), char(row.slot)};
  }
};

RowId RowNumber(std::size_t n) {
  return {static_cast<std::uint32_t>(300 + n / 200), static_cast<std::uint8_t>(n % 200)};
}

std::string NumberKey(std::uint32_t number) {
  return {'\x7F', char(number >> 24 ^ 0x80), char(number >> 16), char(number >> 8), char(number)};
}

// A whole tree, and what it must hold.
class Tree {
 public:
  explicit Tree(Version version)
      : layout(LayoutOf(version)),
        files_(kBase, EmptyIndex(layout)),
        store_(PageStore::Open(files_, kBase, Access::kReadWrite)),
        transaction_(std::make_unique<Transaction>(*store_)) {
    table_.page = kTable;
    index_.usage_map = {kMaps, 0};
    index_.root = kRoot;
  }

  IndexWriter writer() { return {*transaction_, table_, index_}; }
  void Insert(const Entry& entry) {
    writer().Insert(entry.key, entry.row);
    entries_.insert(entry.bytes());
  }
  void Delete(const Entry& entry, std::string_view key) {
    writer().Delete(key, entry.row);
    entries_.erase(entry.bytes());
  }
  void Commit() {
    transaction_->Commit();
    transaction_ = std::make_unique<Transaction>(*store_);
  }
  std::string Rollback() {
    transaction_ = std::make_unique<Transaction>(*(transaction_.reset(), store_));
    return files_.Content(kBase);
  }

  void Verify();
  std::size_t levels() const { return levels_; }
  std::size_t pages() const { return reached_.size(); }

  const Layout& layout;

 private:
  std::string VerifyBelow(std::uint32_t number, std::size_t height);
  void VerifySiblings(const std::vector<std::uint32_t>& children);
  void VerifyMaps();
  IndexEntries Entries(std::uint32_t page) { return {store_->pages(), store_->pages().Read(page), kTable}; }

  FaultyFileSystem files_;
  std::unique_ptr<PageStore> store_;
  std::unique_ptr<Transaction> transaction_;
  TableDef table_;
  RealIndex index_;
  std::set<std::string> entries_;

  std::size_t levels_ = 0;
  std::set<std::uint32_t> reached_;
  std::vector<std::uint32_t> leaves_;
  std::vector<std::string> found_;
};

void Tree::Verify() {
  reached_.clear();
  leaves_.clear();
  found_.clear();
  levels_ = store_->pages().Read(kRoot).U8(layout.index_page.level);
  VerifyBelow(kRoot, levels_);
  ASSERT_TRUE(std::ranges::equal(found_, entries_));
  VerifySiblings(leaves_);
  VerifyMaps();
}

// @return the greatest entry below the page
std::string Tree::VerifyBelow(std::uint32_t number, std::size_t height) {
  EXPECT_TRUE(reached_.insert(number).second);
  const Page page = store_->pages().Read(number);
  EXPECT_EQ(page.U8(layout.index_page.level), height);
  EXPECT_EQ(page.U8(1), 1u);
  IndexEntries entries = Entries(number);
  EXPECT_EQ(entries.leaf(), height == 0);
  entries.ToEnd();
  EXPECT_EQ(page.U16(kFreeSpaceAt), layout.page_size - layout.index_page.entries - entries.end());
  entries = Entries(number);
  std::string greatest;
  if (entries.leaf()) {
    leaves_.push_back(number);
    EXPECT_EQ(entries.tail(), 0u);
    while (entries.Next()) found_.push_back(greatest = AsText(entries.entry()));
    EXPECT_TRUE(!greatest.empty() || number == kRoot);
    return greatest;
  }
  std::vector<std::uint32_t> children;
  for (; entries.Next(); children.push_back(entries.child())) {
    greatest = VerifyBelow(entries.child(), height - 1);
    EXPECT_EQ(AsText(entries.key_and_row()), greatest);
  }
  EXPECT_FALSE(children.empty());
  EXPECT_TRUE(entries.tail() != 0 || (children.size() == 1 && number != kRoot));
  if (entries.tail() != 0) {
    children.push_back(entries.tail());
    greatest = VerifyBelow(entries.tail(), height - 1);
  }
  if (height > 1) VerifySiblings(children);
  return greatest;
}

void Tree::VerifySiblings(const std::vector<std::uint32_t>& children) {
  for (std::size_t i = 0; i < children.size(); ++i) {
    EXPECT_EQ(Entries(children[i]).previous(), i == 0 ? 0 : children[i - 1]);
    EXPECT_EQ(Entries(children[i]).next(), i + 1 == children.size() ? 0 : children[i + 1]);
  }
}

// The index's map tells the pages reached, and none that exists is lost.
void Tree::VerifyMaps() {
  UsageMap owned(store_->pages(), {kMaps, 0}), free(store_->pages(), {1, 0});
  for (std::uint32_t page = kRoot; page < store_->pages().page_count(); ++page) {
    EXPECT_EQ(owned.Contains(page), reached_.contains(page)) << page;
    const bool bitmap = store_->pages().Read(page).kind() == page_kind::kUsageMap;
    EXPECT_EQ(free.Contains(page), !reached_.contains(page) && !bitmap) << page;
  }
}

enum class Order { kAscending, kDescending, kRandom };

struct Keys {
  const char* name;
  std::string (*make)(std::size_t n, std::mt19937& random);
};

std::string LongText(std::size_t length, std::mt19937& random) {
  std::string key = "\x7F";
  while (key.size() < length) key += static_cast<char>(0x60 + random() % 34);
  return key + '\0';
}

const Keys kKeys[] = {
    {"numbers", [](std::size_t n, std::mt19937&) { return NumberKey(static_cast<std::uint32_t>(n)); }},
    {"repeated", [](std::size_t n, std::mt19937&) { return NumberKey(static_cast<std::uint32_t>(n % 7)); }},
    {"texts", [](std::size_t, std::mt19937& random) { return LongText(1 + random() % 60, random); }},
    {"long texts", [](std::size_t, std::mt19937& random) { return LongText(random() % 3 == 0 ? 700 : 150, random); }},
    {"shared beginnings",
     [](std::size_t n, std::mt19937& random) {
       return '\x7F' + std::string(200 + n % 3 * 20, 'a') + LongText(1 + random() % 8, random);
     }},
};

std::vector<Entry> MakeEntries(const Keys& keys, Order order, std::size_t count, std::mt19937& random) {
  std::vector<Entry> entries;
  for (std::size_t n = 0; n < count; ++n) entries.push_back({keys.make(n, random), RowNumber(n)});
  std::ranges::sort(entries);
  if (order == Order::kDescending) std::ranges::reverse(entries);
  if (order == Order::kRandom) std::ranges::shuffle(entries, random);
  return entries;
}

class IndexWriterOf : public testing::TestWithParam<Version> {
 protected:
  std::mt19937 random{7};
};

INSTANTIATE_TEST_SUITE_P(BothVersions, IndexWriterOf, testing::Values(Version::kJet3, Version::kJet4),
                         [](const auto& version) { return version.param == Version::kJet3 ? "Jet3" : "Jet4"; });

// Fills a tree in each order, empties it in each order, and fills it again.
TEST_P(IndexWriterOf, FillsAndEmptiesInEveryOrder) {
  constexpr std::size_t kCount = 1500, kStep = 500;
  for (const Keys& keys : kKeys) {
    for (const Order filling : {Order::kAscending, Order::kDescending, Order::kRandom}) {
      for (const Order emptying : {Order::kAscending, Order::kDescending, Order::kRandom}) {
        SCOPED_TRACE(testing::Message() << keys.name << " " << int(filling) << int(emptying));
        Tree tree(GetParam());
        std::vector<Entry> entries = MakeEntries(keys, filling, kCount, random);
        for (std::size_t n = 0; n < kCount; ++n) {
          tree.Insert(entries[n]);
          if (n % kStep == kStep - 1) {
            ASSERT_NO_FATAL_FAILURE(tree.Verify());
          }
        }
        if (keys.name == std::string("long texts")) {
          EXPECT_GE(tree.levels(), 2u);
        }
        if (emptying != Order::kRandom) std::ranges::sort(entries);
        if (emptying == Order::kDescending) std::ranges::reverse(entries);
        if (emptying == Order::kRandom) std::ranges::shuffle(entries, random);
        for (std::size_t n = 0; n < kCount; ++n) {
          tree.Delete(entries[n], entries[n].key);
          if (n % kStep == kStep - 20) {
            ASSERT_NO_FATAL_FAILURE(tree.Verify());
          }
        }
        ASSERT_NO_FATAL_FAILURE(tree.Verify());
        EXPECT_EQ(tree.pages(), 1u);
        for (std::size_t n = 0; n < kStep; ++n) tree.Insert(entries[n]);
        ASSERT_NO_FATAL_FAILURE(tree.Verify());
      }
    }
  }
}

TEST_P(IndexWriterOf, HoldsWhatASortedSetHolds) {
  for (const Keys& keys : kKeys) {
    SCOPED_TRACE(keys.name);
    Tree tree(GetParam());
    const std::vector<Entry> entries = MakeEntries(keys, Order::kRandom, 2500, random);
    std::vector<bool> present(entries.size());
    for (std::size_t step = 0; step < 10'000; ++step) {
      const std::size_t n = random() % (step < 6'000 ? entries.size() : 700);
      if (!present[n])
        tree.Insert(entries[n]);
      else
        tree.Delete(entries[n], random() % 50 == 0 ? "\x7F no such key" : entries[n].key);
      present[n] = !present[n];
      if (step % 1000 == 0) {
        ASSERT_NO_FATAL_FAILURE(tree.Verify());
      }
      if (step % 2500 == 0) tree.Commit();
    }
    ASSERT_NO_FATAL_FAILURE(tree.Verify());
    for (std::size_t n = 0; n < 200; ++n) {
      const bool expected = std::ranges::any_of(entries, [&](const Entry& other) {
        return other.key == entries[n].key && present[static_cast<std::size_t>(&other - entries.data())];
      });
      EXPECT_EQ(tree.writer().HasKey(entries[n].key), expected);
    }
    EXPECT_FALSE(tree.writer().HasKey(entries[0].key.substr(0, 2)));
  }
}

TEST_P(IndexWriterOf, RisingNumbersFillTheirPages) {
  Tree tree(GetParam());
  for (std::uint32_t n = 0; n < 20'000; ++n) tree.Insert({NumberKey(n), RowNumber(n)});
  ASSERT_NO_FATAL_FAILURE(tree.Verify());
  const std::size_t bytes = 20'000 * 7, capacity = tree.layout.page_size - tree.layout.index_page.entries;
  EXPECT_LE(tree.pages(), bytes / capacity + 4);
}

// The rightmost node is left with one child, which then gets greater entries.
TEST_P(IndexWriterOf, ANodeWithASingleChildGrowsAgain) {
  Tree tree(GetParam());
  const auto entry = [](std::uint32_t n) { return Entry{NumberKey(n) + std::string(800, 'x'), RowNumber(n)}; };
  for (std::uint32_t n = 0; n < 200; ++n) tree.Insert(entry(n));
  for (std::uint32_t n = 30; n < 199; ++n) tree.Delete(entry(n), entry(n).key);
  ASSERT_NO_FATAL_FAILURE(tree.Verify());
  EXPECT_GE(tree.levels(), 2u);
  for (std::uint32_t n = 200; n < 230; ++n) {
    tree.Insert(entry(n));
    ASSERT_NO_FATAL_FAILURE(tree.Verify());
  }
}

TEST_P(IndexWriterOf, WhatIsNotCommittedGoes) {
  Tree tree(GetParam());
  const std::string empty = tree.Rollback();
  for (const Entry& entry : MakeEntries(kKeys[3], Order::kRandom, 300, random)) tree.Insert(entry);
  EXPECT_EQ(tree.Rollback(), empty);
  EXPECT_FALSE(tree.writer().HasKey(NumberKey(1)));
}

TEST_P(IndexWriterOf, RefusesWhatCannotBe) {
  Tree tree(GetParam());
  tree.Insert({NumberKey(1), RowNumber(1)});
  EXPECT_THROW(tree.writer().Insert(NumberKey(1), RowNumber(1)), FormatError);
  EXPECT_THROW(tree.writer().Delete(NumberKey(1), RowNumber(2)), FormatError);
  const std::size_t longest = (tree.layout.page_size - tree.layout.index_page.entries) / 2 - 8;
  EXPECT_THROW(tree.writer().Insert(std::string(longest + 1, 'x'), RowNumber(3)), Error);
  for (std::size_t n = 4; n < 60; ++n) tree.Insert({std::string(longest - 1, 'x') + char(n), RowNumber(n)});
  ASSERT_NO_FATAL_FAILURE(tree.Verify());
}

// Trees of other engines: emptied and filled again they are what they were.
TEST(IndexWriter, RebuildsTheIndexesOfRealBases) {
  if (!std::filesystem::is_directory(FORUM_SAMPLES)) GTEST_SKIP() << "no sample bases in " << FORUM_SAMPLES;
  std::mt19937 random(5);
  for (const char* const name :
       {"kdv_2002.mdb", "ptrv_2002.mdb", "access97_orders.mdb", "access2003_compositeindex.mdb"}) {
    SCOPED_TRACE(name);
    std::ifstream sample(std::string(FORUM_SAMPLES "/") + name, std::ios::binary);
    FaultyFileSystem files(kBase, std::string(std::istreambuf_iterator<char>(sample), {}));
    Database base = Database::Open(files, kBase, Access::kReadWrite);
    Transaction transaction(base.store());
    for (const CatalogTable& listed : base.Tables()) {
      const Table table = base.OpenTable(listed.name);
      for (const RealIndex& index : table.def().real_indexes) {
        std::vector<Entry> entries;
        for (IndexCursor cursor = table.Walk(index); cursor.Next();)
          entries.push_back({std::string(AsText(cursor.key())), cursor.id()});
        IndexWriter writer(transaction, table.def(), index);
        std::ranges::shuffle(entries, random);
        for (const Entry& entry : entries) writer.Delete(entry.key, entry.row);
        EXPECT_FALSE(table.Walk(index).Next());
        for (const Entry& entry : entries) writer.Insert(entry.key, entry.row);
      }
    }
    NoProgress progress;
    for (const Finding& finding : Check(base, progress).findings)
      EXPECT_NE(finding.severity, Severity::kError) << cp1251::ToUtf8(finding.text);
  }
}

}  // namespace
}  // namespace jet
