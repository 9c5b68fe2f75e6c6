// Bases made by hand, so that a machine without samples sees the reader work too.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/cp1251.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "jet/database.h"
#include "jet/text_codec.h"
#include "jet/tiny_base.h"

namespace jet {
namespace {

Database OpenTiny(Version version) { return Database::OpenFile(std::make_unique<MemoryFile>(TinyBase(version))); }

Value Text(std::string_view text) { return std::string(text); }

Value Cell(const Row& row, const Table& table, std::string_view column) {
  return row.Get(*table.def().FindColumn(column));
}

class Reader : public testing::TestWithParam<Version> {
 protected:
  Database base = OpenTiny(GetParam());
};

INSTANTIATE_TEST_SUITE_P(BothVersions, Reader, testing::Values(Version::kJet3, Version::kJet4),
                         [](const auto& version) { return version.param == Version::kJet3 ? "Jet3" : "Jet4"; });

TEST_P(Reader, ListsTablesAndQueries) {
  EXPECT_EQ(base.version(), GetParam());
  EXPECT_EQ(base.code_page(), 1251);
  EXPECT_EQ(base.collation(), 0x0419);
  ASSERT_EQ(base.Tables().size(), 2u);
  EXPECT_EQ(base.Tables()[0].name, "База"_ru);
  EXPECT_EQ(DecodeUtf8(base.version(), AsBytes(base.Tables()[1].stored_name)), "Виды");
  EXPECT_EQ(base.SystemTables().size(), 2u);
  ASSERT_EQ(base.Queries().size(), 1u);
  EXPECT_EQ(base.Queries()[0].name, "Все"_ru);

  const std::vector<QueryRow> rows = base.QueryRows(base.Queries()[0].id);
  ASSERT_EQ(rows.size(), 4u);
  EXPECT_EQ(rows[0].attribute, 0);
  EXPECT_EQ(rows[1].name1, "База"_ru);
  EXPECT_EQ(rows[2].expression, "[Код]"_ru);
  EXPECT_EQ(rows[3].attribute, 255);
  EXPECT_TRUE(base.QueryRows(12345).empty());
}

TEST_P(Reader, FindsTablesInAnyLetterCase) {
  EXPECT_EQ(base.OpenTable("бАЗА"_ru).def().columns.size(), 8u);
  try {
    base.OpenTable("Баз"_ru);
    ADD_FAILURE();
  } catch (const Error& error) {
    EXPECT_EQ(error.number(), error_number::kUnknownTable);
  }
}

TEST_P(Reader, ReadsTheMessagesInOrderOfTheirNumber) {
  const Table table = base.OpenTable("База"_ru);
  const Column& number = *table.def().FindColumn("код"_ru);
  const RealIndex* const index = table.def().IndexOn(number);
  ASSERT_NE(index, nullptr);
  EXPECT_TRUE(index->unique && index->required && !index->ignore_nulls);

  IndexCursor cursor = table.Walk(*index);
  ASSERT_TRUE(cursor.Next());
  const Row first = table.Read(cursor.id());
  ASSERT_TRUE(cursor.Next());
  const Row second = table.Read(cursor.id());
  EXPECT_FALSE(cursor.Next());
  const struct {
    std::string_view column;
    Value first, second;
  } cells[] = {
      {"Код"_ru, std::int32_t{1}, std::int32_t{2}},
      {"Вответ"_ru, std::int32_t{0}, std::int32_t{1}},
      {"Тема"_ru, Text("Привет"_ru), Text(std::string(255, 'x'))},
      {"Дата"_ru, OleDate{36892.5}, OleDate{36892.75}},
      {"Автор"_ru, Text("Иван"_ru), Text(std::string(20, 'y'))},
      {"АвторMail"_ru, Null{}, Text("a@b")},
      {"Текст"_ru, Text("Текст сообщения"_ru), Text(std::string(40, "Я"_ru[0]))},
      {"Картинка"_ru, Null{}, Text("z")},
  };
  for (const auto& cell : cells) {
    EXPECT_EQ(Cell(first, table, cell.column), cell.first) << cp1251::ToUtf8(cell.column);
    EXPECT_EQ(Cell(second, table, cell.column), cell.second) << cp1251::ToUtf8(cell.column);
  }
}

TEST_P(Reader, SeeksByValue) {
  const Table table = base.OpenTable("База"_ru);
  const RealIndex& index = *table.def().IndexOn(*table.def().FindColumn("Код"_ru));
  for (const std::int32_t number : {-1, 0, 1, 2, 3}) {
    const Value key = number;
    const std::optional<RowId> found = table.Seek(index, {&key, 1});
    ASSERT_EQ(found.has_value(), number == 1 || number == 2) << number;
    if (found) {
      EXPECT_EQ(Cell(table.Read(*found), table, "Код"_ru), Value(number));
    }
  }
}

// Addresses may be out of date; those of live rows never are, however the table keeps the set of its pages.
TEST_P(Reader, TellsLiveAddressesFromOthers) {
  Row row;
  for (const std::string_view name : {"База"_ru, "Виды"_ru}) {
    const Table table = base.OpenTable(name);
    for (TableCursor cursor = table.Scan(); cursor.Next();) {
      const RowId live = cursor.row().id();
      EXPECT_TRUE(table.TryRead(live, row));
      EXPECT_FALSE(table.TryRead({live.page, 254}, row));
      EXPECT_FALSE(table.TryRead({table.def().page, live.slot}, row));
    }
    EXPECT_FALSE(table.TryRead({1u << 23, 0}, row));
  }
}

TEST_P(Reader, ReadsEveryType) {
  const Table table = base.OpenTable("Виды"_ru);
  TableCursor cursor = table.Scan();
  ASSERT_TRUE(cursor.Next());
  const Row full = cursor.row();
  ASSERT_TRUE(cursor.Next());
  const Row empty = cursor.row();
  EXPECT_FALSE(cursor.Next());
  EXPECT_EQ(full.id(), (RowId{TinyPages::kTypesData, 0}));  // the pointer's address, not the data's
  const struct {
    std::string_view column;
    Value want;
  } cells[] = {
      {"Код"_ru, std::int32_t{-5}},
      {"Да"_ru, true},
      {"Байт"_ru, std::int32_t{200}},
      {"Целое"_ru, std::int32_t{-2}},
      {"Деньги"_ru, Currency{123456}},
      {"Одинарное"_ru, 0.5},
      {"Двойное"_ru, -2.25},
      {"Дата"_ru, OleDate{36892.5}},
      {"Текст"_ru, Text(GetParam() == Version::kJet3 ? "ё"_ru : "aёbc"_ru)},
      {"Двоичное"_ru, Binary{std::string("\x00\xFF", 2)}},
      {"Memo", Null{}},
      {"Ole", Binary{"four!more"}},
  };
  for (const auto& cell : cells) {
    EXPECT_EQ(Cell(full, table, cell.column), cell.want) << cp1251::ToUtf8(cell.column);
    EXPECT_EQ(Cell(empty, table, cell.column), cell.column == "Да"_ru ? Value(false) : Value(Null{}));
  }
  EXPECT_EQ(GuidText(std::get<Guid>(Cell(full, table, "Guid"))), "{00112233-4455-6677-8899-AABBCCDDEEFF}");
  if (GetParam() == Version::kJet4) {
    EXPECT_EQ(NumericText(std::get<Numeric>(Cell(full, table, "Число"_ru))), "-12.5");
  }
}

TEST_P(Reader, WalksTwoLevelsBothWays) {
  const Table table = base.OpenTable("Виды"_ru);
  for (const Direction direction : {Direction::kForward, Direction::kBackward}) {
    IndexCursor cursor = table.Walk(table.def().real_indexes[0], direction);
    std::vector<unsigned> slots;
    while (cursor.Next()) slots.push_back(cursor.id().slot);
    const std::vector<unsigned> forward = {2, 0}, backward = {0, 2};
    EXPECT_EQ(slots, direction == Direction::kForward ? forward : backward);
  }
}

TEST(Open, RefusesWhatItCannotRead) {
  const std::string jet3 = TinyBase(Version::kJet3), jet4 = TinyBase(Version::kJet4);
  const auto with = [](std::string image, std::size_t at, std::string_view bytes) {
    return image.replace(at, bytes.size(), bytes);
  };
  const struct {
    std::string image;
    std::string_view reason;
  } cases[] = {
      {"", "не является базой"},
      {"Дорогой дневник", "не является базой"},
      {std::string(100'000, '\0'), "не является базой"},
      {with(jet3, kProductAt, kOtherProduct), "другой программы"},
      {with(jet4, kVersionAt, "\x02"), "более новом формате"},
      {with(jet3, kEncodingKeyAt, "\x01"), "закодирована"},
      {with(jet4, kEncodingKeyAt, "\x01"), "закодирована"},
      {with(jet3, kJet3.header.password, "\x01"), "паролем"},
      {with(jet4, kJet4.header.password + 36, "\x01"), "паролем"},
      {jet3.substr(0, 300), "нет и одной страницы"},
      {jet4.substr(0, jet4.size() - 1), "посреди страницы"},
  };
  for (const auto& c : cases) {
    try {
      Database::OpenFile(std::make_unique<MemoryFile>(c.image));
      ADD_FAILURE() << c.reason;
    } catch (const Error& error) {
      EXPECT_EQ(error.number(), error_number::kNotABase) << c.reason;
      EXPECT_THAT(cp1251::ToUtf8(error.what()), testing::HasSubstr(c.reason));
    }
  }
}

TEST(Open, SaysWhenThereIsNoFile) {
  DiskFileSystem files;
  try {
    Database::Open(files, "/nowhere/archive.mdb", Access::kRead);
    ADD_FAILURE();
  } catch (const FileError& error) {
    EXPECT_EQ(error.number(), error_number::kBaseNotFound);
  }
}

TEST(PageFile, KeepsToItsCacheAndNeverMovesAPinnedPage) {
  std::string image;
  for (char page = 0; page < 100; ++page) image += std::string(kJet3.page_size, page);
  const PageFile file(std::make_unique<MemoryFile>(image), kJet3, 4 * kJet3.page_size);
  const Page pinned = file.Read(7);
  for (int round = 0; round < 3; ++round)
    for (std::uint32_t page = 0; page < 100; ++page) ASSERT_EQ(file.Read(page).U8(100), page);
  EXPECT_EQ(pinned.U8(100), 7u);
  std::vector<Page> held;
  for (std::uint32_t page = 0; page < 20; ++page) held.push_back(file.Read(page));  // more than the cache holds
  for (std::uint32_t page = 0; page < 20; ++page) EXPECT_EQ(held[page].U8(kJet3.page_size - 1), page);
  EXPECT_THROW(file.Read(100), FormatError);
}

}  // namespace
}  // namespace jet
