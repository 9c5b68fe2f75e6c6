// Rows added and deleted through recordsets and statements.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "base/error.h"
#include "sql/sql_errors.h"
#include "test_base.h"
#include "written_base.h"

namespace sql {
namespace {

using testing::ElementsAre;
using Text = std::string;

class Writing : public testing::TestWithParam<jet::Version> {
 protected:
  const std::string image_ = MessageImage(GetParam());
  WrittenBase written_{image_};
  Connection& connection_ = written_.connection;

  std::vector<std::int32_t> Numbers() {
    std::vector<std::int32_t> numbers;
    for (Recordset rows = connection_.OpenSnapshot("База"_ru); !rows.Eof(); rows.MoveNext())
      numbers.push_back(rows.Int(0));
    return numbers;
  }
};
INSTANTIATE_TEST_SUITE_P(BothVersions, Writing, testing::Values(jet::Version::kJet3, jet::Version::kJet4),
                         [](const auto& version) { return version.param == jet::Version::kJet3 ? "Jet3" : "Jet4"; });

TEST_P(Writing, DeleteTakesTheRowsThatFulfilTheConditionAndSaysHowMany) {
  const struct {
    const char* statement;
    std::int32_t deleted;
    std::vector<std::int32_t> left;
  } cases[] = {
      {"DELETE * FROM База WHERE Код=2", 1, {1, 3, 5}},
      {"DELETE * FROM База WHERE Код=99", 0, {1, 2, 3, 5}},
      {"delete from [база] where [Вответ]=1 and Код>2", 2, {1, 2}},
      {"DELETE * FROM База", 4, {}},
      {"DELETE FROM База AS б WHERE б.Код Between 1 And 2", 2, {3, 5}},
      {"DELETE * FROM Ответы WHERE Код<5", 2, {1, 5}},  // a saved query that chooses rows of one table
  };
  for (const auto& c : cases) {
    WrittenBase base(image_);
    EXPECT_EQ(base.connection.Execute(Ru(c.statement)), c.deleted) << c.statement;
    WrittenBase later(base.disk.Content(kPath));
    std::vector<std::int32_t> left;
    for (Recordset rows = later.connection.OpenSnapshot("База"_ru); !rows.Eof(); rows.MoveNext())
      left.push_back(rows.Int(0));
    EXPECT_EQ(left, c.left) << c.statement;
  }
}

TEST_P(Writing, TopKeepsLevelRowsAlsoWhereAnIndexGivesTheOrder) {
  const struct {
    const char* statement;
    std::vector<std::int32_t> numbers;
  } cases[] = {
      {"SELECT TOP 1 Код FROM База ORDER BY Код DESC", {5}},
      {"SELECT TOP 3 Код FROM База", {1, 2, 3}},
      {"SELECT TOP 2 Код FROM База WHERE Код>1", {2, 3}},
      {"SELECT TOP 1 Код FROM База ORDER BY Вответ", {1}},
      {"SELECT TOP 2 Код FROM База ORDER BY Вответ", {1, 2, 3, 5}},
      {"SELECT DISTINCT TOP 2 Вответ FROM База ORDER BY Код DESC", {1, 0}},
  };
  for (const auto& c : cases) {
    std::vector<std::int32_t> numbers;
    for (Recordset rows = connection_.OpenSnapshot(Ru(c.statement)); !rows.Eof(); rows.MoveNext())
      numbers.push_back(rows.Int(0));
    EXPECT_EQ(numbers, c.numbers) << c.statement;
  }
}

TEST_P(Writing, AStatementThatCannotBeCarriedOutChangesNothing) {
  const struct {
    const char* statement;
    int error;
  } cases[] = {
      {"SELECT * FROM База", error_number::kBadStatement},
      {"DELETE * FROM База WHERE", error_number::kBadStatement},
      {"DELETE * FROM Нет", error_number::kUnknownTable},
      {"DELETE * FROM База WHERE Нет=1", error_number::kUnknownField},
      {"DELETE * FROM База WHERE Автор+1>5", error_number::kTypeMismatch},
      {"DELETE * FROM База WHERE 1/(Код-3)<9", 11},  // fails in the third row
  };
  for (const auto& c : cases) EXPECT_NE(ErrorOf([&] { connection_.Execute(Ru(c.statement)); }), 0) << c.statement;
  EXPECT_EQ(written_.disk.Content(kPath), image_);
  EXPECT_EQ(ErrorOf([&] { connection_.Execute(Ru(cases[0].statement)); }), cases[0].error);
  EXPECT_EQ(ErrorOf([&] { connection_.Execute(Ru(cases[2].statement)); }), cases[2].error);
  EXPECT_EQ(ErrorOf([&] { connection_.Execute(Ru(cases[5].statement)); }), cases[5].error);
}

TEST_P(Writing, StatementsOfATransactionHappenTogetherOrNotAtAll) {
  {
    Transaction dropped(connection_);
    EXPECT_EQ(connection_.Execute("DELETE * FROM База WHERE Код=1"_ru), 1);
    EXPECT_THAT(Numbers(), ElementsAre(2, 3, 5));  // shows at once
  }
  EXPECT_EQ(written_.disk.Content(kPath), image_);
  EXPECT_THAT(Numbers(), ElementsAre(1, 2, 3, 5));

  Recordset rows = connection_.OpenDynaset("База"_ru);
  Transaction kept(connection_);
  connection_.Execute("DELETE * FROM База WHERE Код=1"_ru);
  EXPECT_EQ(ErrorOf([&] { Add(rows, 2); }), error_number::kDuplicateKey);  // refused, the rest goes on
  Add(rows, 7);
  kept.Commit();
  EXPECT_THAT(Numbers(), ElementsAre(2, 3, 5, 7));
}

TEST_P(Writing, AnAddedRowIsStoredWithDefaultsAndConvertedValues) {
  Recordset rows = connection_.OpenDynaset("База"_ru);
  Add(rows, 9);
  Add(rows, 10,
      {{"Вответ"_ru, Text("7")},
       {"Тема"_ru, 12},
       {"Дата"_ru, OleDate{37000.5}},
       {"Почта"_ru, Text("")},
       {"Текст"_ru, Text(9000, 'x')}});
  Add(rows, 11, {{"Вответ"_ru, 2.5}, {"Тема"_ru, Text("")}, {"Текст"_ru, Text("")}, {"Вответ"_ru, jet::Null()}});
  WrittenBase later(written_.disk.Content(kPath));
  later.connection.Execute("DELETE FROM База WHERE Код<9"_ru);
  EXPECT_THAT(Messages(later.connection),
              ElementsAre("9 0 Null Null 'Петя' Null 0",  //
                          "10 7 '12' #37000.5# 'Петя' '' 9000", "11 Null Null Null 'Петя' Null 0"));
}

TEST_P(Writing, AValueThatDoesNotFitIsRefusedWhenItIsSet) {
  Recordset rows = connection_.OpenDynaset("База"_ru);
  rows.AddNew();
  const struct {
    std::string_view field;
    jet::Value value;
    int error;
  } cases[] = {
      {"Код"_ru, Text("много"_ru), error_number::kConversion},
      {"Код"_ru, 3e9, error_number::kConversion},
      {"Дата"_ru, OleDate{4e6}, error_number::kConversion},
      {"Дата"_ru, Text("вчера"_ru), error_number::kConversion},
      {"Тема"_ru, Text(51, 'x'), error_number::kTextTooLong},
      {"Тема"_ru, Text(50, 'x'), 0},
      {"Почта"_ru, 12345678901.0, error_number::kTextTooLong},
      {"Нет"_ru, 1, error_number::kNoSuchObject},
      {"Тема"_ru, jet::Binary{"x"}, error_number::kConversion},
      {"Код"_ru, jet::Null(), 0},
  };
  for (const auto& c : cases) EXPECT_EQ(ErrorOf([&] { rows.Set(c.field, c.value); }), c.error) << Shown(c.value);
}

TEST_P(Writing, ARowThatTheBaseRefusesIsNotStoredAndMayBePutRight) {
  Recordset rows = connection_.OpenDynaset("База"_ru);
  const auto update = [&] { return ErrorOf([&] { rows.Update(); }); };
  rows.AddNew();
  rows.Set("Код"_ru, 3);
  EXPECT_EQ(update(), error_number::kRequired);
  rows.Set("Автор"_ru, Text(""));  // Null would be refused as well: so it is not made Null
  EXPECT_EQ(update(), error_number::kZeroLength);
  rows.Set("Автор"_ru, Text("x"));
  EXPECT_EQ(update(), error_number::kDuplicateKey);
  EXPECT_THROW(rows.Update(), DuplicateKey);
  rows.Set("Код"_ru, jet::Null());
  EXPECT_EQ(update(), error_number::kRequired);
  EXPECT_EQ(written_.disk.Content(kPath), image_);
  rows.Set("Код"_ru, 4);
  EXPECT_EQ(update(), 0);
  EXPECT_THAT(Numbers(), ElementsAre(1, 2, 3, 4, 5));
}

TEST_P(Writing, WithoutAddNewThereIsNothingToSetOrStore) {
  Recordset rows = connection_.OpenDynaset("База"_ru);
  const std::function<void()> ends[] = {
      [&] { rows.Update(); },
      [&] { rows.MoveFirst(); },
      [&] { rows.MoveNext(); },
      [&] { rows.MoveLast(); },
      [&] { rows.Cancel(); },
      [&] { rows.FindFirst("Код=1"_ru); },
      [&] { connection_.Execute("DELETE FROM База WHERE Код=77"_ru), rows.Cancel(); }};
  for (std::int32_t number = 70; const auto& end : ends) {
    rows.AddNew();
    rows.Set("Код"_ru, ++number);
    rows.Set("Автор"_ru, Text("x"));
    end();
    EXPECT_EQ(ErrorOf([&] { rows.Update(); }), error_number::kNothingToStore);
    EXPECT_EQ(ErrorOf([&] { rows.Set("Код"_ru, 1); }), error_number::kNothingToStore);
    rows.MoveFirst();
  }
  rows.AddNew();
  rows.Set("Вответ"_ru, 5);
  rows.AddNew();  // drops what was set
  EXPECT_EQ(ErrorOf([&] { rows.Update(); }), error_number::kRequired);
  EXPECT_THAT(Numbers(), ElementsAre(1, 2, 3, 5, 71));
}

TEST_P(Writing, AfterAddingTheRowThatWasCurrentIsCurrentAgain) {
  Recordset rows = connection_.OpenDynaset("Ответы"_ru);  // 5, 3, 2
  rows.MoveNext();
  Add(rows, 4);  // WHERE would not choose it
  EXPECT_EQ(rows.Int(0), 3);
  EXPECT_EQ(rows.RecordCount(), 3);  // two visited, one added
  rows.MoveNext();
  EXPECT_EQ(rows.Int(0), 2);
  rows.MoveNext();
  EXPECT_EQ(rows.Int(0), 4);
  EXPECT_EQ(rows.RecordCount(), 4);
  rows.MoveNext();
  EXPECT_TRUE(rows.Eof());
  Add(rows, 8);
  EXPECT_TRUE(rows.Eof());
  for (const char* criterion : {"[Код] = 8", "[Код] > 7", "Автор='петя' and Код=8"}) {
    rows.FindFirst(Ru(criterion));
    ASSERT_FALSE(rows.NoMatch()) << criterion;
    EXPECT_EQ(rows.Int(0), 8);
  }
  rows.FindFirst("[Код] = 1"_ru);  // in the table, but not in this set
  EXPECT_TRUE(rows.NoMatch());
}

TEST_P(Writing, ARowAddedToAnEmptySetCanBeMovedTo) {
  Recordset rows = connection_.OpenDynaset("select * from База where Код=9"_ru);
  Add(rows, 9);
  EXPECT_EQ(ErrorOf([&] { rows.Int(0); }), error_number::kNoCurrentRecord);
  EXPECT_EQ(rows.RecordCount(), 1);
  rows.MoveLast();
  EXPECT_EQ(rows.Int(0), 9);
}

TEST_P(Writing, DeleteLeavesNoCurrentRowAndMoveNextGoesOn) {
  Recordset rows = connection_.OpenDynaset("База"_ru);
  rows.MoveLast();
  rows.FindFirst("[Код] = 2"_ru);
  rows.Delete();
  EXPECT_EQ(ErrorOf([&] { rows.Int(0); }), kRowDeleted);
  EXPECT_EQ(ErrorOf([&] { rows.Delete(); }), kRowDeleted);
  EXPECT_EQ(rows.RecordCount(), 3);
  rows.MoveNext();
  EXPECT_EQ(rows.Int(0), 3);
  rows.MoveLast();
  rows.Delete();
  rows.MoveNext();
  EXPECT_TRUE(rows.Eof());
  EXPECT_EQ(ErrorOf([&] { rows.Delete(); }), error_number::kNoCurrentRecord);
  EXPECT_THAT(Numbers(), ElementsAre(1, 3));
}

TEST_P(Writing, ARowDeletedBehindADynasetsBackIsPassedOver) {
  Recordset rows = connection_.OpenDynaset("База"_ru);
  rows.MoveNext();
  connection_.Execute("DELETE * FROM База WHERE Код<=2"_ru);
  EXPECT_EQ(ErrorOf([&] { rows.Int(0); }), kRowDeleted);
  EXPECT_EQ(ErrorOf([&] { rows.Delete(); }), kRowDeleted);
  rows.FindFirst("[Код] < 5"_ru);
  ASSERT_FALSE(rows.NoMatch());
  EXPECT_EQ(rows.Int(0), 3);
  rows.FindFirst("[Код] = 2"_ru);
  EXPECT_TRUE(rows.NoMatch());
  connection_.Execute("DELETE * FROM База"_ru);  // the rows' page goes too
  rows.FindFirst("Автор='Петя'"_ru);
  EXPECT_TRUE(rows.NoMatch());
  rows.MoveFirst();
  EXPECT_EQ(ErrorOf([&] { rows.Int(0); }), kRowDeleted);
}

TEST_P(Writing, WhatIsOnlyToBeReadSaysSo) {
  WrittenBase read_only(image_, jet::Access::kRead);
  const auto adding = [](Recordset rows) { return ErrorOf([&] { rows.AddNew(); }); };
  const auto deleting = [](Recordset rows) { return ErrorOf([&] { rows.Delete(); }); };
  constexpr int kReadOnly = error_number::kReadOnly;
  EXPECT_EQ(adding(read_only.connection.OpenDynaset("База"_ru)), kReadOnly);
  EXPECT_EQ(deleting(read_only.connection.OpenDynaset("База"_ru)), kReadOnly);
  EXPECT_EQ(ErrorOf([&] { read_only.connection.Execute("DELETE FROM База"_ru); }), kReadOnly);
  EXPECT_EQ(adding(connection_.OpenSnapshot("База"_ru)), kReadOnly);
  EXPECT_EQ(deleting(connection_.OpenSnapshot("База"_ru)), kReadOnly);
  EXPECT_EQ(adding(connection_.OpenDynaset("select Автор from База group by Автор"_ru)), kReadOnly);
  Recordset calculated = connection_.OpenDynaset("select Код, Код+1 as N from База"_ru);
  calculated.AddNew();
  EXPECT_EQ(ErrorOf([&] { calculated.Set("N", 1); }), kReadOnly);
}

struct Work {
  const char* name;
  void (*change)(Connection&);
  bool is_repeatable;
};

const Work kWorks[] = {
    {"add",
     [](Connection& connection) {
       Recordset rows = connection.OpenDynaset("База"_ru);
       Add(rows, 6, {{"Текст"_ru, Text(9000, 'x')}});
     },
     false},
    {"delete", [](Connection& connection) { connection.Execute("DELETE * FROM База WHERE Код>1"_ru); }, true},
};

TEST_P(Writing, ADiskThatFailsAtAnyMomentLeavesTheBaseAsItWas) {
  const std::vector<std::string> before = Messages(connection_);
  for (const Work& work : kWorks) {
    WrittenBase whole(image_);
    const std::uint64_t opened = whole.disk.operations();
    work.change(whole.connection);
    const std::vector<std::string> after = Messages(whole.connection);
    ASSERT_NE(after, before);
    for (const auto fault : {FaultyFileSystem::Fault::kFail, FaultyFileSystem::Fault::kTear}) {
      for (std::uint64_t n = opened + 1; n <= whole.disk.operations(); ++n) {
        WrittenBase failing(image_);
        failing.disk.FailAt(n, fault);
        const bool told = ErrorOf([&] { work.change(failing.connection); }) != 0;
        SCOPED_TRACE(work.name + (" fails at " + failing.disk.log()[n - 1]));
        EXPECT_EQ(Messages(failing.connection), told ? before : after);
        const auto disk = failing.disk.AfterKill();
        WrittenBase later(disk->Content(kPath));
        EXPECT_EQ(Messages(later.connection), told ? before : after);
        EXPECT_EQ(ErrorOf([&] { work.change(failing.connection); }) == 0, told || work.is_repeatable);
      }
    }
  }
}

}  // namespace
}  // namespace sql
