#include "store/new_base.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "base/ru_literal.h"
#include "store/base_recordset.h"
#include "support/mdbtools.h"
#include "support/program_stage.h"

namespace {

constexpr jet::NewBase kKinds[] = {{jet::Version::kJet3, jet::SortOrder::kGeneral},
                                   {jet::Version::kJet3, jet::SortOrder::kRussian},
                                   {jet::Version::kJet4, jet::SortOrder::kGeneral}};

class NewBase : public testing::TestWithParam<jet::NewBase>, protected ProgramStage {
 protected:
  void SetUp() override {
    CreateMessageBase(files_, path_, GetParam(), clock_);
    base_.OpenBase(path_);
    BaseRecordset records(base_);
    records.BeginBatch();
    for (std::int32_t number = 1; number <= 300; ++number) {
      records.AddNew();
      records.SetText("Тема"_ru, std::string(255, 'x'));
      records.SetText("АвторMail"_ru, "");
      records.SetText("Текст"_ru, std::string(static_cast<std::size_t>(number) * 30, 'y'));
      records.SetNumber("Вответ"_ru, number / 2);
      records.SetNumber("Код"_ru, number);
      records.Update();
    }
    records.CommitBatch();
  }

  std::string path_ = folder_ / "kdv_2024.mdb";
  MessageBase base_{files_, clock_, ini_};
};
INSTANTIATE_TEST_SUITE_P(Kinds, NewBase, testing::ValuesIn(kKinds), [](const auto& tested) {
  return std::string(tested.param.version == jet::Version::kJet3 ? "Jet3" : "Jet4") +
         (tested.param.order == jet::SortOrder::kRussian ? "Russian" : "");
});

TEST_P(NewBase, OpensAsABaseAndTakesEmptyTexts) {
  sql::Recordset rows = base_.connection().OpenSnapshot("select * from [БазаИндекс] order by Код"_ru);
  EXPECT_EQ(rows.Fields().size(), 5u);
  sql::Recordset all = base_.connection().OpenSnapshot("select * from [БазаЗапрос]"_ru);
  EXPECT_EQ(all.Fields().size(), 8u);
  all.MoveLast();
  EXPECT_EQ(all.Int(0), 300);
  EXPECT_FALSE(base_.connection().OpenSnapshot("select Код from База where АвторMail=''"_ru).Eof())
      << "empty, not Null";
}

TEST_P(NewBase, IndependentReadersFindWhatWasWritten) {
  if (!mdbtools::AreInstalled()) GTEST_SKIP() << "mdbtools is not installed";
  const std::string base = " '" + path_ + "' ";
  EXPECT_EQ(mdbtools::Output("mdb-ver" + base), GetParam().version == jet::Version::kJet3 ? "JET3\n" : "JET4\n");
  EXPECT_EQ(mdbtools::Output("mdb-tables -1" + base), "База\n");
  EXPECT_EQ(mdbtools::Output("mdb-count" + base + "База"), "300\n");
  const std::string schema = mdbtools::Output("mdb-schema --indexes" + base + "postgres");
  for (const char* const part : {"\"картинка\"", "PRIMARY KEY (\"код\")"})
    EXPECT_NE(schema.find(part), std::string::npos) << schema;
  const std::string queries = mdbtools::Output("mdb-queries -L -1" + base);
  for (const char* const query : {"БазаИндекс", "БазаЗапрос"})
    EXPECT_NE(queries.find(query), std::string::npos) << queries;
  const std::string rows = mdbtools::Output("mdb-export -H" + base + "База");
  EXPECT_EQ(std::count(rows.begin(), rows.end(), '\n'), 300);
  EXPECT_NE(rows.find("300,150,\"" + std::string(255, 'x') + "\""), std::string::npos);
  EXPECT_NE(rows.find(std::string(9000, 'y')), std::string::npos);
}

TEST(ProposedBaseName, TellsForumAndYear) {
  EXPECT_EQ(ProposedBaseName("rts_an", FixedClock(2024, 12, 31)), "rts_an_2024.mdb");
}

}  // namespace
