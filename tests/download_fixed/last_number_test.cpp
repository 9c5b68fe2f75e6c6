#include "download_fixed/last_number.h"

#include <gtest/gtest.h>

#include <string>

#include "support/download_stage.h"

namespace {

constexpr const char* kFrontPage = "sub.example";
constexpr const char* kDataTxt = "kdv.example/forum/data.txt";

struct Stage : DownloadStage {
  FixedDownload with{records, fetcher, view, ini, forum_log, clock, "sub."};
};

std::string Links(std::initializer_list<const char*> numbers) {
  std::string page = "<html>";
  for (const char* number : numbers) page += std::string("<a href=/default.asp?action=view&id=") + number + "&x=1>";
  return page;
}

TEST(GetLastKDV, NeverCallsTheNumberWrong) {
  Stage stage;
  stage.records.Hold(9);
  stage.fetcher.Serve(kDataTxt, "5\r\n");
  EXPECT_EQ(GetLastKDV(stage.with), 5);
  EXPECT_EQ(stage.script.Take(), R"(cmdDownload off
cmdGetLast off
cmdCancelDL on
bar1: Получаю номер последнего сообщения ...
fetch kdv.example/forum/data.txt, 60 s
bar1: Последнее сообщение - 5
bar1: Последнее сообщение - 5
cmdDownload on
cmdGetLast on
cmdCancelDL off
)");
}

TEST(GetLastRtsAn, CallsANumberBelowTheBasesLastWrong) {
  Stage stage;
  stage.records.Hold(9);
  stage.fetcher.Serve(kFrontPage, Links({"3", "5", "3", "4"}));
  EXPECT_EQ(GetLastRtsAn(stage.with), 5);
  EXPECT_EQ(stage.script.Take(), R"(cmdDownload off
cmdGetLast off
cmdCancelDL on
bar1: Получаю номер последнего сообщения ...
hourglass
fetch sub.example, 60 s
normal pointer
bar1: На форуме неверный номер последнего сообщения
hint: Либо на форуме произошел сбой, либо ошибка в mdb файле (удалите лишние сообщения вручную)
bar1: Последнее сообщение - 5
cmdDownload on
cmdGetLast on
cmdCancelDL off
)");
}

TEST(GetLastRtsAn, TheBasesLastIsNotWrong) {
  Stage stage;
  stage.records.Hold(9);
  stage.fetcher.Serve(kFrontPage, Links({"9", "8"}));
  EXPECT_EQ(GetLastRtsAn(stage.with), 9);
  EXPECT_EQ(stage.script.text().find("неверный"), std::string::npos);
}

TEST(GetLastNumber, ZeroWhenThePageDoesNotComeOrNamesNone) {
  const auto answers = [](Stage& stage, const char* url, int nth) {
    if (nth == 0) stage.fetcher.Fail(url);
    if (nth == 1) stage.fetcher.Serve(url, "");
    if (nth == 2) stage.fetcher.Serve(url, "<html>404 Not Found</html>");
  };
  for (int nth = 0; nth < 3; ++nth) {
    Stage stage;
    answers(stage, kFrontPage, nth);
    answers(stage, kDataTxt, nth);
    constexpr const char* kEnd =
        "bar1: Остановлено. Проверьте соединение.\n"
        "hint: Невозможно загрузить номер последнего сообщения. Проверьте соединение...\n"
        "cmdDownload on\ncmdGetLast on\ncmdCancelDL off\n";
    EXPECT_EQ(GetLastKDV(stage.with), 0);
    EXPECT_TRUE(stage.script.Take().ends_with(std::string("bar1: Последнее сообщение - 0\n") + kEnd));
    EXPECT_EQ(GetLastRtsAn(stage.with), 0);
    EXPECT_TRUE(stage.script.Take().ends_with(std::string("(удалите лишние сообщения вручную)\n") + kEnd));
  }
}

}  // namespace
