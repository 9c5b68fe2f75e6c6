#include "sql/recordset.h"

#include <gtest/gtest.h>

#include "base/error.h"
#include "support/error_of.h"
#include "test_base.h"

namespace sql {
namespace {

enum class RecordsetKind { kSnapshot, kDynaset };

Recordset Open(SourceCatalog& catalog, std::string_view utf8, RecordsetKind kind) {
  NoProgress progress;
  Plan plan = MakePlan(std::get<Select>(ParseStatement(Ru(utf8))), catalog, kNow, progress);
  std::vector<Field> fields;
  for (const Output& output : plan.outputs) fields.push_back(output.field);
  if (kind == RecordsetKind::kSnapshot) return {fields, MakeSnapshotRows(Execute(plan, progress)), kNow};
  auto keys = ExecuteForKeys(plan, progress);
  return {fields, MakeDynasetRows(std::move(plan), std::move(keys)), kNow};
}

class RecordsetOfKind : public testing::TestWithParam<RecordsetKind> {
 protected:
  Recordset Open(std::string_view utf8) { return sql::Open(forum_, utf8, GetParam()); }
  TestCatalog forum_ = Forum();
};
INSTANTIATE_TEST_SUITE_P(Recordset, RecordsetOfKind,
                         testing::Values(RecordsetKind::kSnapshot, RecordsetKind::kDynaset));

TEST_P(RecordsetOfKind, WithoutRowsHasNoCurrentRecord) {
  Recordset rows = Open("select * from База where Код=99");
  EXPECT_TRUE(rows.Bof() && rows.Eof());
  EXPECT_EQ(rows.RecordCount(), 0);
  constexpr int kNoRecord = error_number::kNoCurrentRecord;
  EXPECT_EQ(ErrorOf([&] { rows.MoveFirst(); }), kNoRecord);
  EXPECT_EQ(ErrorOf([&] { rows.MoveLast(); }), kNoRecord);
  EXPECT_EQ(ErrorOf([&] { rows.MoveNext(); }), kNoRecord);
  EXPECT_EQ(ErrorOf([&] { rows.Int(0); }), kNoRecord);
  rows.FindFirst(Ru("[Код] = 1"));
  EXPECT_TRUE(rows.NoMatch());
}

TEST_P(RecordsetOfKind, IsWalkedTwiceAndCountsWhatItVisited) {
  Recordset rows = Open("select Код, Автор from БазаИндекс order by Код");
  EXPECT_EQ(rows.RecordCount(), 1);
  rows.MoveNext();
  EXPECT_EQ(rows.RecordCount(), 2);
  rows.MoveLast();
  EXPECT_EQ(rows.Int(0), 7);
  EXPECT_EQ(rows.RecordCount(), 7);
  for (int walk = 0; walk < 2; ++walk) {
    std::int32_t expected = 0;
    for (rows.MoveFirst(); !rows.Eof(); rows.MoveNext()) EXPECT_EQ(rows.Int(0), ++expected);
    EXPECT_EQ(expected, 7);
    EXPECT_EQ(rows.RecordCount(), 7);
  }
  EXPECT_FALSE(rows.Bof());
  EXPECT_EQ(ErrorOf([&] { rows.MoveNext(); }), error_number::kNoCurrentRecord);
  EXPECT_EQ(ErrorOf([&] { rows.Text(1); }), error_number::kNoCurrentRecord);
}

TEST_P(RecordsetOfKind, ReadsFieldsByTypeAndNullAsNothing) {
  Recordset rows =
      Open("select Код, Вответ, Тема, Дата, Автор, Код&'/' as П from База where Код in (5,7) order by Код");
  EXPECT_EQ(rows.FieldIndex(Ru("автор")), 4u);
  EXPECT_EQ(ErrorOf([&] { static_cast<void>(rows.FieldIndex(Ru("нет"))); }), error_number::kNoSuchObject);
  EXPECT_FALSE(rows.IsNull(2));
  EXPECT_TRUE(rows.IsNull(3) && rows.IsNull(4));
  EXPECT_EQ(rows.Text(2), "");
  EXPECT_EQ(rows.Text(4), "");
  EXPECT_EQ(rows.Date(3), std::nullopt);
  EXPECT_EQ(rows.Int(3), 0);
  EXPECT_TRUE(jet::IsNull(rows.Get(4)));
  rows.MoveNext();
  EXPECT_EQ(rows.Text(0), "7");
  EXPECT_EQ(rows.Text(5), "7/");
  EXPECT_EQ(rows.Text(4), "Ivan");
  EXPECT_EQ(rows.Date(3)->days, kNow.days - 1);
  EXPECT_EQ(rows.Get(1), jet::Value(5));
  EXPECT_EQ(ErrorOf([&] { rows.Int(4); }), error_number::kTypeMismatch);
}

TEST_P(RecordsetOfKind, FindFirstLooksThroughAllRows) {
  Recordset rows = Open("select Код, Код as Номер, Тема, Автор from База where Автор<>'ivan' order by Код");
  rows.MoveLast();
  const struct {
    std::string_view criterion;
    std::int32_t found;  // 0 = no match
  } cases[] = {
      {"[Код] = 3", 3},
      {"Номер = 3", 3},
      {"[Код] = 99", 0},
      {"[Код] = 2", 0},  // in the table, but not among these rows
      {"Код = 3 And Тема Like 'Re*'", 3},
      {"Код = 3 And Тема Like 'x*'", 0},
      {"Тема Like '*прив*'", 1},
      {"Тема Is Null", 4},
      {"Автор = 'петя'", 1},
  };
  for (const auto& c : cases) {
    rows.FindFirst(Ru(c.criterion));
    EXPECT_EQ(rows.NoMatch(), c.found == 0) << c.criterion;
    if (c.found != 0) {
      EXPECT_EQ(rows.Int(0), c.found) << c.criterion;
    } else {
      EXPECT_EQ(ErrorOf([&] { rows.Int(0); }), error_number::kNoCurrentRecord) << c.criterion;
    }
  }
  rows.FindFirst(Ru("[Код] = 3"));
  rows.MoveNext();
  EXPECT_EQ(rows.Int(0), 4);
  EXPECT_EQ(ErrorOf([&] { rows.FindFirst(Ru("[Дата] = 3")); }), error_number::kUnknownField);
  EXPECT_EQ(ErrorOf([&] { rows.FindFirst("= 3"); }), error_number::kBadStatement);
}

TEST_P(RecordsetOfKind, KeepsAnOrderThatNoIndexGives) {
  Recordset rows = Open("select Код from База order by Вответ desc, Код");
  std::string seen;
  for (; !rows.Eof(); rows.MoveNext()) seen += rows.Text(0);
  EXPECT_EQ(seen, "4672315");
}

TEST(PackedRows, HoldEveryTypeWhole) {
  using jet::ColumnType;
  const std::vector<std::pair<ColumnType, jet::Value>> values = {
      {ColumnType::kBoolean, true},
      {ColumnType::kByte, 255},
      {ColumnType::kInteger, -32768},
      {ColumnType::kLong, std::numeric_limits<std::int32_t>::min()},
      {ColumnType::kCurrency, jet::Currency{std::numeric_limits<std::int64_t>::max()}},
      {ColumnType::kSingle, 0.5},
      {ColumnType::kDouble, 0.1},
      {ColumnType::kDateTime, OleDate{-1.25}},
      {ColumnType::kBinary, jet::Binary{std::string("\0\1", 2)}},
      {ColumnType::kText, std::string(130, 'x')},
      {ColumnType::kOle, jet::Binary{std::string(3'000'000, 'o')}},
      {ColumnType::kMemo, std::string(70'000, 'm')},
      {ColumnType::kGuid, jet::Guid{{1, 2, 3}}},
      {ColumnType::kNumeric, jet::Numeric{true, {0, 0, 0, 35}, 1}},
  };
  std::vector<Field> fields;
  for (const auto& [type, value] : values) fields.push_back({"", type});
  PackedRows rows(fields);
  for (int copy = 0; copy < 2; ++copy) {
    for (const auto& [type, value] : values) rows.Add(copy == 0 ? value : jet::Value());
    rows.Finish();
  }
  for (std::size_t column = 0; column < values.size(); ++column) {
    EXPECT_TRUE(PackedRows::Row(rows, 0).Get(column) == values[column].second) << column;
    EXPECT_FALSE(PackedRows::Row(rows, 0).IsNull(column)) << column;
    EXPECT_TRUE(PackedRows::Row(rows, 1).IsNull(column)) << column;
  }
}

}  // namespace
}  // namespace sql
