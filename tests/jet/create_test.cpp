#include "jet/create.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "base/cp1251.h"
#include "base/error.h"
#include "base/progress.h"
#include "base/ru_literal.h"
#include "jet/faults.h"
#include "jet/index.h"
#include "jet/journal.h"
#include "jet/table_design.h"
#include "jet/vectors.h"
#include "jet/writing.h"

namespace jet {
namespace {

constexpr OleDate kNow{40000.5};
const std::string kPath = "new.mdb";

std::string Hex(std::string_view bytes) {
  std::string hex;
  for (const char byte : bytes) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    hex += kDigits[static_cast<std::uint8_t>(byte) >> 4];
    hex += kDigits[static_cast<std::uint8_t>(byte) & 15];
  }
  return hex;
}

// Columns of indexes; clang 14 cannot convert such literals inside a list.
constexpr std::string_view kКод = "Код"_ru, kВответ = "Вответ"_ru;

constexpr NewColumn kColumns[] = {{.name = "Код"_ru, .type = ColumnType::kLong},
                                  {.name = "Вответ"_ru, .type = ColumnType::kLong},
                                  {.name = "Тема"_ru, .type = ColumnType::kText, .length = 255},
                                  {.name = "Дата"_ru, .type = ColumnType::kDateTime},
                                  {.name = "Автор"_ru, .type = ColumnType::kText, .length = 100},
                                  {.name = "АвторMail"_ru, .type = ColumnType::kText, .length = 100},
                                  {.name = "Текст"_ru, .type = ColumnType::kMemo},
                                  {.name = "Картинка"_ru, .type = ColumnType::kText, .length = 50}};

TableDef DesignMessages(const Header& header) {
  const NewIndex indexes[] = {PrimaryKey("PrimaryKey", {kКод}), {.name = "Вответ"_ru, .columns = {kВответ}}};
  return DesignTable(header, kColumns, indexes);
}

void AddMessages(CatalogWriter& catalog, const Header& header) {
  catalog.CreateTable("База"_ru, DesignMessages(header));
}

void AddNothing(CatalogWriter&, const Header&) {}

void Make(FileSystem& files, NewBase kind, auto fill) { CreateBase(files, kPath, kind, kNow, fill); }

std::vector<std::string> EntriesOf(Database& base, std::string_view table, std::size_t index) {
  const Table opened = base.OpenTable(table);
  std::vector<std::string> entries;
  for (IndexCursor cursor = opened.Walk(opened.def().real_indexes[index]); cursor.Next();) {
    const RowId id = cursor.id();
    entries.push_back(Hex(AsText(cursor.key())) + " " + std::to_string(id.page) + "/" + std::to_string(id.slot));
  }
  return entries;
}

void ExpectSound(Database& base) { EXPECT_THAT(FaultsOf(base), testing::IsEmpty()); }

class Create : public testing::TestWithParam<Version> {
 protected:
  Version version() const { return GetParam(); }
  bool jet3() const { return version() == Version::kJet3; }
  Database Opened() { return Database::Open(disk, kPath, Access::kRead); }

