#include "jet/compact.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "base/cp1251.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "jet/create.h"
#include "jet/faults.h"
#include "jet/table_design.h"
#include "jet/writing.h"
#include "support/faulty_file.h"

namespace jet {
namespace {

// Columns of indexes; clang 14 cannot convert such literals inside a list.
constexpr std::string_view kКод = "Код"_ru, kТема = "Тема"_ru, kАвтор = "Автор"_ru;

const std::string kPath = "forum.mdb";

class Stopping : public Progress {
 public:
  bool Advance(int) override { return false; }
};

/// All that a base holds, in an order of its own: tables by name with their columns and rows as stored,
/// queries with their pieces.
std::map<std::string, std::multiset<std::string>> Contents(Database& base) {
  std::map<std::string, std::multiset<std::string>> contents;
  for (const CatalogTable& entry : base.Tables()) {
    const Table table = base.OpenTableAt(entry.definition);
    std::multiset<std::string>& lines = contents[entry.stored_name];
    for (const Column& column : table.def().columns)
      lines.insert("column " + column.stored_name + " " + std::to_string(static_cast<int>(column.type)) + " " +
                   std::to_string(column.number));
    for (TableCursor cursor = table.Scan(); cursor.Next();) {
      std::string line = "row";
      for (const Column& column : table.def().columns) {
        std::string bytes;
        if (column.type == ColumnType::kBoolean)
          bytes = cursor.row().Bool(column) ? "true" : "false";
        else
          cursor.row().ReadStored(column, bytes);
        line += (cursor.row().IsNull(column) ? " -" : " +") + std::to_string(bytes.size()) + ":" + bytes;
      }
      lines.insert(std::move(line));
    }
  }
  for (const CatalogQuery& query : base.Queries())
    for (const QueryRow& row : base.QueryRows(query.id))
      contents["query " + query.stored_name].insert(std::to_string(row.attribute) + row.name1 + row.expression);
  return contents;
}

std::multiset<std::string> IndexNames(Database& base) {
  std::multiset<std::string> names;
  for (const CatalogTable& entry : base.Tables())
    for (const LogicalIndex& index : base.OpenTableAt(entry.definition).def().logical_indexes)
      names.insert(entry.name + "/" + index.name + "/" + std::to_string(static_cast<int>(index.kind)));
  return names;
}

/// A base of a few messages, one of them with a body of several pages, written in no order.
void MakeForum(FaultyFileSystem& disk, Version version) {
  constexpr NewColumn kColumns[] = {{.name = "Код"_ru, .type = ColumnType::kLong, .autonumber = true},
                                    {.name = "Тема"_ru, .type = ColumnType::kText, .length = 50},
                                    {.name = "Текст"_ru, .type = ColumnType::kMemo}};
  const NewIndex indexes[] = {PrimaryKey("PrimaryKey", {kКод}), {.name = "Тема"_ru, .columns = {kТема}}};
  CreateBase(disk, kPath, {version, SortOrder::kGeneral}, OleDate{40000}, [&](CatalogWriter& catalog, const Header& h) {
    const NewProperties properties[] = {{.column = "Тема"_ru, .allow_zero_length = true}};
    catalog.CreateTable("База"_ru, DesignTable(h, kColumns, indexes), properties);
    const QueryPiece pieces[] = {{.attribute = 0, .flag = 0}, {.attribute = 5, .name1 = "База"_ru}, {.attribute = 255}};
    catalog.CreateQuery("Запрос"_ru, pieces);
  });
  Database base = Database::Open(disk, kPath, Access::kReadWrite);
  const Table table = base.OpenTable("База"_ru);
  Transaction transaction(base.store());
  TableWriter writer(transaction, table, base.PropertiesOf(table));
  std::vector<RowId> rows;
  for (const int number : {7, 3, 900, 1, 5})
    rows.push_back(
        writer.Insert(Values(table, {{"Код"_ru, number},
                                     {"Тема"_ru, Text(number == 3 ? "" : "Тема"_ru)},
                                     {"Текст"_ru, std::string(static_cast<std::size_t>(number) * 10, 'x')}})));
  writer.Delete(rows[2]);
  transaction.Commit();
}

class Compacting : public testing::TestWithParam<Version> {
 protected:
  void SetUp() override { MakeForum(disk, GetParam()); }
  Database Opened(const std::string& path = kPath) { return Database::Open(disk, path, Access::kRead); }

