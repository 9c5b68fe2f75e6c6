#include "download_fixed/last_number.h"

#include <gtest/gtest.h>

#include "base/cat.h"
#include "support/download_stage.h"

namespace {

constexpr const char* kFrontPage = "sub.example";
constexpr const char* kDataTxt = "kdv.example/forum/data.txt";

std::string Links(std::initializer_list<int> numbers) {
  std::string page = "<html>";
  for (const int number : numbers) page += Cat("<a href=/default.asp?action=view&id=", number, "&x=1>");
  return page;
}

TEST(GetLastNumber, TellsWhatTheForumSays) {
  const std::string begin =
      "cmdDownload off | cmdGetLast off | cmdCancelDL on | bar1: Получаю номер последнего сообщения ... | ";
  const std::string end = "cmdDownload on | cmdGetLast on | cmdCancelDL off\n";
  const std::string kdv = Cat(begin, "fetch ", kDataTxt, ", 60 s | ");
  const std::string rts_an = Cat(begin, "hourglass | fetch ", kFrontPage, ", 60 s | normal pointer | ");
  const std::string wrong =
      "bar1: На форуме неверный номер последнего сообщения | "
      "hint: Либо на форуме произошел сбой, либо ошибка в mdb файле (удалите лишние сообщения вручную) | ";
  const std::string none =
      "bar1: Остановлено. Проверьте соединение. | "
      "hint: Невозможно загрузить номер последнего сообщения. Проверьте соединение... | ";
  const std::string five = "bar1: Последнее сообщение - 5 | ", nine = "bar1: Последнее сообщение - 9 | ",
                    zero = "bar1: Последнее сообщение - 0 | ";
  const struct {
    const char* name;
    std::optional<std::string> page;
    std::int32_t (*look_up)(const FixedDownload&);
    std::int32_t want;
    std::string told;
  } cases[] = {
      {"kdv: never called wrong", "5\r\n", GetLastKDV, 5, kdv + five + five},
      {"kdv: no page", {}, GetLastKDV, 0, kdv + zero + none},
      {"kdv: an empty page", "", GetLastKDV, 0, kdv + zero + none},
      {"kdv: no number", "<html>404 Not Found</html>", GetLastKDV, 0, kdv + zero + none},
      {"rts-an: below the base's last", Links({3, 5, 3, 4}), GetLastRtsAn, 5, rts_an + wrong + five},
      {"rts-an: the base's last", Links({9, 8}), GetLastRtsAn, 9, rts_an + nine + nine},
      {"rts-an: no page", {}, GetLastRtsAn, 0, rts_an + wrong + none},
      {"rts-an: no number", "<html>404 Not Found</html>", GetLastRtsAn, 0, rts_an + wrong + none},
  };
  for (const auto& c : cases) {
    DownloadStage stage;
    stage.records.Hold(9);
    for (const char* url : {kFrontPage, kDataTxt}) {
      if (c.page)
        stage.fetcher.Serve(url, *c.page);
      else
        stage.fetcher.Fail(url);
    }
    EXPECT_EQ(c.look_up({stage.records, stage.fetcher, stage.view, stage.ini, stage.forum_log, stage.clock, "sub."}),
              c.want);
    EXPECT_EQ(stage.script.text(), Events(c.told + end)) << c.name;
  }
}

}  // namespace
