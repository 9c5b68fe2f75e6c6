// Real bases, held against what the format promises. Skipped when the folder of samples is absent.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "base/cp1251.h"
#include "base/error.h"
#include "base/file.h"
#include "jet/database.h"
#include "jet/index_key.h"
#include "jet/index_page.h"
#include "jet/text_codec.h"

namespace jet {
namespace {

namespace fs = std::filesystem;

// The bases whose names begin with "refuse_", or all the others.
std::vector<fs::path> Samples(bool to_refuse) {
  std::vector<fs::path> found;
  if (!fs::is_directory(FORUM_SAMPLES)) return found;
  for (const fs::directory_entry& entry : fs::directory_iterator(FORUM_SAMPLES))
    if (entry.path().extension() == ".mdb" && entry.path().filename().string().starts_with("refuse_") == to_refuse)
      found.push_back(entry.path());
  std::sort(found.begin(), found.end());
  return found;
}

Database OpenSample(const fs::path& path) {
  static DiskFileSystem files;  // bases keep looking at it
  return Database::Open(files, path.string(), Access::kRead);
}

template <typename Check>
void ForEachTable(Database& base, Check check) {
  for (const auto& tables : {base.Tables(), base.SystemTables()})
    for (const CatalogTable& listed : tables) {
      SCOPED_TRACE(cp1251::ToUtf8(listed.name));
      check(base.OpenTableAt(listed.definition));
    }
}

std::vector<RowId> LiveRows(const Table& table) {
  std::vector<RowId> rows;
  for (TableCursor cursor = table.Scan(); cursor.Next();) rows.push_back(cursor.row().id());
  return rows;
}

// Decodes all there is in a row. @return bytes seen
std::size_t DecodeWhole(Version version, const TableDef& def, const Row& row) {
  std::size_t seen = 0;
  std::string stored;
  for (const Column& column : def.columns) {
    row.ReadStored(column, stored);
    seen += stored.size();
    const Value value = row.Get(column);
    EXPECT_EQ(IsNull(value), row.IsNull(column));
    if (const std::string* const text = std::get_if<std::string>(&value)) {
      EXPECT_EQ(cp1251::FromUtf8(DecodeUtf8(version, AsBytes(stored))), *text);
    }
  }
  return seen;
}

struct Entry {
  std::string key;
  RowId id;
  friend bool operator==(const Entry&, const Entry&) = default;
};

std::vector<Entry> Entries(const Table& table, const RealIndex& index, Direction direction) {
  std::vector<Entry> entries;
  for (IndexCursor cursor = table.Walk(index, direction); cursor.Next();)
    entries.push_back({std::string(AsText(cursor.key())), cursor.id()});
  return entries;
}

std::string WholeEntry(const Entry& entry) {
  const RowId id = entry.id;
  std::string whole = entry.key;
  for (const std::uint32_t byte : {id.page >> 16, id.page >> 8, id.page, std::uint32_t{id.slot}})
    whole += static_cast<char>(static_cast<std::uint8_t>(byte));
  return whole;
}

void ExpectIndexListsLiveRows(Version version, const Table& table, const RealIndex& index) {
  const std::vector<Entry> entries = Entries(table, index, Direction::kForward);
  std::vector<Entry> backwards = Entries(table, index, Direction::kBackward);
  std::reverse(backwards.begin(), backwards.end());
  EXPECT_TRUE(entries == backwards);
  for (std::size_t i = 1; i < entries.size(); ++i)
    ASSERT_LT(CompareBytes(AsBytes(WholeEntry(entries[i - 1])), AsBytes(WholeEntry(entries[i]))), 0) << i;

  std::set<RowId> listed;
  for (const Entry& entry : entries) {
    const Row row = table.Read(entry.id);
    listed.insert(entry.id);
    const std::optional<std::string> key = KeyOfRow(version, table.def(), index, row);
    EXPECT_EQ(key.value_or(entry.key), entry.key) << entry.id.page << '/' << int{entry.id.slot};
  }
  EXPECT_EQ(listed.size(), entries.size());
  for (const RowId id : LiveRows(table)) {
    const bool left_out = index.ignore_nulls && AllKeyColumnsNull(table.def(), index, table.Read(id));
    EXPECT_EQ(listed.contains(id), !left_out) << id.page << '/' << int{id.slot};
  }
}

// A seek must give the first entry with the key forward and the last one backward.
void ExpectSeekFindsEveryKey(const Table& table, const RealIndex& index) {
  const std::vector<Entry> entries = Entries(table, index, Direction::kForward);
  const auto same_key = [](const Entry& a, const Entry& b) { return a.key == b.key; };
  for (std::size_t i = 0; i < entries.size(); i += std::max<std::size_t>(1, entries.size() / 50)) {
    std::size_t first = i, last = i;
    while (first > 0 && same_key(entries[first - 1], entries[i])) --first;
    while (last + 1 < entries.size() && same_key(entries[last + 1], entries[i])) ++last;
    IndexCursor forward = table.Walk(index), backward = table.Walk(index, Direction::kBackward);
    forward.Seek(AsBytes(entries[i].key));
    backward.Seek(AsBytes(entries[i].key));
    ASSERT_TRUE(forward.Next() && backward.Next());
    EXPECT_EQ(forward.id(), entries[first].id);
    EXPECT_EQ(backward.id(), entries[last].id);
    EXPECT_EQ(forward.Next(), first + 1 < entries.size());
    EXPECT_EQ(backward.Next(), last > 0);
  }
}

// @return the greatest entry below the page, having checked every node above it
std::string CheckSubtree(const PageFile& file, std::uint32_t table, std::uint32_t number) {
  IndexEntries entries(file, file.Read(number), table);
  std::string greatest;
  while (entries.Next()) {
    greatest = AsText(entries.key_and_row());
    if (entries.leaf()) continue;
    EXPECT_EQ(CheckSubtree(file, table, entries.child()), greatest) << "node " << number;
  }
  if (entries.leaf()) return greatest;
  EXPECT_NE(entries.tail(), 0u) << "node " << number;
  return CheckSubtree(file, table, entries.tail());
}

class ReadableSample : public testing::TestWithParam<fs::path> {};

TEST_P(ReadableSample, EveryRowDecodes) {
  Database base = OpenSample(GetParam());
  std::size_t seen = 0;
  ForEachTable(base, [&](const Table& table) {
    std::uint32_t rows = 0;
    for (TableCursor cursor = table.Scan(); cursor.Next(); ++rows)
      seen += DecodeWhole(base.version(), table.def(), cursor.row());
    EXPECT_EQ(table.CountRows(), rows);
  });
  EXPECT_GT(seen, 1000u);  // the catalog alone holds more
}

TEST_P(ReadableSample, EveryIndexListsExactlyTheLiveRows) {
  Database base = OpenSample(GetParam());
  ForEachTable(base, [&](const Table& table) {
    for (const RealIndex& index : table.def().real_indexes) {
      SCOPED_TRACE(index.root);
      ExpectIndexListsLiveRows(base.version(), table, index);
      ExpectSeekFindsEveryKey(table, index);
      CheckSubtree(base.pages(), table.def().page, index.root);
    }
  });
}

TEST_P(ReadableSample, EverySavedQueryHasItsPieces) {
  Database base = OpenSample(GetParam());
  for (const CatalogQuery& query : base.Queries()) {
    const std::vector<QueryRow> rows = base.QueryRows(query.id);
    ASSERT_GE(rows.size(), 2u) << cp1251::ToUtf8(query.name);
    EXPECT_EQ(rows.front().attribute, 0);
    EXPECT_EQ(rows.back().attribute, 255);
  }
}

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(ReadableSample);
INSTANTIATE_TEST_SUITE_P(Samples, ReadableSample, testing::ValuesIn(Samples(false)),
                         [](const auto& sample) { return sample.param.stem().string(); });

TEST(Samples, ProtectedBasesAreRefused) {
  const std::vector<fs::path> samples = Samples(true);
  if (samples.empty()) GTEST_SKIP() << "no sample bases in " << FORUM_SAMPLES;
  for (const fs::path& path : samples) {
    try {
      OpenSample(path);
      ADD_FAILURE() << path;
    } catch (const Error& error) {
      EXPECT_EQ(error.number(), error_number::kNotABase) << path;
      EXPECT_THAT(cp1251::ToUtf8(error.what()), testing::HasSubstr("парол")) << path;
    }
  }
}

}  // namespace
}  // namespace jet
