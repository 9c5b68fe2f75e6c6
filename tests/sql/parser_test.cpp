#include "sql/parser.h"

#include <gtest/gtest.h>

#include "base/error.h"
#include "sql/lexer.h"
#include "test_base.h"

namespace sql {
namespace {

std::string ErrorOf(const std::string& statement) {
  try {
    ParseStatement(statement);
    return "no error";
  } catch (const SqlError& e) {
    EXPECT_EQ(e.number(), error_number::kBadStatement);
    return cp1251::ToUtf8(e.what());
  }
}

TEST(Parser, NamesTheCulprit) {
  const struct {
    std::string_view statement, culprit;
  } cases[] = {
      {"", "оборван"},
      {"select", "оборван"},
      {"select *", "оборван"},
      {"update t set a = 1", "«update t set"},
      {"select a b from t", "«b from t»"},
      {"select * from t where", "оборван"},
      {"select * from t where a like '*it's*'", "s*'"},
      {"select * from t where a = 'x", "'x»"},
      {"select * from t where a = 5abc", "«5a»"},
      {"select * from [t", "«[t»"},
      {"select * from []", "«[]»"},
      {"select * from t where d > #32/13/2002#", "#32/13/2002#"},
      {"select * from t where d > #1/2/2002 25:00#", "25:00"},
      {"select * from t where d > #1/2", "«#1/2»"},
      {"select * from t where a = ?", "«?»"},
      {"select * from t where (a = 1", "оборван"},
      {"select * from t where a in 1", "«1»"},
      {"select * from t where a between 1 or 2", "«or 2»"},
      {"select * from t, u", "нескольких таблиц"},
      {"select * from t inner join u on t.a = u.a", "нескольких таблиц"},
      {"select top 0 * from t", "«0 * from t»"},
      {"select * from t order by", "оборван"},
      {"select * from t; select", "«select»"},
      {"select from from t", "«from from t»"},
      {"delete a from t", "«a from t»"},
  };
  for (const auto& c : cases) {
    const std::string error = ErrorOf(Ru(c.statement));
    EXPECT_NE(error.find(c.culprit), std::string::npos) << c.statement << ": " << error;
  }
}

TEST(Parser, ReadsDeletes) {
  for (const std::string_view statement : {"DELETE * FROM База WHERE Код=12", "delete from [База] where код = 12;"}) {
    const auto parsed = std::get<Delete>(ParseStatement(Ru(statement)));
    EXPECT_EQ(parsed.from.name, Ru("База"));
    ASSERT_TRUE(parsed.where.has_value());
    EXPECT_EQ(parsed.where->op, Operator::kEqual);
  }
}

// None of these may exhaust the stack or memory.
TEST(Parser, BoundsWhatHostileStatementsCost) {
  const auto repeated = [](std::string_view piece, std::size_t times) {
    std::string text;
    for (std::size_t i = 0; i < times; ++i) text += piece;
    return text;
  };
  const std::string start = "select * from t where ";
  for (const std::string_view piece : {"(", "not ", "- ", "a in (", "min("}) {
    const std::string error = ErrorOf(start + repeated(piece, 60'000 / piece.size()) + "1");
    EXPECT_NE(error.find("вложенных"), std::string::npos) << piece << error;
  }
  for (const std::string_view piece : {"1+", "1*", "1&", "1="}) {
    const std::string error = ErrorOf(start + repeated(piece, 30'000) + "1");
    EXPECT_NE(error.find("сложное"), std::string::npos) << piece << error;
  }
  EXPECT_EQ(ErrorOf(start + repeated("(", 90) + "1" + repeated(")", 90)), "no error");
  EXPECT_EQ(ErrorOf(start + repeated("a=1 or ", 9'000) + "a=2"), "no error");
  EXPECT_NE(ErrorOf(start + repeated(" ", kLongestStatement) + "a").find("длинный"), std::string::npos);
}

TEST(Parser, TellsStatementsFromNames) {
  const struct {
    std::string_view text;
    bool statement;
  } cases[] = {
      {"", false},       {"База", false},       {"select * from t", true}, {" SELECT\r\n* from t", true},
      {"select", false}, {"selected x", false}, {"delete * from t", true}, {"select[a] from t", true},
  };
  for (const auto& c : cases) EXPECT_EQ(LooksLikeStatement(Ru(c.text)), c.statement) << c.text;
}

}  // namespace
}  // namespace sql
