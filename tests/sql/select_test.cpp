#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/error.h"
#include "test_base.h"

namespace sql {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

struct Case {
  std::string_view statement;
  std::vector<std::string> rows;
};

void ExpectRows(SourceCatalog& catalog, const std::vector<Case>& cases) {
  for (const auto& c : cases) EXPECT_EQ(Result(catalog, c.statement), c.rows) << c.statement;
}

TEST(Select, ChoosesAndOrdersRows) {
  TestCatalog forum = Forum();
  ExpectRows(forum, {
                        {"select код from база where КОД = 99", {}},
                        {"SELECT Код FROM База order by Код", {"1", "2", "3", "4", "5", "6", "7"}},
                        {"SELECT Код FROM База order by [Код] desc", {"7", "6", "5", "4", "3", "2", "1"}},
                        {"select Код, Вответ from База where Вответ=5 order by Код", {"6, 5", "7, 5"}},
                        {"select Код from База order by Вответ desc, Код desc", {"4", "7", "6", "3", "2", "5", "1"}},
                        {"select Код from База where Дата>now()-30 order by Код", {"2", "3", "6", "7"}},
                        {"select Код from База where Дата>now()-3000 or Дата is null order by 1",
                         {"1", "2", "3", "4", "5", "6", "7"}},
                        {"select База.Код from [База] where База.[Код] in (2, 4) order by Код", {"2", "4"}},
                        {"select b.Код from База as b where b.Код = 2", {"2"}},
                        {"select Код from База where [Тема] Like '*ПРИВЕТ*' or [Тема] Like '*5%*' order by Код",
                         {"1", "2", "3"}},
                        {"select Код from База where Автор='ПЕТЯ' order by Код", {"1", "3", "4"}},
                        {"select Код from База where АвторMail<>'' order by Код", {"1", "3", "4", "7"}},
                        {"select Код from База order by Автор, Код", {"5", "2", "7", "1", "3", "4", "6"}},
                        {"select Код + 1 as Номер, Тема & '!' from База where Код = 2", {"3, '5% скидка!'"}},
                        {"select Код from База where Код<3 order by Код*-1", {"2", "1"}},
                        {"select -Код as н from База where Код<3 order by н", {"-2", "-1"}},
                        {"select top 2 Код from База order by Код", {"1", "2"}},
                        {"select top 1 Вответ from База order by Вответ", {"0", "0"}},
                        {"select distinct Автор from База where Код < 5 order by Автор", {"'ivan'", "'ПЕТЯ  '"}},
                        {"select * from База where Код=5", {"5, 0, '', Null, Null, ''"}},
                        {"select База.* from База where Код=4", {"4, 9, Null, #37300.5#, 'петя', 'other@x'"}},
                    });
}

TEST(Select, GroupsAsEqualityCompares) {
  TestCatalog forum = Forum();
  ExpectRows(
      forum,
      {
          {"SELECT Автор, АвторMail FROM База GROUP BY Автор, АвторMail HAVING ((Автор='петя') AND (АвторMail<>''))",
           {"'петя', 'other@x'", "'ПЕТЯ  ', 'petya@x'"}},
          {"SELECT Автор, АвторMail FROM База GROUP BY Автор, АвторMail HAVING Автор='никто'", {}},
          {"select Автор, count(*) as n from База group by Автор",
           {"Null, 1", "'ivan', 2", "'ПЕТЯ  ', 3", "'Пётр', 1"}},
          {"select count(*), count(Дата), min(Код), max(Тема) from База", {"7, 6, 1, 'Привет всем'"}},
          {"select count(*), max(Код) from База where Код>99", {"0, Null"}},
          {"select Вответ from База group by Вответ having count(*)>1 order by Вответ desc", {"5", "1", "0"}},
          {"select Вответ, max(Дата)-min(Дата) from База group by Вответ having count(Дата)=2 order by 2",
           {"1, 1", "5, 1"}},
          {"select Вответ*2, count(*) from База where Код<4 group by Вответ*2", {"0, 1", "2, 2"}},
          {"select АвторMail from База where Код in (5, 6, 2) group by АвторMail", {"Null", "''"}},
          {"select max(Дата) from База where Код=5", {"Null"}},
      });
}

TEST(Select, ReadsSavedQueries) {
  TestCatalog forum = Forum();
  forum.AddQuery(Ru("Свои"), Ru("SELECT Код AS Номер, Автор FROM БазаЗапрос WHERE Автор='ivan';"));
  forum.AddQuery(Ru("Счёт"), Ru("SELECT Автор, count(*) AS Сколько FROM База GROUP BY Автор;"));
  forum.AddQuery(Ru("Верх"), Ru("SELECT TOP 3 * FROM База ORDER BY Код DESC"));
  forum.AddQuery(Ru("Круг"), Ru("SELECT * FROM Круг2"));
  forum.AddQuery(Ru("Круг2"), Ru("SELECT * FROM Круг"));
  forum.AddQuery(Ru("Круг3"), Ru("SELECT count(*) FROM Круг3"));
  ExpectRows(forum, {
                        {"SELECT Код, Вответ, Тема, Дата, Автор from БазаИндекс where Дата>now()-1.5 order by Код",
                         {"7, 5, 'Ещё #21\r\nдва', #37329.5#, 'Ivan'"}},
                        {"select Код from БазаЗапрос", {"1", "2", "3", "4", "5", "6", "7"}},
                        {"select Код from БазаЗапрос where Код>5 order by Код desc", {"7", "6"}},
                        {"select count(*) from БазаЗапрос", {"7"}},
                        {"select * from Свои", {"2, 'ivan'", "7, 'Ivan'"}},
                        {"select Номер from Свои where Свои.Номер<>7", {"2"}},
                        {"select Автор from Счёт where Сколько=3", {"'ПЕТЯ  '"}},
                        {"select Код from Верх order by Код", {"5", "6", "7"}},
                    });
  for (int level = 0; level < 18; ++level) {  // each shows twice what the next one shows
    const std::string next = level == 17 ? "База" : "Вдвое" + std::to_string(level + 1);
    forum.AddQuery(Ru("Вдвое" + std::to_string(level)), Ru("SELECT *, * FROM " + next));
  }
  const struct {
    std::string_view statement;
    int number;
    std::string_view culprit;
  } refusals[] = {
      {"select * from Вдвое0", error_number::kBadStatement, "столбцов"},
      {"select АвторMail from БазаИндекс", error_number::kUnknownField, "АвторMail"},
      {"select Код from Свои", error_number::kUnknownField, "Код"},
      {"select База.Код from БазаИндекс", error_number::kUnknownField, "База.Код"},
      {"select * from Нигде", error_number::kUnknownTable, "Нигде"},
      {"select Нигде.* from База", error_number::kUnknownTable, "Нигде"},
      {"select * from Круг", error_number::kBadStatement, "ссылается"},
      {"select * from Круг3", error_number::kBadStatement, "ссылается"},
      {"select Тема, count(*) from База group by Автор", error_number::kBadStatement, "Тема"},
      {"select Автор from База group by Автор having Тема='x'", error_number::kBadStatement, "Тема"},
      {"select Код from База where count(*)>1", error_number::kBadStatement, "count"},
      {"select Код from База order by 2", error_number::kBadStatement, "2"},
      {"select Код from База order by Ничто", error_number::kUnknownField, "Ничто"},
      {"select Код from База where Тема like '*[*'", error_number::kBadPattern, "*[*"},
  };
  for (const auto& c : refusals) {
    try {
      Result(forum, c.statement);
      ADD_FAILURE() << c.statement;
    } catch (const SqlError& e) {
      EXPECT_EQ(e.number(), c.number) << c.statement;
      EXPECT_THAT(cp1251::ToUtf8(e.what()), HasSubstr(c.culprit)) << c.statement;
    }
  }
}

TEST(Select, NamesFields) {
  TestCatalog forum = Forum();
  NoProgress progress;
  const auto select = std::get<Select>(
      ParseStatement(Ru("select КОД, База.[тема], Вответ as Куда, Код+1, count(*) from База group by Код, Тема, "
                        "Вответ, Код+1")));
  std::vector<std::string> names;
  for (const Output& output : MakePlan(select, forum, kNow, progress).outputs)
    names.push_back(cp1251::ToUtf8(output.field.name));
  EXPECT_THAT(names, ElementsAre("Код", "Тема", "Куда", "Expr1000", "Expr1001"));
}

// An index is used where it saves reading or sorting, and only where the answer stays the same.
TEST(Plan, ChoosesTheWayToTheRows) {
  using Kind = AccessPath::Kind;
  const struct {
    std::string_view statement;
    Kind kind;
    bool sorts;
  } cases[] = {
      {"select * from [База] where Код = 5", Kind::kEqual, false},
      {"select * from База where 5 = Код and Автор = 'x'", Kind::kEqual, false},
      {"select * from База where Код = 5 or Код = 6", Kind::kNatural, false},
      {"select * from База where Код = 5.5", Kind::kNatural, false},
      {"select * from База where Not Код = 5", Kind::kNatural, false},
      {"select * from База where Вответ = 5", Kind::kNatural, false},
      {"select * from БазаЗапрос where Код = 5 order by Код", Kind::kEqual, true},
      {"select Тема from БазаИндекс where Дата>now()-30 order by Код", Kind::kAscending, false},
      {"select * from БазаЗапрос", Kind::kAscending, false},
      {"select * from БазаЗапрос order by Код desc", Kind::kDescending, false},
      {"select * from База order by Код, Тема", Kind::kAscending, false},
      {"select * from База order by Тема, Код", Kind::kNatural, true},
      {"select Код from База group by Код order by Код desc", Kind::kNatural, true},
  };
  TestCatalog forum = Forum();
  NoProgress progress;
  for (const auto& c : cases) {
    const Plan plan = MakePlan(std::get<Select>(ParseStatement(Ru(c.statement))), forum, kNow, progress);
    EXPECT_EQ(plan.path.kind, c.kind) << c.statement;
    EXPECT_EQ(!plan.order.empty(), c.sorts) << c.statement;
  }
}

TEST(Select, CanBeStopped) {
  class Stop : public Progress {
   public:
    bool Advance(int) override { return false; }
  };
  TestCatalog catalog;
  catalog.AddTable("t", {{"a", jet::ColumnType::kLong}}, std::vector<std::vector<jet::Value>>(5000, {jet::Value(1)}));
  Stop stop;
  const Plan plan = MakePlan(std::get<Select>(ParseStatement("select a from t")), catalog, kNow, stop);
  EXPECT_THROW(Execute(plan, stop), SqlError);
}

}  // namespace
}  // namespace sql
