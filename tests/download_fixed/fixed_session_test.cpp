#include "download_fixed/fixed_session.h"

#include <gtest/gtest.h>

#include "base/cat.h"
#include "support/download_stage.h"

namespace {

struct Stage : DownloadStage {
  Stage() : DownloadStage("[LOG]\r\nIsLog=1\r\n[kdv]\r\nURL=kdv.test/board\r\n") {}
  FixedDownload with{records, fetcher, view, ini, forum_log, clock, "sub."};
  FixedSession session{with};

  void Manual(std::string_view kind, std::string begin, std::string end) {
    session.cmdDownload_Click(kind, {.automatic = false, .begin = std::move(begin), .end = std::move(end)});
  }
  bool IsIdle() const {
    return view.IsEnabled(SessionButton::cmdDownload) && view.IsEnabled(SessionButton::cmdGetLast) &&
           !view.IsEnabled(SessionButton::cmdCancelDL);
  }
};

std::string KdvUrl(int number) { return Cat("kdv.test/board/messages/", number, ".html"); }

const std::string kKdvPage = "<title>T</title><textarea COLS=55 ROWS=6>B</textarea>";
constexpr const char* kDataTxt = "kdv.test/board/data.txt";
constexpr const char* kWait = "hint: Дождитесь завершения скачивания текущего файла....";
constexpr const char* kEnd =
    "hint: Hint : для определения последнего сообщения в базе или последнего сообщения на форуме нажмите на кнопки "
    "\"?\"\n";

TEST(FixedSession, TellsEveryStep) {
  Stage stage;
  stage.records.Hold(1);
  stage.fetcher.Serve(KdvUrl(2), kKdvPage);
  stage.fetcher.Serve(KdvUrl(3), "404 Not Found");
  stage.fetcher.Serve(KdvUrl(4), "");
  stage.fetcher.Fail(KdvUrl(5));
  stage.Manual("kdv", "1", "5");
  EXPECT_EQ(stage.script.text(), Events(R"(log cleared | hint: Получаю сообщения с 1 по 5....
cmdDownload off | cmdGetLast off | cmdCancelDL on | rows sorted | rows cleared
progress 0 | row 00001 | cell 1: 1 | cell 5: Пропущен : уже есть | icon 15 | colour 255
log: \r\n9:05:07 - Пропустил 1 | icon 13 | bar1: Пропущено 1
bar2: Загружено 0, не найдено 0, пропущено 1. Всего к загрузке - 4 | events
progress 20 | row 00002 | cell 1: 2 | cell 5: Импортирую..... | bar1: Загружаю 2 | hourglass | icon 5
log: \r\n9:05:07 - Открываю kdv.test/board/messages/2.html | fetch kdv.test/board/messages/2.html, 60 s
log: \r\n9:05:07 - Загрузил 53 байт из сообщения 2 | normal pointer
cell 5: Импортирую... | cell 1: 00002 | cell 2:  | cell 3: T | cell 4: 0:00:00
new record | Текст = 'B' | Дата = 1899-12-30 | Тема = 'T' | Вответ = 0 | Код = 2 | stored
cell 5: Импортирован | bar1: Загрузил 2 | icon 1
bar2: Загружено 1, не найдено 0, пропущено 1. Всего к загрузке - 4 | events
progress 40 | row 00003 | cell 1: 3 | cell 5: Импортирую..... | bar1: Загружаю 3 | hourglass | icon 5
log: \r\n9:05:07 - Открываю kdv.test/board/messages/3.html | fetch kdv.test/board/messages/3.html, 60 s
log: \r\n9:05:07 - Загрузил 13 байт из сообщения 3 | normal pointer
cell 5: Not Found (404) | icon 15 | colour 255 | bar1: Не нашел 3 | icon 16
bar2: Загружено 1, не найдено 1, пропущено 1. Всего к загрузке - 4 | events
progress 60 | row 00004 | cell 1: 4 | cell 5: Импортирую..... | bar1: Загружаю 4 | hourglass | icon 5
log: \r\n9:05:07 - Открываю kdv.test/board/messages/4.html | fetch kdv.test/board/messages/4.html, 60 s
log: \r\n9:05:07 - Загрузил 0 байт из сообщения 4 | normal pointer
log: \r\n9:05:07 - Ошибка соединения | cell 5: Not Loaded | icon 15 | colour 255 | bar1: Проверьте соединение | icon 9
bar2: Загружено 1, не найдено 1, пропущено 1. Всего к загрузке - 4 | events
progress 80 | row 00005 | cell 1: 5 | cell 5: Импортирую..... | bar1: Загружаю 5 | hourglass | icon 5
log: \r\n9:05:07 - Открываю kdv.test/board/messages/5.html | fetch kdv.test/board/messages/5.html, 60 s
normal pointer | log: \r\n9:05:07 - TimeOut
cell 5: TimeOut | icon 15 | colour 255 | bar1: Нет соединения с сайтом | icon 9
bar2: Загружено 1, не найдено 1, пропущено 1. Всего к загрузке - 4 | events
cmdDownload on | cmdGetLast on | cmdCancelDL off | progress 0
)") + kEnd);
  EXPECT_EQ(stage.log_file.text(), Events(R"(Пропустил 1 | Пропущено 1
Загружаю 2 | Открываю kdv.test/board/messages/2.html | Загрузил 53 байт из сообщения 2
Import: text=B | Import: date=0:00:00 | Import: author= | Import: theme=T | Import: from=0 | Import: email=
Import: kod=2 | Загрузил 2
Загружаю 3 | Открываю kdv.test/board/messages/3.html | Загрузил 13 байт из сообщения 3 | Не нашел 3
Загружаю 4 | Открываю kdv.test/board/messages/4.html | Загрузил 0 байт из сообщения 4
Ошибка соединения | Проверьте соединение
Загружаю 5 | Открываю kdv.test/board/messages/5.html | TimeOut | Нет соединения с сайтом | Нет соединения с сайтом
)"));
}

TEST(FixedSession, RefusesARangeInItsForumsWords) {
  constexpr const char* kBadNumber = "hint: Ошибка в номере первого или последнего сообщения. Исправьте...\n";
  const struct {
    std::string_view kind;
    std::string begin, end, want;
  } cases[] = {
      {"kdv", "6", "5", "hint: Ошибка : номер первого сообщения равен или больше последнего...\n"},
      {"rts-an", "6", "5", "hint: Ошибка : номер первого сообщения больше последнего...\n"},
      {"kdv", "0", "5", kBadNumber},
      {"rts-an", "", "5", kBadNumber},
      {"", "1", "5", "box: Я не знаю откуда качать ! Из названия файла непонятно, что это за база\n"},
  };
  for (const auto& c : cases) {
    Stage stage;
    stage.Manual(c.kind, c.begin, c.end);
    EXPECT_EQ(stage.script.text(), "log cleared\n" + c.want) << c.begin << " to " << c.end;
  }
}

TEST(FixedSession, AsksForOneMessageAtTheForumsOwnAddress) {
  Stage stage;
  const std::string url = "sub.example/default.asp?action=view&id=100000&returnpage=0";
  stage.fetcher.Serve(url, "404 Not Found");
  stage.Manual("rts-an", "100000", "100000");
  EXPECT_TRUE(stage.script.Tells(Cat("fetch ", url, ", 60 s")));
  EXPECT_TRUE(stage.script.Tells("bar2: Загружено 0, не найдено 1, пропущено 0. Всего к загрузке - 0"));
}

TEST(FixedSession, AutomaticTakesWhatIsNewOnTheForum) {
  const std::string idle_buttons = "cmdDownload on\ncmdGetLast on\ncmdCancelDL off\n";
  const std::string no_number =
      "hint: Невозможно загрузить номер последнего сообщения. Проверьте соединение...\n" + idle_buttons;
  const struct {
    const char* data_txt;
    std::string ends_with;
    std::size_t in_base;
  } cases[] = {
      {"7", idle_buttons + "hint: На форуме нет новых сообщений\n", 1},
      {"6", "bar1: Последнее сообщение - 6\n" + idle_buttons, 1},  // the status bar alone tells it
      {"<html>", no_number, 1},
      {"99999999999", no_number, 1},
      {"8 messages", kEnd, 2},
  };
  for (const auto& c : cases) {
    Stage stage;
    stage.records.Hold(7);
    stage.fetcher.Serve(kDataTxt, c.data_txt);
    stage.fetcher.Serve(KdvUrl(8), kKdvPage);
    stage.session.cmdDownload_Click("kdv", {});
    EXPECT_TRUE(stage.script.text().ends_with(c.ends_with)) << c.data_txt << "\n" << stage.script.text();
    EXPECT_EQ(stage.records.size(), c.in_base);
    EXPECT_TRUE(stage.IsIdle());
  }
}

TEST(FixedSession, StopsBetweenNumbers) {
  Stage stage;
  stage.fetcher.Serve(KdvUrl(2), [&]() -> std::string {
    stage.session.cmdCancelDL_Click();
    return "";  // what a cancelled transfer gives
  });
  stage.Manual("kdv", "2", "3");
  EXPECT_TRUE(stage.script.Tells(Cat("cancel the transfer | ", kWait)));
  EXPECT_TRUE(stage.script.Tells(R"(log: \r\n9:05:07 - Загрузил 0 байт из сообщения 2)"));
  EXPECT_EQ(stage.script.From("events"),
            Events(R"(events | cmdDownload on | cmdGetLast on | cmdCancelDL off | progress 0
log: \r\n9:05:07 - Скачивание остановлено | bar1: Остановлено пользователем
)") + kEnd);
}

TEST(FixedSession, AStopAskedOfALookUpDoesNotStopTheNextSession) {
  Stage stage;
  stage.fetcher.Serve(kDataTxt, [&]() -> std::string {
    stage.session.cmdCancelDL_Click();
    return "";
  });
  stage.fetcher.Serve(KdvUrl(3), kKdvPage);
  stage.session.cmdGetLast_Click("kdv");
  stage.Manual("kdv", "3", "3");
  EXPECT_EQ(stage.records.size(), 1u);
}

TEST(FixedSession, ClosingWaitsForTheNumberUnderWay) {
  for (const char* last : {"2", "3"}) {  // also when it is the last one
    Stage stage;
    EXPECT_TRUE(stage.session.MayClose()) << "no session runs";
    stage.script.Take();
    stage.fetcher.Serve(KdvUrl(2), [&] {
      EXPECT_FALSE(stage.session.MayClose());
      EXPECT_TRUE(stage.script.Tells(Cat("cancel the transfer | ", kWait)));
      return kKdvPage;
    });
    stage.Manual("kdv", "2", last);
    EXPECT_EQ(stage.records.size(), 1u) << "the page that came is kept";
    EXPECT_TRUE(stage.script.text().ends_with(Cat(kEnd, "close\n")));
    EXPECT_TRUE(stage.IsIdle());
  }
}

TEST(FixedSession, EndsWithAWordWhenTheBaseFails) {
  for (const std::string step : {"msgExist", "GetFirst"}) {
    Stage stage;
    stage.records.Fail(step, 9);
    stage.session.cmdDownload_Click("kdv", {.automatic = step == "GetFirst", .begin = "2", .end = "3"});
    EXPECT_TRUE(stage.IsIdle());
    EXPECT_TRUE(stage.script.text().ends_with("bar1: Диск не отвечает\nhint: Диск не отвечает\n")) << step;
  }
}

TEST(FixedSession, QuestionButtonsFillTheBoxes) {
  Stage stage;
  stage.session.cmdGetFirst_Click();
  EXPECT_EQ(stage.script.Take(), "txtBegin: 1\n") << "of an empty base";
  stage.records.Hold(41);
  stage.fetcher.Serve(kDataTxt, "43");
  stage.session.cmdGetFirst_Click();
  stage.session.cmdGetLast_Click("kdv");
  EXPECT_TRUE(stage.script.Tells("txtBegin: 41"));
  EXPECT_TRUE(stage.script.Tells("txtEnd: 43"));
  stage.script.Take();
  stage.fetcher.Fail(kDataTxt);
  stage.session.cmdGetLast_Click("kdv");
  EXPECT_EQ(stage.script.text().find("txtEnd"), std::string::npos);
}

TEST(FixedForum, truePgMoyshaTellsAPageFromAReport) {
  EXPECT_EQ(truePgMoysha(""), 0);
  EXPECT_EQ(truePgMoysha("<TITLE>WebBoard: Not available</TITLE>"), 2);
  EXPECT_EQ(truePgMoysha("<TITLE>webboard: not available</TITLE>"), 1);
}

}  // namespace
