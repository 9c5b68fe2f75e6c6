#include "jet/table_writer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/cp1251.h"
#include "base/error.h"
#include "jet/data_page.h"
#include "jet/faults.h"
#include "jet/text_codec.h"
#include "jet/vectors.h"
#include "jet/writing.h"

namespace jet {
namespace {

std::string Hex(Bytes bytes) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string hex;
  for (const std::byte byte : bytes) {
    hex += kDigits[std::to_integer<int>(byte) >> 4];
    hex += kDigits[std::to_integer<int>(byte) & 0xF];
  }
  return hex;
}

class Writer : public testing::TestWithParam<Version> {
 protected:
  WritableBase writable{GetParam()};
  Database& base = writable.base;
  const Table& table = writable.messages;
  TableProperties properties;

  Value Text(std::string_view text) const { return jet::Text(text); }
  std::vector<Assignment> Message(std::int32_t number) const {
    return Values(table, {{"Код"_ru, number}, {"Вответ"_ru, 0}, {"Тема"_ru, Text("Тема"_ru)}});
  }
  RowId Find(std::int32_t number) const {
    const Value key = number;
    return *table.Seek(table.def().real_indexes[0], std::span(&key, 1));
  }
  std::set<std::string> NewFaults() {
    const std::set<std::string> before = DamageOf(before_);
    std::set<std::string> faults;
    for (const std::string& fault : DamageOf(base))
      if (!before.contains(fault)) faults.insert(fault);
    return faults;
  }

