// Under the sanitizers: whatever the bytes are, the reader gives rows or an Error.

#include <gtest/gtest.h>

#include <string>

#include "base/bytes.h"
#include "base/cp1251.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "jet/database.h"
#include "jet/read_all.h"
#include "jet/tiny_base.h"

namespace jet {
namespace {

class Damage : public testing::TestWithParam<Version> {
 protected:
  const Layout& layout = LayoutOf(GetParam());
  const TinyPages pages = TinyPagesOf(GetParam());
  const std::string good = TinyBase(GetParam());

  std::size_t At(std::uint32_t page, std::size_t offset) const { return page * layout.page_size + offset; }
  std::string With(std::size_t at, std::string_view bytes) const {
    std::string image = good;
    return image.replace(at, bytes.size(), bytes);
  }
  std::string WithNumber(std::size_t at, std::uint32_t number) const {
    std::string image = good;
    StoreU32(std::as_writable_bytes(std::span(image)), at, number);
    return image;
  }
  std::size_t RowStart(std::uint32_t page, std::size_t slot) const {
    return At(page, LoadU16(AsBytes(good), At(page, layout.data_page.row_table + 2 * slot)) & kRowStart);
  }
};

INSTANTIATE_TEST_SUITE_P(BothVersions, Damage, testing::Values(Version::kJet3, Version::kJet4),
                         [](const auto& version) { return version.param == Version::kJet3 ? "Jet3" : "Jet4"; });

TEST_P(Damage, TheUndamagedBaseIsReadWithoutErrors) {
  const Seen seen = ReadAll(good);
  EXPECT_EQ(seen.errors, 0u);
  EXPECT_EQ(seen.rows, 2u + 2u + 5u + 4u + 4u);  // База, Виды, MSysObjects, MSysQueries, the query's pieces
  EXPECT_EQ(seen.entries, 2u * 2u * (2u + 2u + 2u));
}

TEST_P(Damage, AnyByteMayLie) {
  std::size_t errors = 0;
  for (std::size_t at = 0; at < good.size(); ++at) {
    if (good[at] == 0 && at % 61 != 0) continue;  // gaps, mostly
    for (const unsigned flip : {0x01u, 0x55u, 0x80u, 0xFFu})
      errors += ReadAll(With(at, std::string(1, static_cast<char>(good[at] ^ static_cast<char>(flip))))).errors;
  }
  EXPECT_GT(errors, 1000u);
}

TEST_P(Damage, ACutBaseLosesRowsOnlyWithAnError) {
  const std::size_t all = ReadAll(good).rows;
  for (std::uint32_t kept = 0; kept < TinyPages::kCount; ++kept) {
    const Seen seen = ReadAll(good.substr(0, kept * layout.page_size));
    EXPECT_TRUE(seen.errors > 0 || seen.rows == all) << kept;
  }
}

// Each of these once hung, crashed or would: now they end in an Error that names the page.
TEST_P(Damage, CirclesAndWrongNumbersAreNamed) {
  const IndexPageLayout& index = layout.index_page;
  const std::uint32_t types = TinyPages::kTypesDefinition, data = TinyPages::kTypesData;
  const std::size_t moved_to = RowStart(data, 0);
  const struct {
    std::string_view what;
    std::string image;
    std::int64_t page;
  } cases[] = {
      {"definition that goes on on itself", With(At(types, 0), std::string("\x02\x01\0\0\x08\0\0\0\xFF\xFF\0\0", 12)),
       types},
      {"definition longer than the file", WithNumber(At(types, kDefinitionLengthAt), 0xFFFFFFF0), types},
      {"more indexes than bytes", WithNumber(At(types, layout.table_def.real_indexes), 0x7FFFFFFF), types},
      {"pointer to itself", WithNumber(moved_to, data << 8), data},
      {"pointer to nowhere", WithNumber(moved_to, 0xFFFFFF00), 0xFFFFFF},
      {"chain that comes back", WithNumber(RowStart(TinyPages::kChain, 0), TinyPages::kChain << 8), TinyPages::kChain},
      {"row beyond the page", With(At(data, layout.data_page.row_table + 4), "\xFF\x1F"), data},
      {"too many rows", With(At(data, layout.data_page.row_count), "\xFF\xFF"), data},
      {"leaves in a circle", WithNumber(At(26, index.next), 15), -1},
      {"node in a circle", With(At(TinyPages::kNode, index.entries + 8), std::string(1, char{TinyPages::kNode})),
       TinyPages::kNode},
      {"prefix longer than the entry", With(At(26, index.prefix), "\xFF"), 26},
      {"entries beyond the page", With(At(26, index.entries - 1), "\xFE"), 26},
      {"data page of another table", WithNumber(At(data, kOwnerAt), 3), data},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    Database base = Database::OpenFile(std::make_unique<MemoryFile>(c.image));
    try {
      const Table table = base.OpenTable("Виды"_ru);
      std::string value;
      for (TableCursor cursor = table.Scan(); cursor.Next();)
        for (const Column& column : table.def().columns) cursor.row().ReadStored(column, value);
      for (IndexCursor cursor = table.Walk(table.def().real_indexes[0]); cursor.Next();) table.Read(cursor.id());
      ADD_FAILURE() << "read without an error";
    } catch (const FormatError& error) {
      if (c.page >= 0) {
        EXPECT_EQ(error.page(), c.page) << cp1251::ToUtf8(error.what());
      }
    }
  }
}

TEST_P(Damage, AWrongRowCountIsNoError) {
  EXPECT_EQ(ReadAll(WithNumber(At(pages.definition, layout.table_def.rows), 77777)).errors, 0u);
}

}  // namespace
}  // namespace jet
