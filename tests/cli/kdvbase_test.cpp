// The command line tool as a user calls it, run in this process.

#include "cli/run_tool.h"

namespace cli {
namespace {

using testing::HasSubstr;

TEST(Tool, MisuseIsToldFromFailure) {
  ExpectCalls({{{}, 2, "", "kdvbase sql"},
               {{"нет"}, 2, "", "нет"},
               {{"info"}, 2, "", "Не хватает аргументов"},
               {{"info", "a", "b"}, 2, "", "b"},
               {{"info", "a", "--json"}, 2, "", "--json"},
               {{"dump", "a", "--codepage"}, 2, "", "--codepage"},
               {{"dump", "a", "--codepage", "866"}, 2, "", "866"},
               {{"dump", "a", "--codepage=12x"}, 2, "", "12x"},
               {{"sql", "a"}, 2, "", "Не хватает аргументов"},
               {{"sql", "a", "select", "--json=1"}, 2, "", "--json"},
               {{"sql", "a", "select", "--json", "--csv"}, 2, "", "--csv"},
               {{"tree", "a", "--days", "0"}, 2, "", "Не число дней: 0"},
               {{"info", "/нет/такого.mdb"}, 1, "", "/нет/такого.mdb"},
               {{"dump", "--", "--json"}, 1, "", "--json"},
               {{"info", "--data-dir", "/tmp", "/нет.mdb"}, 1, "", "/нет.mdb"},
               {{"info", FORUM_SOURCE_DIR "/CMakeLists.txt"}, 1}});
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
  for (const std::string name : {"refuse_password_2000", "refuse_password_2003"}) {
    if (!HasSample(name)) GTEST_SKIP() << "no sample base " << name;
    for (const std::string command : {"info", "tables", "queries", "dump"})
      ExpectCalls({{{command, SamplePath(name)}, 1, "", "паролем"}});
  }
}

class KdvbaseOnForum : public testing::Test {
 protected:
  void SetUp() override {
    if (!HasSample("moysha_2001")) GTEST_SKIP() << "no sample base";
  }
  std::string base_ = SamplePath("moysha_2001");
};

TEST_F(KdvbaseOnForum, ListsWhatABaseHolds) {
  ExpectCalls({{{"tables", base_}, 0, "База\n"},
               {{"queries", base_},
                0,
                "БазаИндекс\tSELECT [Код], [Вответ], [Тема], [Дата], [Автор] FROM База;\n"
                "БазаЗапрос\tSELECT * FROM База ORDER BY [Код];\n"}});
  EXPECT_THAT(Kdvbase({"info", base_}).out,
              testing::AllOf(HasSubstr("Jet 3"), HasSubstr("1252"), HasSubstr("«База»: 400")));
}

TEST_F(KdvbaseOnForum, PrintsRowsInThreeForms) {
  const std::string rows =
      "select Код, 'a\"b,\tc' as Т, Дата, null as Н, Код*1.5 as Д from База where Код in (100001, 100003) order by Код";
  ExpectCalls({{{"sql", base_, rows, "--json"},
                0,
                "[100001, \"a\\\"b,\\tc\", 36220.378483796296, null, 150001.5]\n[100003, \"a\\\"b,\\tc\", "
                "36220.39221064815, null, 150004.5]\n"},
               {{"sql", base_, rows, "--csv"},
                0,
                "Код,Т,Дата,Н,Д\r\n100001,\"a\"\"b,\tc\",1999-03-01 "
                "09:05:01,,150001.5\r\n100003,\"a\"\"b,\tc\",1999-03-01 09:24:47,,150004.5\r\n"},
               {{"sql", base_, rows},
                0,
                "Код\tТ\tДата\tН\tД\n100001\ta\"b, c\t1999-03-01 09:05:01\t\t150001.5\n100003\ta\"b, c\t1999-03-01 "
                "09:24:47\t\t150004.5\n"}});
}

TEST_F(KdvbaseOnForum, BadStatementsFail) {
  ExpectCalls({{{"sql", base_, "select Нет from База"}, 1, "", "«Нет»"},
               {{"sql", base_, "select * from Нет"}, 1, "", "«Нет»"},
               {{"sql", base_, "select * from База where"}, 1, "", "оборван"},
               {{"sql", base_, "select * from База where Тема like '['"}, 1, "", "шаблоне"}});
}

TEST_F(KdvbaseOnForum, AFullDiskIsAFailure) {
  struct FullDisk : std::streambuf {
  } full;
  std::ostream out(&full);
  std::ostringstream errors;
  DiskFileSystem files;
  EXPECT_EQ(RunTool(std::vector<std::string>{"dump", base_}, out, errors, files, FixedClock(2002, 3, 15)), 1);
  EXPECT_THAT(errors.str(), HasSubstr("записать"));
}

}  // namespace
}  // namespace cli
