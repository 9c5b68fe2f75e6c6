// The command line tool as a user calls it, run in this process.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include "base/file.h"
#include "cli/run_tool.h"
#include "cli/tool.h"
#include "support/fixed_clock.h"

namespace cli {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

std::string Sample(const std::string& name) { return std::string(FORUM_SAMPLES) + "/" + name + ".mdb"; }

TEST(Tool, MisuseIsToldFromFailure) {
  const struct {
    std::vector<std::string> words;
    int status;
    std::string_view error;
  } cases[] = {
      {{}, 2, "kdvbase sql"},
      {{"нет"}, 2, "нет"},
      {{"info"}, 2, "Не хватает аргументов"},
      {{"info", "a", "b"}, 2, "b"},
      {{"info", "a", "--json"}, 2, "--json"},
      {{"dump", "a", "--codepage"}, 2, "--codepage"},
      {{"dump", "a", "--codepage", "866"}, 2, "866"},
      {{"dump", "a", "--codepage=12x"}, 2, "12x"},
      {{"sql", "a"}, 2, "Не хватает аргументов"},
      {{"sql", "a", "select", "--json=1"}, 2, "--json"},
      {{"sql", "a", "select", "--json", "--csv"}, 2, "--csv"},
      {{"info", "/нет/такого.mdb"}, 1, "/нет/такого.mdb"},
      {{"dump", "--", "--json"}, 1, "--json"},
      {{"info", "--data-dir", "/tmp", "/нет.mdb"}, 1, "/нет.mdb"},
      {{"info", FORUM_SOURCE_DIR "/CMakeLists.txt"}, 1, ""},
  };
  for (const auto& c : cases) {
    const Outcome outcome = Kdvbase(c.words);
    EXPECT_EQ(outcome.status, c.status) << testing::PrintToString(c.words) << outcome.errors;
    EXPECT_THAT(outcome.errors, HasSubstr(c.error)) << testing::PrintToString(c.words);
    EXPECT_EQ(outcome.out, "") << testing::PrintToString(c.words);
  }
}

TEST(Tool, HelpAndVersionGoToStandardOutput) {
  EXPECT_THAT(Kdvbase({"--version"}).out, testing::ContainsRegex("^kdvbase [0-9]+\\.[0-9]+\\.[0-9]+\n$"));
  for (const std::vector<std::string>& words : {std::vector<std::string>{"--help"}, {"sql", "--help"}}) {
    const Outcome outcome = Kdvbase(words);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.out, HasSubstr("kdvbase sql БАЗА ЗАПРОС"));
    EXPECT_EQ(outcome.errors, "");
  }
}

TEST(Tool, ProtectedBasesAreRefusedInWords) {
  for (const char* const name : {"refuse_password_2000", "refuse_password_2003"}) {
    if (!std::filesystem::exists(Sample(name))) GTEST_SKIP() << "no sample base " << name;
    for (const std::string command : {"info", "tables", "queries", "dump"}) {
      const Outcome outcome = Kdvbase({command, Sample(name)});
      EXPECT_EQ(outcome.status, 1) << command;
      EXPECT_THAT(outcome.errors, HasSubstr("паролем")) << command;
      EXPECT_EQ(outcome.out, "") << command;
    }
  }
}

class KdvbaseOnForum : public testing::Test {
 protected:
  void SetUp() override {
    if (!std::filesystem::exists(base_)) GTEST_SKIP() << "no sample base " << base_;
  }
  std::string base_ = Sample("moysha_2001");
};

TEST_F(KdvbaseOnForum, ListsWhatABaseHolds) {
  EXPECT_EQ(Kdvbase({"tables", base_}).out, "База\n");
  EXPECT_EQ(Kdvbase({"queries", base_}).out,
            "БазаИндекс\tSELECT [Код], [Вответ], [Тема], [Дата], [Автор] FROM База;\n"
            "БазаЗапрос\tSELECT * FROM База ORDER BY [Код];\n");
  EXPECT_THAT(Kdvbase({"info", base_}).out,
              testing::AllOf(HasSubstr("Jet 3"), HasSubstr("1252"), HasSubstr("«База»: 400")));
}

TEST_F(KdvbaseOnForum, PrintsRowsInThreeForms) {
  const std::string statement =
      "select top 2 Код, Тема & '\"x\", y' as Т, Дата, null as Н, Код*1.5 as Д from База where Дата is not null order "
      "by Код";
  EXPECT_EQ(Kdvbase({"sql", base_, "select count(*) as n from База", "--json"}).out, "[400]\n");
  const Outcome json = Kdvbase({"sql", base_, statement, "--json"});
  EXPECT_EQ(json.status, 0) << json.errors;
  EXPECT_THAT(json.out, StartsWith("[100001, \"Продавать мне бы йдебарыкры атьцияция рыкула цияба\\\"x\\\", y\", "
                                   "36220.3784"));
  EXPECT_THAT(json.out, HasSubstr(", null, 150001.5]\n[1"));
  EXPECT_THAT(Kdvbase({"sql", base_, statement, "--csv"}).out,
              StartsWith("Код,Т,Дата,Н,Д\r\n100001,\"Продавать мне бы йдебарыкры атьцияция рыкула цияба\"\"x\"\", y\","
                         "1999-03-01 09:05:01,,150001.5\r\n"));
  EXPECT_THAT(Kdvbase({"sql", base_, statement}).out,
              StartsWith("Код\tТ\tДата\tН\tД\n100001\tПродавать мне бы йдебарыкры атьцияция рыкула цияба\"x\", y\t"));
}

TEST_F(KdvbaseOnForum, BadStatementsFail) {
  const struct {
    std::string_view statement, error;
  } cases[] = {
      {"select Нет from База", "«Нет»"},
      {"select * from Нет", "«Нет»"},
      {"select * from База where", "оборван"},
      {"select * from База where Тема like '['", "шаблоне"},
  };
  for (const auto& c : cases) {
    const Outcome outcome = Kdvbase({"sql", base_, std::string(c.statement)});
    EXPECT_EQ(outcome.status, 1) << c.statement;
    EXPECT_THAT(outcome.errors, HasSubstr(c.error)) << c.statement;
    EXPECT_EQ(outcome.out, "") << c.statement;
  }
}

TEST_F(KdvbaseOnForum, AFullDiskIsAFailure) {
  class FullDisk : public std::streambuf {
   protected:
    int_type overflow(int_type) override { return traits_type::eof(); }
  } full;
  std::ostream out(&full);
  std::ostringstream errors;
  DiskFileSystem files;
  const FixedClock clock(2002, 3, 15);
  EXPECT_EQ(RunTool(std::vector<std::string>{"dump", base_}, out, errors, files, clock), 1);
  EXPECT_THAT(errors.str(), HasSubstr("записать"));
}

}  // namespace
}  // namespace cli
