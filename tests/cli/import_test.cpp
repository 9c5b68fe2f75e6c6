// Saved pages put into a real base.

#include "cli/run_tool.h"
#include "demo_forum/demo_pages.h"
#include "saved_pages/sample_message.h"
#include "support/temp_folder.h"

namespace cli {
namespace {

class ImportIntoABase : public testing::Test {
 protected:
  void SetUp() override {
    if (!HasSample("moysha_2001")) GTEST_SKIP() << "no sample base";
    for (const std::string& base : {base_, nameless_}) std::filesystem::copy_file(SamplePath("moysha_2001"), base);
    folder_.Put("program/forum.ini", "[FORUMS]\r\nmax=1\r\nf1=moysha\r\n");
    for (const char* const name : {"pages/7.shtml", "pages/a/msg_8.html", "pages/100001.html"})
      folder_.Put(name, demo_pages::MoyshaPage(SampleMessage()));
  }
  std::vector<std::string> Import(const std::string& base, const std::string& kind = "") const {
    std::vector<std::string> words{"import", base, folder_ / "pages", "--data-dir", folder_ / "program"};
    if (!kind.empty()) words.insert(words.end(), {"--kind", kind});
    return words;
  }

  TempFolder folder_;
  std::string base_ = folder_ / "moysha_copy.mdb", nameless_ = folder_ / "archive.mdb";
};

TEST_F(ImportIntoABase, StoresTheNewNumbersOnceAndTellsWhatGaveNothing) {
  const std::string new_rows = "select Код, Тема, Автор, Дата, Текст from База where Код < 9 order by Код",
                    row = ", \"О \\\"курсе\\\"\", \"Ваня\", 37330.0, \"Вырос.\\r\\nДа\"]\n";
  ExpectCalls({{Import(base_), 0, "Записано сообщений: 2, уже были в базе: 1, не записано страниц: 0\n"},
               {{"sql", base_, new_rows, "--json"}, 0, "[7" + row + "[8" + row},
               {Import(base_), 0, "Записано сообщений: 0, уже были в базе: 3, не записано страниц: 0\n"},
               {{"sql", base_, "select count(*) as n from База", "--json"}, 0, "[402]\n"}});
  const std::string broken = folder_.Put("pages/index.html", "x");
  ExpectCalls({{Import(base_), 1, "Записано сообщений: 0, уже были в базе: 3, не записано страниц: 1\n",
                broken + ": в имени файла нет номера"}});
}

TEST_F(ImportIntoABase, TheKindComesFromTheBasesNameOrTheOption) {
  ExpectCalls(
      {{Import(nameless_), 2, "", "нужен --kind"},
       {Import(nameless_, "moysh"), 2, "", "Неизвестный форум: moysh"},
       {Import(nameless_, "moysha"), 0, "Записано сообщений: 2, уже были в базе: 1, не записано страниц: 0\n"}});
}

}  // namespace
}  // namespace cli
