#include "config/forum_list.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/ru_literal.h"
#include "config/program_folder.h"
#include "support/program_stage.h"

namespace {

using testing::ElementsAre;

class ForumList : public testing::Test, protected ProgramStage {};

TEST_F(ForumList, EndsAtTheCountOrTheFirstEmptyCode) {
  const struct {
    std::string_view forums;
    std::vector<std::string> codes;
  } cases[] = {
      {"", {}},
      {"max=0\r\nf1=a\r\n", {}},
      {"max=-3\r\nf1=a\r\n", {}},
      {"max=2\r\nf1=a\r\nf2=b\r\nf3=c\r\n", {"a", "b"}},
      {"max=5\r\nf1=a\r\nf2=b\r\nf3=c\r\nf5=e\r\n", {"a", "b", "c"}},
      {"max=32767\r\nf1=a\r\n", {"a"}},
      {"f1=1\r\nf2=2\r\nf3=3\r\nf4=4\r\nf5=5\r\nf6=6\r\n", {"1", "2", "3", "4", "5"}},  // five when nobody counts
  };
  for (auto c : cases) {
    folder_.Put("forum.ini", "[FORUMS]\r\n" + std::string(c.forums));
    c.codes.insert(c.codes.begin(), std::string("Неопознанный формат базы"_ru));
    EXPECT_EQ(forum_list::ReadForumList(ini_), c.codes) << c.forums;
  }
  EXPECT_THAT(folder_.Get("forum.ini"), testing::EndsWith("\r\nmax=5\r\n"));
}

TEST_F(ForumList, AFileBelongsToTheFirstCodeItsNameBeginsWith) {
  const std::vector<std::string> forums = {"?", "rts-an", "kdv", "ptrv", "ows_ptrv", "kdv2"};
  const struct {
    std::string_view path;
    std::size_t want;
  } cases[] = {
      {"", 0},
      {"C:\\Bases\\RTS-AN_2002.MDB", 1},
      {"/home/kdv/my_kdv.mdb", 0},
      {"/kdv/ows_ptrv.mdb", 4},
      {"/x/Kdv2.mdb", 2},
      {"/x/kd", 0},
      {"/x/?.mdb", 0},  // the place of unknown bases is no code
  };
  for (const auto& c : cases) EXPECT_EQ(forum_list::ForumOfFile(forums, c.path), c.want) << c.path;
}

TEST_F(ForumList, ForumsSwitchedOffAreLeftOut) {
  folder_.Put(
      "forum.ini",
      "[FORUMS]\r\nmax=3\r\nf1=a\r\nf2=b\r\nf3=c\r\n[a]\r\nStopDownLoad=1\r\n[b]\r\nStopDownLoad=x\r\nNAME=Бе\r\n"_ru);
  EXPECT_THAT(forum_list::ForumsInUse(ini_), ElementsAre("b", "c"));
  EXPECT_EQ(forum_list::ForumName(ini_, "b"), "Бе"_ru);
  EXPECT_EQ(forum_list::ForumName(ini_, "c"), "c");
}

TEST_F(ForumList, TheShippedOneNamesSixForumsWithAllThatEachNeeds) {
  program_folder::Prepare(folder_.path(), FORUM_SOURCE_DIR "/packaging");
  const std::string shipped = folder_.Get("forum.ini");
  const std::vector<std::string> codes = forum_list::ForumsInUse(ini_);
  EXPECT_THAT(codes, ElementsAre("rts-an", "kdv", "ptrv", "moysha", "gelium", "ows_ptrv"));
  for (const std::string& code : codes) {
    for (const char* key : {"NAME", "DOMAIN"}) EXPECT_NE(ini_.ReadForumIni(code, key), "") << code;
    EXPECT_EQ(ini_.BaseFolder(code), folder_.path()) << code;
    EXPECT_EQ(ini_.ReadForumIni(code, "URL").empty(), code == "rts-an") << code;
  }
  EXPECT_EQ(ini_.ReadForumIni("kdv", "NAME"), "Форум Velmora"_ru);  // Windows-1251
  EXPECT_FALSE(ini_.GetIsLog() || ini_.GetIsXsl());
  EXPECT_TRUE(ini_.GetNeedOpenBrowser() && ini_.GetOpenNewBrowser());
  EXPECT_EQ(ini_.GetLineSize(), 80);
  EXPECT_EQ(ini_.GetExportXsl(), "..\\message.xsl");
  EXPECT_EQ(folder_.Get("forum.ini"), shipped);  // every default is there already
}

}  // namespace
