#include "config/mdl_AZ.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "base/cp1251.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "support/fixed_clock.h"
#include "support/temp_folder.h"

namespace {

using mdl_AZ::ForumIni;
using mdl_AZ::ForumLog;

class ForumIniTest : public testing::Test {
 protected:
  void Put(std::string_view content) { folder_.Put("forum.ini", content); }
  std::string File() const { return folder_.Get("forum.ini"); }

  TempFolder folder_;
  DiskFileSystem files_;
  ForumIni ini_{files_, folder_.path()};
};

TEST_F(ForumIniTest, AFirstRunFillsTheFileWithEveryDefaultAsked) {
  EXPECT_FALSE(ini_.GetIsLog());
  EXPECT_EQ(File(), "[LOG]\r\nIsLog=0\r\n");
  EXPECT_FALSE(ini_.GetIsXsl());
  EXPECT_TRUE(ini_.GetNeedOpenBrowser());
  EXPECT_TRUE(ini_.GetOpenNewBrowser());
  EXPECT_EQ(ini_.GetLineSize(), 80);
  EXPECT_EQ(ini_.GetExportXsl(), "..\\message.xsl");
  EXPECT_EQ(ini_.GetForumCount(), 5);
  EXPECT_EQ(ini_.GetStopDownload("kdv"), 0);
  EXPECT_EQ(ini_.GetPathDb("kdv"), folder_.path() + "\\");
  EXPECT_EQ(ini_.ReadForumIni("kdv", "URL"), "");  // no default, nothing written
  EXPECT_EQ(File(),
            "[LOG]\r\nIsLog=0\r\n"
            "[EXPORT]\r\nIsXSL=0\r\nNeedOpenIE=1\r\nOpenNewIE=1\r\nLINESIZE=80\r\nXSL=..\\message.xsl\r\n"
            "[FORUMS]\r\nmax=5\r\n"
            "[kdv]\r\nStopDownLoad=0\r\nPATHDB=" +
                folder_.path() + "\\\r\n");
}

TEST_F(ForumIniTest, EmptyKeysGetTheirDefaultExceptTheStyleSheet) {
  Put("[EXPORT]\r\nXSL=\r\nLINESIZE=\r\n[kdv]\r\nStopDownLoad=\r\n");
  EXPECT_EQ(ini_.GetExportXsl(), "");
  EXPECT_EQ(ini_.GetLineSize(), 80);
  EXPECT_EQ(ini_.GetStopDownload("kdv"), 0);
  EXPECT_EQ(File(), "[EXPORT]\r\nXSL=\r\nLINESIZE=80\r\n[kdv]\r\nStopDownLoad=0\r\n");
}

TEST_F(ForumIniTest, SwitchesAreTrueForExactlyOne) {
  for (const auto& [value, want] : {std::pair{"1", true}, {"0", false}, {"2", false}, {"yes", false}, {"01", false}}) {
    Put(std::string("[LOG]\r\nIsLog=") + value + "\r\n");
    EXPECT_EQ(ini_.GetIsLog(), want) << value;
  }
}

TEST_F(ForumIniTest, NumbersAreStrictOrLenientAsEachKeyHasIt) {
  Put("[kdv]\r\nStopDownLoad=3abc\r\n[ptrv]\r\nStopDownLoad=abc\r\n[EXPORT]\r\nLINESIZE=wide\r\n[FORUMS]\r\nmax="
      "40000\r\n");
  EXPECT_EQ(ini_.GetStopDownload("kdv"), 3);
  EXPECT_EQ(ini_.GetStopDownload("ptrv"), 0);
  EXPECT_THROW(ini_.GetLineSize(), ConversionError);
  EXPECT_THROW(ini_.GetForumCount(), Error);  // a 16-bit number
}

TEST_F(ForumIniTest, AFileThatCannotBeMadeHasItsDefaultsAllTheSame) {
  const ForumIni nowhere(files_, folder_ / "missing");
  EXPECT_FALSE(nowhere.GetIsLog());
  EXPECT_EQ(nowhere.GetLineSize(), 80);
  EXPECT_EQ(nowhere.GetExportXsl(), "..\\message.xsl");
  EXPECT_TRUE(std::filesystem::is_empty(folder_.path()));

  Put("[EXPORT]\r\nLINESIZE=\r\n");
  folder_.Put("forum.ini.new/x");  // in the way of every write
  EXPECT_EQ(ini_.GetLineSize(), 80);
  EXPECT_EQ(File(), "[EXPORT]\r\nLINESIZE=\r\n");
}

TEST_F(ForumIniTest, AnOldInstallationsSpellingOfTheFileIsFound) {
  folder_.Put("Forum.INI", "[LOG]\r\nIsLog=1\r\n");
  EXPECT_TRUE(ini_.GetIsLog());
  EXPECT_FALSE(std::filesystem::exists(folder_ / "forum.ini"));
}

TEST_F(ForumIniTest, BaseFoldersAreFoundHoweverTheyAreWritten) {
  folder_.Put("Архив/Kdv/x");
  const struct {
    std::string value, want;
  } cases[] = {
      {"", folder_.path()},
      {".\\", folder_.path()},
      {folder_.path() + "\\", folder_.path()},
      {std::string("архив\\\\KDV\\"_ru), folder_ / "Архив/Kdv"},
      {folder_.path() + std::string("\\АРХИВ"_ru), folder_ / "Архив"},
      {"C:\\Bases\\", folder_ / "C:/Bases"},  // leads nowhere here
  };
  for (const auto& c : cases) {
    Put("[kdv]\r\nPATHDB=" + c.value + "\r\n");
    EXPECT_EQ(ini_.BaseFolder("kdv"), c.want) << cp1251::ToUtf8(c.value);
  }
}

TEST_F(ForumIniTest, AFolderThatTheCodePageLacksIsWrittenAsRelative) {
  folder_.Put("日本/x");
  const ForumIni ini(files_, folder_ / "日本");
  EXPECT_EQ(ini.GetPathDb("kdv"), ".\\");
  EXPECT_EQ(ini.BaseFolder("kdv"), folder_ / "日本");
}

class ForumLogTest : public ForumIniTest {
 protected:
  FixedClock clock_{ole_date::FromCivil({2002, 2, 22, 13, 5, 7})};
  ForumLog log_{ini_, files_, clock_};
};

TEST_F(ForumLogTest, IsOffUntilForumIniSaysOtherwise) {
  log_.Log("a");
  EXPECT_FALSE(std::filesystem::exists(folder_ / "forum.log"));
  EXPECT_EQ(File(), "[LOG]\r\nIsLog=0\r\n");
}

TEST_F(ForumLogTest, AppendsALineACall) {
  Put("[LOG]\r\nIsLog=1\r\n");
  folder_.Put("forum.log", "old\r\n");
  log_.Log("Ёж"_ru);
  log_.Log("");
  log_.Log("a\r\nb");
  EXPECT_EQ(folder_.Get("forum.log"), std::string("old\r\n2002-02-22 13:05:07 --> Ёж\r\n"_ru) +
                                          "2002-02-22 13:05:07 --> \r\n2002-02-22 13:05:07 --> a\r\nb\r\n");
}

TEST_F(ForumLogTest, ALineThatCannotBeWrittenIsLostQuietly) {
  Put("[LOG]\r\nIsLog=1\r\n");
  folder_.Put("forum.log/x");  // a folder stands in its place
  EXPECT_NO_THROW(log_.Log("a"));
  const ForumIni nowhere(files_, folder_ / "missing");
  EXPECT_NO_THROW(ForumLog(nowhere, files_, clock_).Log("a"));
}

}  // namespace
