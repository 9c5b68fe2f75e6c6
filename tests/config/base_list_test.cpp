#include "config/base_list.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/cp1251.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "support/program_stage.h"

namespace {

using testing::ElementsAre;

class BaseList : public testing::Test, protected ProgramStage {
 protected:
  BaseList() {
    folder_.Put("forum.ini", "[FORUMS]\r\nmax=2\r\nf1=kdv\r\nf2=ptrv\r\n[kdv]\r\nname=КДВ\r\n[LOG]\r\nIsLog=1\r\n"_ru);
  }
  std::vector<std::string> Texts(std::string_view preferred) const {
    std::vector<std::string> texts;
    for (const auto& base : base_list::ListBases(ini_, log_, folder_ / "Bases", preferred))
      texts.push_back(cp1251::ToUtf8(base.text));
    return texts;
  }
};

TEST_F(BaseList, ListsKnownBasesNewestFirstAndLogsEveryBaseFileLowerCased) {
  EXPECT_THAT(Texts(""), ElementsAre()) << "there is no such folder";
  for (const char* name : {"kdv.mdb", "Kdv_2001.MDB", "kdv_2002-03.mdb", "ptrv_2002.mdb", "my_kdv.mdb", "kdv_2003.txt",
                           ".kdv.mdb", "kdv_2004.mdb/x"})
    folder_.Put(std::string("Bases/") + name);
  EXPECT_THAT(Texts(""),
              ElementsAre("КДВ (kdv_2002-03.mdb )", "ptrv (ptrv_2002.mdb )", "КДВ (kdv_2001.mdb )", "КДВ (kdv.mdb )"));
  std::string log;
  for (const std::string name : {"kdv.mdb", "kdv_2001.mdb", "kdv_2002-03.mdb", "my_kdv.mdb", "ptrv_2002.mdb"})
    log += "2002-03-15 00:00:00 --> dir file: " + name + "\r\n";
  EXPECT_EQ(folder_.Get("forum.log"), log);
  EXPECT_EQ(Texts("ptrv").front(), "ptrv (ptrv_2002.mdb )");
  EXPECT_EQ(base_list::ListBases(ini_, log_, folder_ / "Bases", "").at(2).path, folder_ / "Bases/Kdv_2001.MDB");
}

TEST_F(BaseList, ABadForumCountIsAnError) {
  folder_.Put("forum.ini", "[FORUMS]\r\nmax=many\r\n");
  EXPECT_THROW(Texts(""), ConversionError);
}

TEST(DateInName, TakesTheFirstYearWithItsMonthAndDay) {
  const struct {
    base_list::NameDate want;
    std::vector<std::string> names;
  } cases[] = {{{}, {"kdv", "kdv_02", "kdv_1812", "kdv_20020", "kdv_99999999999999999999"}},
               {{2002, 0, 0}, {"kdv2002", "kdv_2002_2003", "kdv_2002-13-15"}},
               {{2002, 2, 0}, {"kdv_2002-02-31"}},
               {{2002, 3, 0}, {"kdv_03.2002", "kdv_200203"}},
               {{2002, 3, 15}, {"kdv_2002-3-15", "kdv_15.03.2002", "kdv_20020315", "kdv_15032002"}}};
  for (const auto& c : cases)
    for (const std::string& name : c.names) {
      const base_list::NameDate date = base_list::DateInName(name + ".mdb");
      EXPECT_TRUE(date == c.want) << name << ": " << date.year << ' ' << date.month << ' ' << date.day;
    }
}

}  // namespace
