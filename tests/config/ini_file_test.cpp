#include "config/ini_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <random>
#include <string>

#include "base/ru_literal.h"
#include "support/temp_folder.h"

namespace {

using namespace std::string_view_literals;
using mdl_AZ::ReadIni;
using mdl_AZ::WriteIni;

class IniFile : public testing::Test {
 protected:
  std::string Read(std::string_view content, std::string_view section, std::string_view key) {
    return ReadIni(files_, folder_.Put("a.ini", content), section, key, "absent");
  }
  /// The file after one write into it.
  std::string Written(std::string_view content, std::string_view section, std::string_view key, std::string value) {
    EXPECT_TRUE(WriteIni(files_, folder_.Put("a.ini", content), section, key, value));
    return folder_.Get("a.ini");
  }

  TempFolder folder_;
  DiskFileSystem files_;
};

TEST_F(IniFile, ReadsTheFirstKeyOfTheFirstSection) {
  const struct {
    std::string_view content, section, key, want;
  } cases[] = {
      {"", "s", "k", "absent"},
      {"[s]\r\nk=1\r\n", "s", "k", "1"},
      {"[s]\nk=1", "s", "k", "1"},
      {"[s]\r\nk=1\r\n", "S", "K", "1"},
      {"[Форум]\r\nИмя=Ёж\r\n"_ru, "фОРУМ"_ru, "иМЯ"_ru, "Ёж"_ru},
      {"  [s]  \r\n\t k \t = \t a b \t\r\n", "s", "k", "a b"},
      {"[s]\r\nk=\r\n", "s", "k", ""},  // present and empty is not absent
      {"[s]\r\nk\r\n", "s", "k", "absent"},
      {"[s]\r\nk=1;2\r\n", "s", "k", "1;2"},
      {"[s]\r\n;k=1\r\n ; k=2\r\n", "s", "k", "absent"},
      {"[s]\r\nk=1=2\r\n", "s", "k", "1=2"},
      {"k=1\r\n[s]\r\n", "s", "k", "absent"},
      {"[s]\r\n[t]\r\nk=1\r\n", "s", "k", "absent"},
      {"[s]\r\nk=1\r\nK=2\r\n", "s", "k", "1"},
      {"[s]\r\nk=1\r\n[S]\r\nk=2\r\nn=3\r\n", "s", "k", "1"},
      {"[s]\r\nk=1\r\n[S]\r\nk=2\r\nn=3\r\n", "s", "n", "absent"},  // only a second equal section has it
      {"[a]b] tail\r\nk=1\r\n", "a]b", "k", "1"},                   // the name runs to the last bracket
      {"[s\r\nk=1\r\n[s]\r\nk=2\r\n", "s", "k", "2"},               // no header without its end
      {"[s]\r\nk=\" a \"\r\n", "s", "k", " a "},
      {"[s]\r\nk=' a '\r\n", "s", "k", " a "},
      {"[s]\r\nk=\"\"a\"\"\r\n", "s", "k", "\"a\""},  // one pair only
      {"[s]\r\nk=\"a\r\n", "s", "k", "\"a"},
      {"[s]\r\nk=\"a'\r\n", "s", "k", "\"a'"},
      {"[s]\r\nk=\"\r\n", "s", "k", "\""},
      {"[LOG]\r\n;note\r\n\r\n[kdv]\r\n Name = \"KDV\" ", "kdv", "NAME", "KDV"},
  };
  for (const auto& c : cases) EXPECT_EQ(Read(c.content, c.section, c.key), c.want) << c.content;
}

TEST_F(IniFile, CutsLongValuesAndTrimsTheDefault) {
  const std::string path = folder_.Put("a.ini", "[s]\r\nk=" + std::string(300, 'x') + "\r\n");
  EXPECT_EQ(ReadIni(files_, path, "s", "k", ""), std::string(254, 'x'));
  EXPECT_EQ(ReadIni(files_, path, "s", "n", std::string(300, 'y')), std::string(254, 'y'));
  EXPECT_EQ(ReadIni(files_, path, "s", "n", "  a  "), "  a");
  EXPECT_EQ(ReadIni(files_, path, "s", "n", "   "), "");
}

TEST_F(IniFile, MissingFilesReadAsTheDefaultAndStayMissing) {
  EXPECT_EQ(ReadIni(files_, folder_ / "none.ini", "s", "k", "d"), "d");
  EXPECT_EQ(ReadIni(files_, folder_ / "none/none.ini", "s", "k", "d"), "d");
  EXPECT_EQ(ReadIni(files_, folder_.path(), "s", "k", "d"), "d");
  EXPECT_TRUE(std::filesystem::is_empty(folder_.path()));
}

TEST_F(IniFile, WritesOneKeyAndKeepsAllOtherBytes) {
  const struct {
    std::string_view before, section, key, value, after;
  } cases[] = {
      {"", "s", "k", "1", "[s]\r\nk=1\r\n"},
      {"; only", "s", "k", "1", "; only\r\n[s]\r\nk=1\r\n"},  // the last line gets its end first
      {"[t]\r\na=1\r\n\r\n", "s", "k", "1", "[t]\r\na=1\r\n\r\n[s]\r\nk=1\r\n"},
      {"[s]", "s", "k", "1", "[s]\r\nk=1\r\n"},
      {"[s]\r\n\r\n[t]\r\n", "s", "k", "1", "[s]\r\nk=1\r\n\r\n[t]\r\n"},
      {"[s]\r\na=1\r\n \r\n\r\n[t]\r\nk=2\r\n", "s", "k", "1", "[s]\r\na=1\r\nk=1\r\n \r\n\r\n[t]\r\nk=2\r\n"},
      {"[s]\r\nK = 0 \r\nb=\xFF\x98\r\n", "S", "k", "1", "[s]\r\nK=1\r\nb=\xFF\x98\r\n"},  // the file's own spelling
      {"[s]\nk=0\nb=1\n", "s", "k", "1", "[s]\nk=1\nb=1\n"},
      {"[s]\r\nk=0", "s", "k", "1", "[s]\r\nk=1"},
      {"[s]\r\nk=0\r\nk=2\r\n", "s", "k", "1", "[s]\r\nk=1\r\nk=2\r\n"},
      {"[s]\r\n[s]\r\nk=2\r\n", "s", "k", "1", "[s]\r\nk=1\r\n[s]\r\nk=2\r\n"},
      {"[s]\r\nk\r\n", "s", "k", "1", "[s]\r\nk\r\nk=1\r\n"},
      {"[s]\r\n", "s", "k", " \"a\" ", "[s]\r\nk= \"a\" \r\n"},  // raw: no quoting, no trimming
      {"[LOG]\r\n;note\r\n\r\n[kdv]\r\nName = \"KDV\" ", "LOG", "IsLog", "0",
       "[LOG]\r\n;note\r\nIsLog=0\r\n\r\n[kdv]\r\nName = \"KDV\" "},
  };
  for (const auto& c : cases) EXPECT_EQ(Written(c.before, c.section, c.key, std::string(c.value)), c.after) << c.before;
}

TEST_F(IniFile, LineBreaksGoIntoTheFileAndOutOfTheCallersVariable) {
  std::string value = "one\r\ntwo=2\n";
  ASSERT_TRUE(WriteIni(files_, folder_ / "a.ini", "s", "k", value));
  EXPECT_EQ(value, "one  two=2 ");
  EXPECT_EQ(folder_.Get("a.ini"), "[s]\r\nk=one\r\ntwo=2\n\r\n");
  EXPECT_EQ(ReadIni(files_, folder_ / "a.ini", "s", "k", ""), "one");
  EXPECT_EQ(ReadIni(files_, folder_ / "a.ini", "s", "two", ""), "2");

  value = "a\nb";
  EXPECT_FALSE(WriteIni(files_, folder_ / "none/a.ini", "s", "k", value));
  EXPECT_EQ(value, "a b");  // also when nothing could be written
}

TEST_F(IniFile, ALinkToTheFileStaysALink) {
  folder_.Put("real.ini", "[s]\r\nk=1\r\n");
  std::filesystem::create_symlink("real.ini", folder_ / "a.ini");
  std::string value = "2";
  EXPECT_TRUE(WriteIni(files_, folder_ / "a.ini", "s", "k", value));
  EXPECT_EQ(folder_.Get("real.ini"), "[s]\r\nk=2\r\n");
}

TEST_F(IniFile, AFileTooLargeToReadIsNeverReplaced) {
  const std::string huge = "[s]\r\nk=1\r\n" + std::string(1 << 20, ';');
  EXPECT_EQ(Read(huge, "s", "k"), "absent");
  std::string value = "2";
  EXPECT_FALSE(WriteIni(files_, folder_ / "a.ini", "s", "k", value));
  EXPECT_EQ(folder_.Get("a.ini"), huge);

  const std::string nearly = "[s]\r\n" + std::string(64 * 1024 - 10, ';');
  value = "would lose the file";  // longer than can be read back
  EXPECT_FALSE(WriteIni(files_, folder_.Put("a.ini", nearly), "s", "k", value));
  EXPECT_EQ(folder_.Get("a.ini"), nearly);
}

TEST_F(IniFile, AnyBytesAreReadAndWrittenSafely) {
  std::mt19937 random(1);
  constexpr std::string_view kBytes = "[]=;\"' \t\r\nsk\x00\x98\xFF"sv;
  for (int round = 0; round < 100; ++round) {
    std::string content;
    for (auto i = random() % 60; i > 0; --i) content += kBytes[random() % kBytes.size()];
    std::string value = "v";
    ASSERT_TRUE(WriteIni(files_, folder_.Put("a.ini", content), "s", "k", value));
    EXPECT_EQ(ReadIni(files_, folder_ / "a.ini", "s", "k", ""), "v") << testing::PrintToString(content);
  }
}

}  // namespace