 private:
  Database before_ = Database::OpenFile(std::make_unique<MemoryFile>(TinyBase(GetParam())));
};

INSTANTIATE_TEST_SUITE_P(BothVersions, Writer, testing::ValuesIn(kBothVersions),
                         [](const auto& version) { return version.param == Version::kJet3 ? "Jet3" : "Jet4"; });

// The rows and the leaf of the primary key as they were written down by hand.
TEST_P(Writer, RowsWrittenAnewAreTheSameBytes) {
  const TinyPages pages = TinyPagesOf(GetParam());
  const Layout& layout = LayoutOf(GetParam());
  {
    Transaction transaction(base.store());
    TableWriter writer(transaction, table, properties);
    for (const std::int32_t number : {1, 2}) writer.Delete(Find(number));
    EXPECT_EQ(table.CountRows(), 0u);
    writer.Insert(Values(table, {{"Код"_ru, 1},
                                 {"Вответ"_ru, 0},
                                 {"Тема"_ru, Text("Привет"_ru)},
                                 {"Дата"_ru, OleDate{36892.5}},
                                 {"Автор"_ru, Text("Иван"_ru)},
                                 {"Текст"_ru, Text("Текст сообщения"_ru)}}));
    writer.Insert(Values(table, {{"Код"_ru, 2},
                                 {"Вответ"_ru, 1},
                                 {"Тема"_ru, Text(std::string(255, 'x'))},
                                 {"Дата"_ru, OleDate{36892.75}},
                                 {"Автор"_ru, Text(std::string(20, 'y'))},
                                 {"АвторMail"_ru, Text("a@b")},
                                 {"Текст"_ru, Text(std::string(40, "Я"_ru[0]))},
                                 {"Картинка"_ru, Text("z")}}));
    transaction.Commit();
  }
  const bool jet3 = GetParam() == Version::kJet3;
  const Page data = base.pages().Read(pages.data());
  const DataPage rows(layout, data, pages.definition);
  ASSERT_EQ(rows.slot_count(), 2u);
  EXPECT_EQ(Hex(rows.Row(0)), jet3 ? vectors::kFirstRow3 : vectors::kFirstRow4);
  EXPECT_EQ(Hex(rows.Row(1)), jet3 ? vectors::kSecondRow3 : vectors::kSecondRow4);
  const Page leaf = base.pages().Read(pages.primary_key());
  const std::string_view entries = jet3 ? vectors::kLeafEntries3 : vectors::kLeafEntries4;
  EXPECT_EQ(Hex(leaf.Slice(0, 0x20)), jet3 ? vectors::kLeafHead3 : vectors::kLeafHead4);
  EXPECT_EQ(Hex(leaf.Slice(layout.index_page.entries, entries.size() / 2)), entries);
  EXPECT_EQ(NewFaults(), std::set<std::string>{});
}

TEST_P(Writer, RefusesWhatTheBaseDoesNotAllowBeforeAnythingChanges) {
  properties["тема"_ru].required = true;
  properties["Автор"_ru].allow_zero_length = true;
  Transaction transaction(base.store());
  TableWriter writer(transaction, table, properties);
  const RowId first = Find(1);
  using error_number::kDuplicateKey, error_number::kRequired, error_number::kZeroLength, error_number::kTextTooLong,
      error_number::kConversion;
  const struct {
    std::vector<Assignment> values;
    int insert, update;  // expected errors, 0 = none
  } cases[] = {
      {Values(table, {{"Код"_ru, 2}, {"Тема"_ru, Text("x")}}), kDuplicateKey, kDuplicateKey},
      {Values(table, {{"Код"_ru, Null{}}, {"Тема"_ru, Text("x")}}), kRequired, kRequired},
      {Values(table, {{"Тема"_ru, Text("x")}}), kRequired, 0},
      {Values(table, {{"Код"_ru, 3}}), kRequired, 0},
      {Values(table, {{"Код"_ru, 3}, {"Тема"_ru, Null{}}}), kRequired, kRequired},
      {Values(table, {{"Код"_ru, 3}, {"Тема"_ru, Text("")}}), kZeroLength, kZeroLength},
      {Values(table, {{"Код"_ru, 3}, {"Тема"_ru, Text("x")}, {"Текст"_ru, Text("")}}), kZeroLength, kZeroLength},
      {Values(table, {{"Код"_ru, 3}, {"Тема"_ru, Text(std::string(256, 'x'))}}), kTextTooLong, kTextTooLong},
      {Values(table, {{"Код"_ru, Text("3")}, {"Тема"_ru, Text("x")}}), kConversion, kConversion},
      {Values(table, {{"Код"_ru, 3}, {"Тема"_ru, Text("x")}, {"Автор"_ru, Text("")}}), 0, 0},
  };
  const auto error_of = [](auto change) {
    try {
      change();
      return 0;
    } catch (const Error& error) {
      return error.number();
    }
  };
  for (const auto& c : cases) {
    for (const bool inserts : {true, false}) {
      const std::size_t changed = base.pages().changed().size();
      const int expected = inserts ? c.insert : c.update;
      // What is allowed would change the rows that the other cases meet.
      if (expected == 0 && &c != std::end(cases) - 1) continue;
      EXPECT_EQ(error_of([&] { inserts ? void(writer.Insert(c.values)) : writer.Update(Find(1), c.values); }), expected)
          << &c - cases;
      EXPECT_TRUE(expected == 0 || base.pages().changed().size() == changed) << &c - cases;
      if (inserts && expected == 0) writer.Delete(Find(3));
    }
  }
  EXPECT_EQ(Find(3), first);  // the last case changed its number, and it kept its address
  transaction.Commit();
  EXPECT_EQ(NewFaults(), std::set<std::string>{});
}

TEST_P(Writer, ARollbackTakesRowsAndCountersBack) {
  const std::uint32_t expected = table.ExpectedRows();
  const auto rows = RowsOf(table);
  const std::uint32_t pages = base.page_count();
  {
    Transaction transaction(base.store());
    TableWriter writer(transaction, table, properties);
    for (std::int32_t number = 3; number < 300; ++number) writer.Insert(Message(number));
    writer.Delete(Find(1));
    EXPECT_EQ(table.ExpectedRows(), expected + 296);
  }
  EXPECT_EQ(table.ExpectedRows(), expected);
  EXPECT_EQ(RowsOf(table), rows);
  EXPECT_EQ(base.page_count(), pages);
  EXPECT_EQ(NewFaults(), std::set<std::string>{});
}

// What fails in the middle of a row leaves nothing to be committed.
TEST_P(Writer, ADamagedBaseEndsTheTransaction) {
  const TinyPages pages = TinyPagesOf(GetParam());
  const std::size_t page_size = LayoutOf(GetParam()).page_size, map_size = GetParam() == Version::kJet3 ? 133 : 69;
  const struct {
    std::size_t damage;
    void (*change)(TableWriter&, const Table&, std::uint32_t data);
  } cases[] = {
      {page_size * (pages.maps() + 1) - 2 * map_size,  // the map of pages with room for rows
       [](TableWriter& writer, const Table& messages, std::uint32_t) {
         writer.Insert(Values(messages, {{"Код"_ru, 3}, {"Текст"_ru, jet::Text(std::string(100, 'x'))}}));
       }},
      {page_size * (pages.primary_key() + 1),  // an index
       [](TableWriter& writer, const Table&, std::uint32_t data) {
         writer.Delete({data, 1});
       }},
  };
  for (const auto& c : cases) {
    std::string image = TinyBase(GetParam());
    image[c.damage] = '\x07';
    WritableBase damaged(image);
    const auto rows = RowsOf(damaged.messages);
    Transaction transaction(damaged.base.store());
    TableWriter writer(transaction, damaged.messages, properties);
    EXPECT_THROW(c.change(writer, damaged.messages, pages.data()), FormatError);
    EXPECT_THROW(transaction.Commit(), Error);
    EXPECT_EQ(RowsOf(damaged.messages), rows);
    EXPECT_TRUE(damaged.base.pages().page_count() == TinyPages::kCount);
  }
}

// More pages than the bits of a map row have room for: all maps turn into references.
TEST_P(Writer, MapsGrowWithTheBase) {
  properties["Текст"_ru].allow_zero_length = true;
  const std::string body(LayoutOf(GetParam()).long_value.largest_single + 1, 'x');  // a page or two each
  Transaction transaction(base.store());
  TableWriter writer(transaction, table, properties);
  constexpr std::int32_t kLast = 1200;
  for (std::int32_t number = 3; number <= kLast; ++number) {
    std::vector<Assignment> values = Message(number);
    values.push_back({table.def().FindColumn("Текст"_ru), body});
    writer.Insert(values);
  }
  EXPECT_GT(base.page_count(), 1024u);
  EXPECT_EQ(NewFaults(), std::set<std::string>{});
  const std::uint32_t most = base.page_count();
  for (std::int32_t number = 3; number <= kLast; ++number) writer.Delete(Find(number));
  EXPECT_EQ(NewFaults(), std::set<std::string>{});
  for (std::int32_t number = 3; number <= kLast; ++number) writer.Insert(Message(number));
  EXPECT_EQ(base.page_count(), most) << "freed pages are taken first";
  transaction.Commit();
  EXPECT_EQ(NewFaults(), std::set<std::string>{});
  EXPECT_EQ(table.CountRows(), static_cast<std::uint32_t>(kLast));
}

// What the engine cannot keep in order it refuses, in words, and the transaction may go on.
TEST_P(Writer, RefusesWhatConcernsAnotherTable) {
  const RowId row = Find(1);
  const std::vector<Assignment> subject = Values(table, {{"Тема"_ru, Text("x")}}),
                                number = Values(table, {{"Код"_ru, 8}});
  Transaction transaction(base.store());
  const auto refused = [&](auto change) {
    try {
      change();
      return false;
    } catch (const Error& error) {
      EXPECT_EQ(error.number(), error_number::kNoAccess);
      EXPECT_THAT(cp1251::ToUtf8(error.what()), testing::HasSubstr("PrimaryKey"));
      return true;
    }
  };
  for (const bool refers : {false, true}) {
    TableDef related = table.def();
    related.logical_indexes[0].relation.side = refers ? 2 : 1;
    TableWriter writer(transaction, Table(base.pages(), related), properties);
    EXPECT_TRUE(refused([&] { writer.Update(row, number); }));
    EXPECT_FALSE(refused([&] { writer.Update(row, subject); }));
    EXPECT_EQ(refused([&] { writer.Insert(Message(refers ? 8 : 7)); }), refers);
    EXPECT_EQ(refused([&] { writer.Delete(row); }), !refers);
  }
  transaction.Commit();
}

TEST_P(Writer, InventsNoGuid) {
  TableDef replicated = base.OpenTable("Виды"_ru).def();
  Column* guid = nullptr;
  for (Column& column : replicated.columns)
    if (column.type == ColumnType::kGuid) guid = &column;
  guid->other_flags |= column_flag::kAutonumberGuid;
  Transaction transaction(base.store());
  TableWriter writer(transaction, Table(base.pages(), replicated), properties);
  const std::vector<Assignment> given = {{&replicated.columns.front(), 7}, {guid, Guid{{1, 2, 3}}}};
  EXPECT_THROW(writer.Insert(std::span(given).first(1)), Error);
  EXPECT_NO_THROW(writer.Insert(given));
  transaction.Commit();
}

// Every column type, both ways, in the table that has them all.
TEST_P(Writer, EveryTypeComesBackAsItWasStored) {
  const Table types = base.OpenTable("Виды"_ru);
  const std::vector<Value> all = {7,
                                  true,
                                  255,
                                  -32768,
                                  Currency{-123456789},
                                  0.25,
                                  1e300,
                                  OleDate{-1.25},
                                  Guid{{1, 2, 3, 4}},
                                  Text("Ё!"_ru),
                                  Binary{std::string("\0\1", 2)},
                                  Text(std::string(70000, "ж"_ru[0])),
                                  Binary{std::string(5000, '\2')},
                                  Numeric{true, {0, 0, 1, 2}, 3}};
  std::vector<Assignment> values;
  for (std::size_t i = 0; i < types.def().columns.size(); ++i) values.push_back({&types.def().columns[i], all[i]});
  Transaction transaction(base.store());
  TableWriter writer(transaction, types, properties);
  const RowId id = writer.Insert(values);
  const auto expect_same = [&] {
    for (const Assignment& assignment : values)
      EXPECT_EQ(types.Read(id).Get(*assignment.column), assignment.value) << cp1251::ToUtf8(assignment.column->name);
  };
  expect_same();
  for (Assignment& assignment : values) {  // one after the other goes; the others stay
    if (assignment.column->number == 0) continue;
    assignment.value = assignment.column->type == ColumnType::kBoolean ? Value(false) : Value(Null{});
    writer.Update(id, std::span(&assignment, 1));
    expect_same();
  }
  transaction.Commit();
}

// Rows of up to the largest size, at every length around the jumps of 256 bytes.
TEST_P(Writer, RowsOfAnyLengthReadBack) {
  Transaction transaction(base.store());
  TableWriter writer(transaction, table, properties);
  std::int32_t number = 3;
  for (std::size_t length = 1; length <= 555; length += length % 256 > 10 && length % 256 < 170 ? 13 : 1, ++number) {
    const std::string theme(std::min<std::size_t>(length, 255), 'a'),
        author(std::clamp<std::size_t>(length, 256, 355) - 255, 'b'),
        mail(std::clamp<std::size_t>(length, 356, 455) - 355, 'c');
    const RowId id = writer.Insert(Values(
        table,
        {{"Код"_ru, number}, {"Тема"_ru, Text(theme)}, {"Автор"_ru, Text(author)}, {"АвторMail"_ru, Text(mail)}}));
    const Row row = table.Read(id);
    EXPECT_EQ(row.Get(*table.def().FindColumn("Тема"_ru)), Text(theme)) << length;
    EXPECT_EQ(row.Get(*table.def().FindColumn("Автор"_ru)), Text(author)) << length;
    EXPECT_EQ(row.Get(*table.def().FindColumn("АвторMail"_ru)), Text(mail)) << length;
  }
}

TEST(CompressText, IsDoneWhereItSavesBytes) {
  const struct {
    std::string_view text;
    bool shorter;
  } cases[] = {{"", false},
               {"ab", false},
               {"abc", true},
               {"Привет"_ru, false},
               {"Привет, abcdef"_ru, true},
               {"вул. Зоряна, 25"_ru, false},
               {std::string_view("abc\0def", 7), false},
               {"©©©©"_ru, true}};
  for (const auto& c : cases) {
    const std::string plain = cp1251::ToUtf16(c.text);
    std::string stored = plain, back;
    CompressText(stored);
    EXPECT_EQ(stored.size() < plain.size(), c.shorter) << cp1251::ToUtf8(c.text);
    EXPECT_TRUE(AppendText(Version::kJet4, AsBytes(stored), back));
    EXPECT_EQ(back, c.text);
  }
  std::string mixed = cp1251::ToUtf16("вул. Зоряна, 251"_ru);
  CompressText(mixed);
  EXPECT_EQ(Hex(AsBytes(mixed)), "FFFE00320443043B042E00200017043E0440044F043D043004002C20323531");
}

}  // namespace
}  // namespace jet
