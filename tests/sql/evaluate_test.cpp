#include "sql/evaluate.h"

#include <gtest/gtest.h>

#include "base/error.h"
#include "test_base.h"

namespace sql {
namespace {

// n = 5, t = 'Ivan ', d = now - 2 days, z and zt are Null.
PackedRows OneRow() {
  PackedRows rows({{"n", jet::ColumnType::kLong},
                   {"t", jet::ColumnType::kText},
                   {"d", jet::ColumnType::kDateTime},
                   {"z", jet::ColumnType::kLong},
                   {"zt", jet::ColumnType::kText}});
  rows.Add(Scalar::Long(5));
  rows.Add(Scalar::Text("Ivan "));
  rows.Add(Scalar::Date({kNow.days - 2}));
  rows.Add(Scalar());
  rows.Add(Scalar());
  rows.Finish();
  return rows;
}

std::string Evaluate(std::string_view utf8) {
  const PackedRows rows = OneRow();
  const PackedRows::Row row(rows, 0);
  const BoundExpression bound = Bind(ParseCondition(Ru(utf8)), {rows.fields(), "x", kNow});
  Evaluator evaluator(rows.fields().size());
  evaluator.SetRow(row);
  return Shown(ToValue(evaluator.ValueOf(bound)));
}

struct Case {
  std::string_view expression, value;
};

TEST(Evaluate, ThreeValuedLogic) {
  const Case cases[] = {
      {"z = 5", "Null"},
      {"z <> 5", "Null"},
      {"z = z", "Null"},
      {"zt Like '*'", "Null"},
      {"Null Like '*'", "Null"},
      {"z Is Null", "True"},
      {"n Is Null", "False"},
      {"z Is Not Null", "False"},
      {"Not z = 5", "Null"},
      {"Null Or True", "True"},
      {"True Or Null", "True"},
      {"Null Or False", "Null"},
      {"Null And False", "False"},
      {"False And Null", "False"},
      {"Null And True", "Null"},
      {"Not Null", "Null"},
      {"n In (1, Null)", "Null"},
      {"n In (5, Null)", "True"},
      {"n In (1, 2)", "False"},
      {"n Not In (1, 2)", "True"},
      {"z In (1)", "Null"},
      {"n Between 1 And Null", "Null"},
      {"n Between 6 And Null", "False"},
      {"n Between 5 And 5", "True"},
      {"n Not Between 1 And 4", "True"},
      {"z + 1", "Null"},
      {"-z", "Null"},
      {"zt & 'x' & z", "'x'"},
      {"zt + 'x'", "Null"},
  };
  for (const auto& c : cases) EXPECT_EQ(Evaluate(c.expression), c.value) << c.expression;
}

TEST(Evaluate, Precedence) {
  const Case cases[] = {
      {"1 + 2 * 3", "7"},
      {"(1 + 2) * 3", "9"},
      {"10 - 2 - 3", "5"},
      {"12 / 2 / 3", "2"},
      {"-2 * -3", "6"},
      {"- -2", "2"},
      {"+2", "2"},
      {"1 & 2 + 3", "'15'"},
      {"1 + 2 & 3", "'33'"},
      {"1 & 2 = '12'", "True"},
      {"Not 1 = 2", "True"},
      {"Not 1 = 2 And False", "False"},
      {"True Or True And False", "True"},
      {"(True Or True) And False", "False"},
      {"n Between 1 And 9 And n = 6", "False"},
      {"Not n In (5) Or n = 5", "True"},
      {"n > 3 = True", "True"},
      {"'ab' Like 'a' & '*'", "True"},
      {"'ab' Not Like 'a*'", "False"},
  };
  for (const auto& c : cases) EXPECT_EQ(Evaluate(c.expression), c.value) << c.expression;
}

TEST(Evaluate, ComparesTextsWithoutCaseAndTrailingBlanks) {
  const Case cases[] = {
      {"t = 'ivan'", "True"},          {"t = 'IVAN    '", "True"},
      {"t = ' ivan'", "False"},        {"'   ' = ''", "True"},
      {"'е' = 'ё'", "False"},          {"'Ё' = 'ё'", "True"},
      {"t <> 'ivan'", "False"},        {"'a\t' = 'a'", "False"},
      {"'е' < 'ё'", "True"},           {"'ё' < 'ж'", "True"},
      {"'Z' < 'а'", "True"},           {"'b' < 'A'", "False"},
      {"'a' < 'A '", "False"},         {"'a' >= 'A '", "True"},
      {"t In ('x', 'IVAN')", "True"},  {"t Like 'ivan'", "False"},
      {"t Like 'ivan '", "True"},      {"'it''s' = \"it's\"", "True"},
      {"\"a\"\"b\" = 'a\"b'", "True"}, {"'a|b' & '[c]' = 'A|B[C]'", "True"},
  };
  for (const auto& c : cases) EXPECT_EQ(Evaluate(c.expression), c.value) << c.expression;
}

TEST(Evaluate, NumbersAndDates) {
  const Case cases[] = {
      {"7 / 2", "3.5"},
      {"6 / 2", "3"},
      {".5 + 1e2", "100.5"},
      {"2147483648", "2147483648"},
      {"n * 2 = 10", "True"},
      {"True + 1", "0"},
      {"n = 5.0", "True"},
      {"n & ''", "'5'"},
      {"-3 & 'x'", "'-3x'"},
      {"n Like '#'", "True"},
      {"now() - d", "2"},
      {"d > now()-3", "True"},
      {"d > now()-1", "False"},
      {"#3/15/2002 12:00:00# = now()", "True"},
      {"#3/15/2002 12:00# = now()", "True"},
      {"#3/15/2002# < now()", "True"},
      {"#12/30/1899# & ''", "'0:00:00'"},
      {"x.n", "5"},
      {"[X].[N]", "5"},
      {"x!n", "5"},
      {"yes", "True"},
  };
  for (const auto& c : cases) EXPECT_EQ(Evaluate(c.expression), c.value) << c.expression;
}

TEST(Evaluate, SaysWhatIsWrong) {
  const struct {
    std::string_view expression;
    int number;
    std::string_view culprit;
  } cases[] = {
      {"нет = 1", error_number::kUnknownField, "нет"},
      {"y.n = 1", error_number::kUnknownField, "y.n"},
      {"t = 5", error_number::kTypeMismatch, ""},
      {"t + 1", error_number::kTypeMismatch, ""},
      {"-t", error_number::kTypeMismatch, ""},
      {"t And True", error_number::kTypeMismatch, ""},
      {"2147483647 + n", error_number::kOverflow, ""},
      {"n * 1000000000", error_number::kOverflow, ""},
      {"n / 0", 11, "ноль"},
      {"t Like '['", error_number::kBadPattern, "["},
      {"t Like zt & '['", error_number::kBadPattern, "["},
      {"len(t)", error_number::kBadStatement, "len"},
      {"count(*)", error_number::kBadStatement, "count"},
      {"now(1)", error_number::kBadStatement, "now"},
  };
  for (const auto& c : cases) {
    try {
      ADD_FAILURE() << c.expression << " gave " << Evaluate(c.expression);
    } catch (const Error& e) {
      EXPECT_EQ(e.number(), c.number) << c.expression;
      EXPECT_NE(cp1251::ToUtf8(e.what()).find(c.culprit), std::string::npos) << cp1251::ToUtf8(e.what());
    }
  }
}

}  // namespace
}  // namespace sql
