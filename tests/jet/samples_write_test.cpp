// Rows added to and deleted from copies of real bases. Skipped when the folder of samples is absent.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <sstream>

#include "base/cp1251.h"
#include "base/error.h"
#include "jet/faults.h"
#include "jet/writing.h"
#include "support/mdbtools.h"
#include "support/temp_folder.h"

namespace jet {
namespace {

namespace fs = std::filesystem;

std::vector<fs::path> Samples(bool forums_only) {
  std::vector<fs::path> found;
  if (!fs::is_directory(FORUM_SAMPLES)) return found;
  for (const fs::directory_entry& entry : fs::directory_iterator(FORUM_SAMPLES)) {
    const std::string name = entry.path().filename().string();
    const bool forum = name == "ptrv_2002.mdb" || name == "moysha_2001.mdb" || name == "kdv_2002.mdb";
    if (entry.path().extension() == ".mdb" && !name.starts_with("refuse_") && (forum || !forums_only))
      found.push_back(entry.path());
  }
  std::sort(found.begin(), found.end());
  return found;
}

using Rows = std::map<RowId, std::vector<Value>>;

Rows RowsByPlace(const Table& table) {
  Rows rows;
  for (TableCursor cursor = table.Scan(); cursor.Next();)
    for (const Column& column : table.def().columns) rows[cursor.row().id()].push_back(cursor.row().Get(column));
  return rows;
}

std::map<std::string, Rows> AllRows(Database& base) {
  std::map<std::string, Rows> all;
  for (const auto& tables : {base.Tables(), base.SystemTables()})
    for (const CatalogTable& table : tables) all[table.name] = RowsByPlace(base.OpenTableAt(table.definition));
  return all;
}

// All values of a row but those that must not stand twice.
std::vector<Assignment> CopyOf(const Table& table, const std::vector<Value>& row) {
  std::vector<Assignment> values;
  for (std::size_t i = 0; i < row.size(); ++i) {
    const Column& column = table.def().columns[i];
    if (!column.autonumber && !IsNull(row[i])) values.push_back({&column, row[i]});
  }
  return values;
}

TableProperties Lenient(Database& base, const Table& table) {
  TableProperties properties = base.PropertiesOf(table);
  for (const Column& column : table.def().columns) properties[column.name].allow_zero_length = true;
  return properties;
}

class WritableSample : public testing::TestWithParam<fs::path> {
 protected:
  DiskFileSystem files;
  TempFolder folder;
  std::string path = folder / "copy.mdb";
  void SetUp() override {
    fs::copy_file(GetParam(), path);
    fs::permissions(path, fs::perms::owner_all);
  }
};

// A text that may become as long as it can: no index holds it.
const Column* TextToStretch(const TableDef& def) {
  const auto indexed = [&](const Column& column) {
    for (const RealIndex& index : def.real_indexes)
      for (const IndexColumn& part : index.columns)
        if (part.number == column.number) return true;
    return false;
  };
  for (const Column& column : def.columns)
    if (column.type == ColumnType::kText && !column.fixed && !indexed(column)) return &column;
  return nullptr;
}

// In every table some rows go and come back in other places, and some grow until they must move.
TEST_P(WritableSample, ChangedRowsLeaveAllOthersAsTheyWere) {
  Database base = Database::Open(files, path, Access::kReadWrite);
  const std::set<std::string> faults = DamageOf(base);
  std::map<std::string, Rows> expected = AllRows(base);
  int added = 0, deleted = 0;
  for (const CatalogTable& listed : std::vector(base.Tables())) {
    SCOPED_TRACE(cp1251::ToUtf8(listed.name));
    TableDef unrelated = base.OpenTableAt(listed.definition).def();  // else the writer would refuse
    for (LogicalIndex& index : unrelated.logical_indexes) index.relation.side = 0;
    const Table table(base.pages(), unrelated);
    Rows& rows = expected[listed.name];
    Transaction transaction(base.store());
    TableWriter writer(transaction, table, Lenient(base, table));
    const std::vector<std::pair<RowId, std::vector<Value>>> chosen(rows.begin(), rows.end());
    const std::size_t step = 2 + chosen.size() / 40;
    if (const Column* const column = TextToStretch(table.def())) {
      const Assignment longest{column, std::string(column->length / (base.version() == Version::kJet4 ? 2u : 1u), 'w')};
      const auto place = static_cast<std::size_t>(column - table.def().columns.data());
      for (std::size_t i = 1; i < chosen.size(); i += step) {
        writer.Update(chosen[i].first, std::span(&longest, 1));
        rows[chosen[i].first][place] = longest.value;
      }
    }
    for (std::size_t i = 0; i < chosen.size(); i += step) {
      writer.Delete(chosen[i].first);
      rows.erase(chosen[i].first);
      ++deleted;
      try {
        const RowId id = writer.Insert(CopyOf(table, chosen[i].second));
        Row row = table.Read(id);
        for (const Column& column : table.def().columns) rows[id].push_back(row.Get(column));
        ++added;
      } catch (const Error& error) {
        EXPECT_EQ(error.number(), error_number::kNoAccess) << cp1251::ToUtf8(error.what());
      }
    }
    transaction.Commit();
  }
  EXPECT_EQ(DamageOf(base), faults);
  EXPECT_TRUE(AllRows(base) == expected);
  EXPECT_GE(added, deleted / 2) << deleted;
}

class WritableForum : public WritableSample {};

TEST_P(WritableForum, AnotherReaderSeesTheSameRows) {
  if (!mdbtools::AreInstalled()) GTEST_SKIP() << "mdbtools are not installed";
  Database base = Database::Open(files, path, Access::kReadWrite);
  const Table table = base.OpenTable("База"_ru);
  Transaction transaction(base.store());
  TableWriter writer(transaction, table, {});
  int n = 0;
  for (const auto& [id, values] : RowsByPlace(table))
    if (n++ % 3 == 0) writer.Delete(id);
  for (std::int32_t number = 8'000'000; number < 8'000'300; ++number)
    writer.Insert(
        Values(table, {{"Код"_ru, number},
                       {"Вответ"_ru, number - 1},
                       {"Тема"_ru, Text("Тема, новая"_ru)},
                       {"Текст"_ru, Text(std::string(static_cast<std::size_t>(number % 100 * 90 + 1), 'x'))}}));
  transaction.Commit();

  const std::uint32_t rows = table.CountRows();
  EXPECT_EQ(table.ExpectedRows(), rows);
  EXPECT_EQ(mdbtools::Output("mdb-count '" + path + "' База"), std::to_string(rows) + "\n");

  std::istringstream exported(
      mdbtools::Output("mdb-export -H -Q -d '|' -R ';;;\n' '" + path + "' База | grep -a '^8000' | sort"));
  std::int32_t number = 8'000'000;
  for (std::string line; std::getline(exported, line); ++number) {
    const std::string body(static_cast<std::size_t>(number % 100 * 90 + 1), 'x');
    EXPECT_EQ(line.substr(0, 16), std::to_string(number) + "|" + std::to_string(number - 1) + "|") << number;
    EXPECT_NE(line.find("|" + body + "|"), std::string::npos) << number;
  }
  EXPECT_EQ(number, 8'000'300);
}

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(WritableSample);
INSTANTIATE_TEST_SUITE_P(Samples, WritableSample, testing::ValuesIn(Samples(false)),
                         [](const auto& sample) { return sample.param.stem().string(); });
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(WritableForum);
INSTANTIATE_TEST_SUITE_P(Samples, WritableForum, testing::ValuesIn(Samples(true)),
                         [](const auto& sample) { return sample.param.stem().string(); });

}  // namespace
}  // namespace jet