  /// The base is in its place with all that it held, its backup too when there is one; and it can be compacted.
  void ExpectWhole(FaultyFileSystem& files, const std::string& what) {
    Database original = Opened();
    const auto expected = Contents(original);
    for (const std::string& path : {kPath, BackupPath(kPath)}) {
      if (path != kPath && !files.Exists(path)) continue;
      ASSERT_TRUE(files.Exists(path)) << what;
      Database base = Database::Open(files, path, Access::kRead);
      EXPECT_EQ(Contents(base), expected) << what << path;
    }
    EXPECT_TRUE(Compact(files, kPath, {}, nobody).complete) << what;
  }

  FaultyFileSystem disk;
  NoProgress nobody;
};
INSTANTIATE_TEST_SUITE_P(Both, Compacting, testing::ValuesIn(kBothVersions),
                         [](const auto& tested) { return tested.param == Version::kJet3 ? "Jet3" : "Jet4"; });

TEST_P(Compacting, KeepsAllThatTheBaseHoldsAndTheOldFileBesideIt) {
  const std::string before = disk.Content(kPath);
  disk.SetContent(BackupPath(kPath), "an older backup");
  const CompactResult result = Compact(disk, kPath, {}, nobody);
  EXPECT_TRUE(result.complete);
  EXPECT_LT(result.size_after, result.size_before);
  EXPECT_TRUE(disk.Content(BackupPath(kPath)) == before);
  Database old = Opened(BackupPath(kPath)), now = Opened();
  EXPECT_EQ(Contents(now), Contents(old));
  EXPECT_EQ(IndexNames(now), IndexNames(old));
  EXPECT_TRUE(now.PropertiesOf(now.OpenTable("База"_ru)).Of("Тема"_ru).allow_zero_length);
  EXPECT_THAT(FaultsOf(now), testing::IsEmpty());
  EXPECT_FALSE(disk.Exists(kPath + ".new"));
}

TEST_P(Compacting, SortsByPrimaryKeyAndGoesOnWithNewNumbers) {
  Compact(disk, kPath, {}, nobody);
  Database base = Database::Open(disk, kPath, Access::kReadWrite);
  const Table table = base.OpenTable("База"_ru);
  std::vector<int> numbers;
  for (TableCursor cursor = table.Scan(); cursor.Next();)
    numbers.push_back(cursor.row().Int(table.def().columns.front()));
  EXPECT_THAT(numbers, testing::ElementsAre(1, 3, 5, 7));
  Transaction transaction(base.store());
  const RowId added = TableWriter(transaction, table, {}).Insert({});
  EXPECT_EQ(table.Read(added).Int(table.def().columns.front()), 901);
}

TEST_P(Compacting, IntoAnotherFileLeavesTheBaseAloneAndOverwritesNothing) {
  const std::string before = disk.Content(kPath);
  EXPECT_TRUE(CompactInto(disk, kPath, "copy.mdb", {}, nobody).complete);
  Database old = Opened(), copy = Opened("copy.mdb");
  EXPECT_EQ(Contents(copy), Contents(old));
  EXPECT_THROW(CompactInto(disk, kPath, "copy.mdb", {}, nobody), FileError);
  EXPECT_TRUE(disk.Content(kPath) == before);
  EXPECT_FALSE(disk.Exists(BackupPath(kPath)));
}

TEST_P(Compacting, AWriterKeepsItOut) {
  const Database writer = Database::Open(disk, kPath, Access::kReadWrite);
  EXPECT_THROW(Compact(disk, kPath, {}, nobody), FileError);
  EXPECT_FALSE(disk.Exists(BackupPath(kPath)));
}

TEST_P(Compacting, AUserWhoStopsItFindsTheBaseAsItWas) {
  Stopping user;
  const std::string small = disk.Content(kPath);
  EXPECT_FALSE(Compact(disk, kPath, {}, user).complete);  // while the backup is written
  EXPECT_TRUE(disk.Content(kPath) == small);
  EXPECT_FALSE(disk.Exists(BackupPath(kPath) + ".new"));
  {
    Database base = Database::Open(disk, kPath, Access::kReadWrite);
    const Table table = base.OpenTable("База"_ru);
    Transaction transaction(base.store());
    TableWriter writer(transaction, table, {});
    for (int i = 0; i < 400; ++i) writer.Insert({});
    transaction.Commit();
  }
  const std::string before = disk.Content(kPath);
  EXPECT_FALSE(Compact(disk, kPath, {}, user).complete);
  EXPECT_TRUE(disk.Content(kPath) == before);
  EXPECT_FALSE(disk.Exists(kPath + ".new"));
  EXPECT_FALSE(disk.Exists(BackupPath(kPath)));
}

// Whether it was compacted or not, the base is there with all its messages, and can be compacted again.
TEST_P(Compacting, WhateverFailsTheBaseIsWholeAndInItsPlace) {
  FaultyFileSystem counting(kPath, disk.Content(kPath));
  Compact(counting, kPath, {}, nobody);
  using Fault = FaultyFileSystem::Fault;
  for (const Fault fault : {Fault::kFail, Fault::kTear, Fault::kPowerCut})
    for (std::uint64_t operation = 1; operation <= counting.operations(); ++operation) {
      FaultyFileSystem files(kPath, disk.Content(kPath));
      files.FailAt(operation, fault,
                   fault == Fault::kFail ? FaultyFileSystem::Lasting::kOnce : FaultyFileSystem::Lasting::kFromThenOn);
      try {
        Compact(files, kPath, {}, nobody);
      } catch (const FileError&) {
      }
      const std::string what = counting.log()[operation - 1] + " " + std::to_string(operation);
      if (fault != Fault::kPowerCut) ExpectWhole(*files.AfterKill(), what);
      for (std::uint64_t seed = 0; fault == Fault::kPowerCut && seed < 4; ++seed)
        ExpectWhole(*files.AfterPowerCut(FaultyFileSystem::Unsynced::kMixed, seed), what);
    }
}

TEST(CompactingUnknownOrder, LeavesTheIndexOutOnlyWhenAsked) {
  FaultyFileSystem disk;
  constexpr NewColumn kColumns[] = {{.name = "Код"_ru, .type = ColumnType::kLong},
                                    {.name = "Автор"_ru, .type = ColumnType::kText, .length = 50}};
  const NewIndex indexes[] = {PrimaryKey("PrimaryKey", {kКод}), {.name = "Автор"_ru, .columns = {kАвтор}}};
  CreateBase(disk, kPath, {Version::kJet3, SortOrder::kRussian}, OleDate{40000},
             [&](CatalogWriter& catalog, const Header& header) {
               catalog.CreateTable("База"_ru, DesignTable(header, kColumns, indexes));
             });
  NoProgress nobody;
  EXPECT_THROW(Compact(disk, kPath, {}, nobody), Error);
  const CompactResult result = Compact(disk, kPath, {.leave_unknown_indexes_out = true}, nobody);
  EXPECT_EQ(result.notes.size(), 1u);
  Database base = Database::Open(disk, kPath, Access::kRead);
  EXPECT_THAT(IndexNames(base), testing::ElementsAre(std::string("База"_ru) + "/PrimaryKey/1"));
}

TEST(CompactingSamples, KeepTheirContents) {
  if (!std::filesystem::exists(FORUM_SAMPLES)) GTEST_SKIP() << "no sample bases at " << FORUM_SAMPLES;
  for (const auto& entry : std::filesystem::directory_iterator(FORUM_SAMPLES)) {
    const std::string name = entry.path().filename();
    if (entry.path().extension() != ".mdb" || name.starts_with("refuse")) continue;
    DiskFileSystem real;
    FaultyFileSystem disk(kPath, ReadWholeFile(real, entry.path().string(), 1u << 30));
    NoProgress nobody;
    try {
      const CompactResult result = CompactInto(disk, kPath, "copy.mdb", {.leave_unknown_indexes_out = true}, nobody);
      for (const std::string& note : result.notes) RecordProperty(name, cp1251::ToUtf8(note));
      Database old = Database::Open(disk, kPath, Access::kRead), copy = Database::Open(disk, "copy.mdb", Access::kRead);
      EXPECT_TRUE(Contents(copy) == Contents(old)) << name;
      if (result.notes.empty()) {
        EXPECT_EQ(IndexNames(copy), IndexNames(old)) << name;
      }
      EXPECT_THAT(FaultsOf(copy), testing::IsEmpty()) << name;
    } catch (const Error& error) {
      ADD_FAILURE() << name << ": " << cp1251::ToUtf8(error.what());
    }
  }
}

}  // namespace
}  // namespace jet
