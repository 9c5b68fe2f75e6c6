#include "store/new_base.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "base/ru_literal.h"
#include "jet/database.h"
#include "jet/table_writer.h"
#include "jet/transaction.h"
#include "store/message_base.h"
#include "support/fixed_clock.h"
#include "support/mdbtools.h"
#include "support/temp_folder.h"

namespace {

constexpr jet::NewBase kKinds[] = {{jet::Version::kJet3, jet::SortOrder::kGeneral},
                                   {jet::Version::kJet3, jet::SortOrder::kRussian},
                                   {jet::Version::kJet4, jet::SortOrder::kGeneral}};

class NewBase : public testing::TestWithParam<jet::NewBase> {
 protected:
  void SetUp() override { CreateMessageBase(files_, path_, GetParam(), clock_); }

  void Fill() {
    jet::Database base = jet::Database::Open(files_, path_, jet::Access::kReadWrite);
    const jet::Table table = base.OpenTable("База"_ru);
    jet::Transaction transaction(base.store());
    jet::TableWriter writer(transaction, table, base.PropertiesOf(table));
    const auto column = [&](std::string_view name) { return table.def().FindColumn(name); };
    for (int number = 1; number <= 300; ++number) {
      const jet::Assignment values[] = {{column("Код"_ru), number},
                                        {column("Вответ"_ru), number / 2},
                                        {column("Тема"_ru), std::string(255, 'x')},
                                        {column("Дата"_ru), OleDate{37000.5}},
                                        {column("Автор"_ru), std::string("Иван"_ru)},
                                        {column("АвторMail"_ru), std::string()},
                                        {column("Текст"_ru), std::string(static_cast<std::size_t>(number) * 30, 'y')}};
      writer.Insert(values);
    }
    transaction.Commit();
  }

  TempFolder folder_;
  DiskFileSystem files_;
  FixedClock clock_{2024, 3, 15};
  std::string path_ = folder_ / "kdv_2024.mdb";
};
INSTANTIATE_TEST_SUITE_P(Kinds, NewBase, testing::ValuesIn(kKinds), [](const auto& tested) {
  return std::string(tested.param.version == jet::Version::kJet3 ? "Jet3" : "Jet4") +
         (tested.param.order == jet::SortOrder::kRussian ? "Russian" : "");
});

TEST_P(NewBase, OpensAsABaseAndTakesEmptyTexts) {
  folder_.Put("forum.ini", "[FORUMS]\r\nmax=1\r\nf1=kdv\r\n[kdv]\r\nNAME=One\r\n");
  Fill();
  const mdl_AZ::ForumIni ini(files_, folder_.path());
  MessageBase base(files_, clock_, ini);
  base.OpenBase(path_);
  EXPECT_EQ(base.forum_kind(), "kdv");
  sql::Recordset rows = base.connection().OpenSnapshot("select * from [БазаИндекс] order by Код"_ru);
  EXPECT_EQ(rows.Fields().size(), 5u);
  sql::Recordset all = base.connection().OpenSnapshot("select * from [БазаЗапрос]"_ru);
  EXPECT_EQ(all.Fields().size(), 8u);
  all.MoveLast();
  EXPECT_EQ(all.Int(0), 300);
}

TEST_P(NewBase, IndependentReadersFindWhatWasWritten) {
  if (!mdbtools::AreInstalled()) GTEST_SKIP() << "mdbtools is not installed";
  Fill();
  const bool jet3 = GetParam().version == jet::Version::kJet3;
  const std::string base = " '" + path_ + "' ";
  EXPECT_EQ(mdbtools::Output("mdb-ver" + base), jet3 ? "JET3\n" : "JET4\n");
  EXPECT_EQ(mdbtools::Output("mdb-tables -1" + base), "База\n");
  EXPECT_EQ(mdbtools::Output("mdb-count" + base + "База"), "300\n");
  const std::string schema = mdbtools::Output("mdb-schema --indexes" + base + "postgres");
  EXPECT_NE(schema.find("\"картинка\""), std::string::npos) << schema;
  EXPECT_NE(schema.find("PRIMARY KEY (\"код\")"), std::string::npos) << schema;
  const std::string queries = mdbtools::Output("mdb-queries -L -1" + base);
  EXPECT_NE(queries.find("БазаИндекс"), std::string::npos) << queries;
  EXPECT_NE(queries.find("БазаЗапрос"), std::string::npos) << queries;
  const std::string rows = mdbtools::Output("mdb-export -H" + base + "База");
  EXPECT_EQ(std::count(rows.begin(), rows.end(), '\n'), 300);
  EXPECT_NE(rows.find("300,150,\"" + std::string(255, 'x') + "\""), std::string::npos);
  EXPECT_NE(rows.find(std::string(9000, 'y')), std::string::npos);
}

TEST(ProposedBaseName, TellsForumAndYear) {
  const FixedClock clock{2024, 12, 31};
  EXPECT_EQ(ProposedBaseName("rts_an", clock), "rts_an_2024.mdb");
}

}  // namespace
