#include "config/base_list.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/cp1251.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "support/fixed_clock.h"
#include "support/temp_folder.h"

namespace {

using testing::ElementsAre;

class BaseList : public testing::Test {
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

  TempFolder folder_;
  DiskFileSystem files_;
  mdl_AZ::ForumIni ini_{files_, folder_.path()};
  FixedClock clock_{ole_date::FromCivil({2002, 2, 22, 13, 5, 7})};
  mdl_AZ::ForumLog log_{ini_, files_, clock_};
};

TEST_F(BaseList, ListsKnownBasesNewestFirst) {
  for (const char* name : {"kdv.mdb", "Kdv_2001.MDB", "kdv_2002-03.mdb", "ptrv_2002.mdb", "my_kdv.mdb", "kdv_2003.txt",
                           ".kdv.mdb", "kdv_2004.mdb/x"})
    folder_.Put(std::string("Bases/") + name);
  EXPECT_THAT(Texts(""),
              ElementsAre("КДВ (kdv_2002-03.mdb )", "ptrv (ptrv_2002.mdb )", "КДВ (kdv_2001.mdb )", "КДВ (kdv.mdb )"));
  EXPECT_EQ(Texts("ptrv").front(), "ptrv (ptrv_2002.mdb )");
  EXPECT_EQ(base_list::ListBases(ini_, log_, folder_ / "Bases", "").at(2).path, folder_ / "Bases/Kdv_2001.MDB");
}

TEST_F(BaseList, LogsEveryBaseFileLowerCased) {
  folder_.Put("Bases/X.MDB");
  folder_.Put("Bases/KDV.mdb");
  folder_.Put("Bases/readme.txt");
  Texts("");
  EXPECT_EQ(folder_.Get("forum.log"),
            "2002-02-22 13:05:07 --> dir file: kdv.mdb\r\n2002-02-22 13:05:07 --> dir file: x.mdb\r\n");
}

TEST_F(BaseList, MissingFoldersAreEmptyAndABadForumCountIsAnError) {
  EXPECT_THAT(Texts(""), ElementsAre());
  folder_.Put("forum.ini", "[FORUMS]\r\nmax=many\r\n");
  EXPECT_THROW(Texts(""), ConversionError);
}

TEST(DateInName, TakesTheFirstYearWithItsMonthAndDay) {
  const struct {
    std::string_view name;
    base_list::NameDate want;
  } cases[] = {
      {"kdv.mdb", {}},
      {"kdv_02.mdb", {}},
      {"kdv_1812.mdb", {}},
      {"kdv_20020.mdb", {}},
      {"kdv2002.mdb", {2002, 0, 0}},
      {"kdv_2002_2003.mdb", {2002, 0, 0}},
      {"kdv_2002-3-15.mdb", {2002, 3, 15}},
      {"kdv_2002-13-15.mdb", {2002, 0, 0}},
      {"kdv_2002-02-31.mdb", {2002, 2, 0}},
      {"kdv_15.03.2002.mdb", {2002, 3, 15}},
      {"kdv_03.2002.mdb", {2002, 3, 0}},
      {"kdv_200203.mdb", {2002, 3, 0}},
      {"kdv_20020315.mdb", {2002, 3, 15}},
      {"kdv_15032002.mdb", {2002, 3, 15}},
      {"kdv_99999999999999999999.mdb", {}},
  };
  for (const auto& c : cases) {
    const base_list::NameDate date = base_list::DateInName(c.name);
    EXPECT_TRUE(date == c.want) << c.name << ": " << date.year << ' ' << date.month << ' ' << date.day;
  }
}

}  // namespace
