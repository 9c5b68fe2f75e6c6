// Saved pages put into a real base.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "base/ru_literal.h"
#include "cli/run_tool.h"
#include "demo_forum/demo_pages.h"
#include "support/temp_folder.h"

namespace cli {
namespace {

using testing::HasSubstr;

class ImportIntoABase : public testing::Test {
 protected:
  void SetUp() override {
    const std::string sample = std::string(FORUM_SAMPLES) + "/moysha_2001.mdb";
    if (!std::filesystem::exists(sample)) GTEST_SKIP() << "no sample base " << sample;
    for (const std::string& base : {base_, nameless_}) std::filesystem::copy_file(sample, base);
    folder_.Put("program/forum.ini", "[FORUMS]\r\nmax=1\r\nf1=moysha\r\n");
    MessageRecord message;
    message.Тема = "О курсе"_ru;
    message.Автор = "Ваня"_ru;
    message.Текст = "Вырос."_ru;
    message.Дата = OleDate{37'330};
    const std::string page = demo_pages::MoyshaPage(message);
    for (const char* const name : {"pages/7.shtml", "pages/a/msg_8.html", "pages/100001.html"}) folder_.Put(name, page);
  }

  Outcome Import(std::vector<std::string> words) {
    words.insert(words.begin(), {"import", "--data-dir", folder_ / "program"});
    return Kdvbase(words);
  }

  TempFolder folder_;
  std::string base_ = folder_ / "moysha_copy.mdb", nameless_ = folder_ / "archive.mdb", pages_ = folder_ / "pages";
};

TEST_F(ImportIntoABase, StoresTheNewNumbersOnce) {
  const Outcome first = Import({base_, pages_});
  EXPECT_EQ(first.status, 0) << first.errors;
  EXPECT_EQ(first.out, "Записано сообщений: 2, уже были в базе: 1, не записано страниц: 0\n");
  EXPECT_EQ(
      Kdvbase({"sql", base_, "select Код, Тема, Автор, Дата, Текст from База where Код < 9 order by Код", "--json"})
          .out,
      "[7, \"О курсе\", \"Ваня\", 37330.0, \"Вырос.\"]\n[8, \"О курсе\", \"Ваня\", 37330.0, \"Вырос.\"]\n");
  EXPECT_EQ(Import({base_, pages_}).out, "Записано сообщений: 0, уже были в базе: 3, не записано страниц: 0\n");
  EXPECT_EQ(Kdvbase({"sql", base_, "select count(*) as n from База", "--json"}).out, "[402]\n");
}

TEST_F(ImportIntoABase, TheKindComesFromTheBasesNameOrTheOption) {
  EXPECT_EQ(Import({nameless_, pages_}).status, 2);
  EXPECT_EQ(Import({nameless_, pages_, "--kind", "moysh"}).status, 2);
  EXPECT_EQ(Import({nameless_, pages_, "--kind", "moysha"}).status, 0);
}

TEST_F(ImportIntoABase, PagesThatGaveNothingAreTold) {
  const std::string broken = folder_.Put("pages/index.html", "x");
  const Outcome outcome = Import({base_, pages_});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_THAT(outcome.errors, HasSubstr(broken + ": в имени файла нет номера"));
  EXPECT_EQ(outcome.out, "Записано сообщений: 2, уже были в базе: 1, не записано страниц: 1\n");
}

}  // namespace
}  // namespace cli