  FaultyFileSystem disk;
};
INSTANTIATE_TEST_SUITE_P(Both, Create, testing::ValuesIn(kBothVersions),
                         [](const auto& tested) { return tested.param == Version::kJet3 ? "Jet3" : "Jet4"; });

TEST_P(Create, WritesTheHeaderAsTheEngineDoes) {
  Make(disk, {version(), SortOrder::kRussian}, AddNothing);
  EXPECT_EQ(Hex(disk.Content(kPath).substr(0, 0xA0)), jet3() ? vectors::kHeader3 : vectors::kHeader4);
}

TEST_P(Create, AnEmptyBaseHasThePagesThatTheEngineGivesIt) {
  Make(disk, {version(), SortOrder::kGeneral}, AddNothing);
  const std::string content = disk.Content(kPath);
  const std::size_t page = LayoutOf(version()).page_size;
  EXPECT_EQ(content.size(), (jet3() ? 20 : 16) * page);
  if (jet3()) {
    EXPECT_EQ(Hex(content.substr(page, 14)), "0101E8060100000002007B07F606");
    EXPECT_EQ(Hex(content.substr(page + 0x77B, 12)), "00000000000000F0FFFFFFFF");
  } else {
    EXPECT_EQ(Hex(content.substr(page, 18)), "0101640F01000000000000000200BB0F760F");
    EXPECT_EQ(Hex(content.substr(page + 0xFBB, 12)), "00000000000000FFFFFFFFFF");
  }
  const std::uint32_t sizes[][4] = {{708, 223, 319, 526}, {1050, 335, 525, 813}};
  for (const std::uint32_t table : {0, 1, 2, 3})
    EXPECT_EQ(LoadU32(AsBytes(content), (kCatalogPage + table) * page + kDefinitionLengthAt),
              sizes[jet3() ? 0 : 1][table]);
  Database base = Opened();
  EXPECT_TRUE(base.Tables().empty());
  EXPECT_EQ(base.SystemTables().size(), 4u);
  ExpectSound(base);
}

TEST_P(Create, DefinesATableAsTheEngineDoes) {
  Make(disk, {version(), SortOrder::kRussian}, AddMessages);
  const std::string_view expected = jet3() ? vectors::kDefinition3 : vectors::kDefinition4;
  const std::size_t at = (jet3() ? 20 : 16) * LayoutOf(version()).page_size;
  EXPECT_EQ(Hex(disk.Content(kPath).substr(at, expected.size() / 2)), expected);
}

TEST_P(Create, ListsNamesInTheOrderOfTheirKeys) {
  Make(disk, {version(), SortOrder::kRussian}, AddMessages);
  Database base = Opened();
  const std::vector<std::string> entries = EntriesOf(base, "MSysObjects", 0);
  const std::vector<std::string> expected3 = {
      "7F8F0000007F64607760616076667600"
      " 18/1",
      "7F8F0000007F75666D60776A727076696A737600 18/2",
      "7F8F0000007F7760616D667600 18/0",
      "7F8F0000017F6F767D766062667600 18/5",
      "7F8F0000017F6F767D7672616B6662777600 18/4",
      "7F8F0000017F6F767D76747866756A667600 18/6",
      "7F8F0000017F6F767D7675666D60776A727076696A737600 18/7",
      "7F8F0000017F85848C8400 18/8",
      "7F8F0000027F6F767D76646100 18/3"};
  const std::vector<std::string> expected4 = {"7F8F0000007F4F4A6D4A4C4A6B516B0100 14/1",
                                              "7F8F0000007F69515E4A6D5964626B5759666B0100 14/2",
                                              "7F8F0000007F6D4A4C5E516B0100 14/0",
                                              "7F8F0000017F606B766B4A4D516B0100 14/5",
                                              "7F8F0000017F606B766B644C5B514D6D6B0100 14/4",
                                              "7F8F0000017F606B766B686F516959516B0100 14/6",
                                              "7F8F0000017F606B766B69515E4A6D5964626B5759666B0100 14/7",
                                              "7F8F0000017F7930792F7939792F0100 14/8",
                                              "7F8F0000027F606B766B4F4C0100 14/3"};
  EXPECT_EQ(entries, jet3() ? expected3 : expected4);
}

TEST_P(Create, ADefinitionOfSeveralPagesIsReadBack) {
  std::vector<std::string> names;
  for (int i = 0; i < 255; ++i) names.push_back("Столбец с длинным именем "_ru.data() + std::to_string(i));
  Make(disk, {version(), SortOrder::kGeneral}, [&](CatalogWriter& catalog, const Header& header) {
    std::vector<NewColumn> columns;
    for (const std::string& name : names) columns.push_back({.name = name, .type = ColumnType::kInteger});
    columns[3].type = ColumnType::kBoolean;
    columns[4].type = ColumnType::kMemo;
    catalog.CreateTable("Широкая"_ru, DesignTable(header, columns, {}));
  });
  Database base = Opened();
  const Table table = base.OpenTable("широкая"_ru);
  ASSERT_EQ(table.def().columns.size(), names.size());
  for (std::size_t i = 0; i < names.size(); ++i) EXPECT_EQ(table.def().columns[i].name, names[i]);
  ExpectSound(base);
}

TEST_P(Create, PropertiesAndRowsOfANewTableAreKept) {
  for (const SortOrder order : {SortOrder::kGeneral, SortOrder::kRussian}) {
    FaultyFileSystem files;
    Make(files, {version(), order}, [](CatalogWriter& catalog, const Header& header) {
      const NewProperties properties[] = {{.column = "Тема"_ru, .allow_zero_length = true},
                                          {.column = "Дата"_ru, .required = true},
                                          {.column = "Вответ"_ru, .default_value = "0"}};
      catalog.CreateTable("База"_ru, DesignMessages(header), properties);
    });
    Database base = Database::Open(files, kPath, Access::kReadWrite);
    const Table table = base.OpenTable("База"_ru);
    const TableProperties& properties = base.PropertiesOf(table);
    EXPECT_TRUE(properties.Of("Тема"_ru).allow_zero_length);
    EXPECT_FALSE(properties.Of("Автор"_ru).allow_zero_length);
    EXPECT_TRUE(properties.Of("Дата"_ru).required);
    EXPECT_EQ(properties.Of("Вответ"_ru).default_value, "0");
    Transaction transaction(base.store());
    TableWriter writer(transaction, table, properties);
    writer.Insert(Values(table, {{"Код"_ru, 1}, {"Тема"_ru, Text("")}, {"Дата"_ru, OleDate{1}}}));
    EXPECT_THROW(writer.Insert(Values(table, {{"Код"_ru, 2}})), Error);
    transaction.Commit();
    EXPECT_EQ(table.CountRows(), 1u);
    ExpectSound(base);
  }
}

TEST_P(Create, NamesThatAreTakenOrImpossibleAreRefused) {
  const struct {
    std::string_view name;
    int error;
  } kCases[] = {{"БАЗА"_ru, error_number::kDuplicateKey}, {"msysobjects", error_number::kDuplicateKey},
                {"", error_number::kBadArgument},         {"а.б"_ru, error_number::kBadArgument},
                {" а"_ru, error_number::kBadArgument},    {"a\tb", error_number::kBadArgument}};
  for (const auto& c : kCases) {
    try {
      Make(disk, {version(), SortOrder::kGeneral}, [&](CatalogWriter& catalog, const Header& header) {
        AddMessages(catalog, header);
        catalog.CreateQuery(c.name, {});
      });
      ADD_FAILURE() << c.name;
    } catch (const Error& error) {
      EXPECT_EQ(error.number(), c.error) << c.name;
    }
    EXPECT_FALSE(disk.Exists(kPath));
    EXPECT_FALSE(disk.Exists(kPath + ".new"));
  }
}

TEST_P(Create, NeverOverwritesAFile) {
  disk.SetContent(kPath, "a user's file");
  EXPECT_THROW(Make(disk, {version(), SortOrder::kGeneral}, AddMessages), FileError);
  EXPECT_EQ(disk.Content(kPath), "a user's file");
}

TEST_P(Create, WhateverFailsThereIsAWholeBaseOrNone) {
  FaultyFileSystem whole;
  Make(whole, {version(), SortOrder::kGeneral}, AddMessages);
  for (const auto fault : {FaultyFileSystem::Fault::kFail, FaultyFileSystem::Fault::kPowerCut})
    for (std::uint64_t operation = 1; operation <= whole.operations(); ++operation) {
      FaultyFileSystem files;
      files.FailAt(operation, fault);
      bool made = true;
      try {
        Make(files, {version(), SortOrder::kGeneral}, AddMessages);
      } catch (const FileError&) {
        made = false;
      }
      const bool cut = fault == FaultyFileSystem::Fault::kPowerCut;
      const auto after = cut ? files.AfterPowerCut(FaultyFileSystem::Unsynced::kMixed, operation) : files.AfterKill();
      const std::string what = whole.log()[operation - 1] + " " + std::to_string(operation);
      if (after->Exists(kPath) && !after->Content(kPath).empty()) {
        Database base = Database::Open(*after, kPath, Access::kRead);
        EXPECT_EQ(base.Tables().size(), 1u) << what;
      } else {
        EXPECT_FALSE(made) << what;
        EXPECT_TRUE(cut || !after->Exists(kPath)) << what;
        EXPECT_TRUE(cut || !after->Exists(kPath + ".new")) << what;
        if (after->Exists(kPath)) after->Remove(kPath);  // keeps the name for a moment
        Make(*after, {version(), SortOrder::kGeneral}, AddMessages);
      }
    }
}

// A journal of the same header and commit counter would be taken for the new base's own.
TEST_P(Create, AJournalLeftByAnOlderBaseDoesNotTouchTheNewOne) {
  int left = 0;
  for (std::uint64_t operation = 1; operation <= 8; ++operation) {
    FaultyFileSystem old;
    Make(old, {version(), SortOrder::kGeneral}, AddMessages);
    {
      Database base = Database::Open(old, kPath, Access::kReadWrite);
      const Table table = base.OpenTable("База"_ru);
      Transaction transaction(base.store());
      TableWriter(transaction, table, {}).Insert(Values(table, {{"Код"_ru, 1}}));
      old.FailAt(operation, FaultyFileSystem::Fault::kFail, FaultyFileSystem::Lasting::kFromThenOn);
      try {
        transaction.Commit();
      } catch (const FileError&) {
      }
    }
    const auto files = old.AfterKill();
    files->Remove(kPath);
    left += files->Exists(JournalPath(kPath)) ? 1 : 0;
    Make(*files, {version(), SortOrder::kGeneral}, AddMessages);
    EXPECT_FALSE(files->Exists(JournalPath(kPath)));
    Database base = Database::Open(*files, kPath, Access::kRead);
    ExpectSound(base);
  }
  EXPECT_GT(left, 2);
}

}  // namespace
}  // namespace jet
