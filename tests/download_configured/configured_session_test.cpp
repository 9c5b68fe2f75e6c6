#include "download_configured/configured_session.h"

#include <gtest/gtest.h>

#include "base/cat.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "download_configured/import.h"
#include "support/download_stage.h"
#include "text/mdl_STR.h"

namespace {

constexpr const char* kIni =
    "[LOG]\r\nIsLog=1\r\n"
    "[moysha]\r\nURL=moysha.test/\r\nURLSFX=.shtml\r\nTIMEOUT=15\r\n"
    "[ows_ptrv]\r\nURL1=ows.test/author?\r\nURLSFX1=&full=1\r\n"
    "[gelium]\r\nTIMEOUT=1e10\r\n";

struct Stage : DownloadStage {
  explicit Stage(std::string kind = "moysha")
      : DownloadStage(kIni), with{std::move(kind), records, fetcher, view, ini, forum_log, clock} {}
  ConfiguredDownload with;
  ConfiguredSession session{with};

  void Manual(std::string begin, std::string end) {
    session.cmdDownload_Click({.automatic = false, .begin = std::move(begin), .end = std::move(end)});
  }
};

std::string Url(int number) { return Cat("moysha.test/", number, ".shtml"); }

constexpr const char* kEnd =
    "hint: Hint : для определения последнего сообщения в базе или последнего сообщения на форуме нажмите на кнопки "
    "\"?\"\n";

std::string MoyshaPage(std::string_view date = "15/03/02") {
  return Cat("<title>О курсе</title><b><a href=\"mailto:v@x.ru\">Ваня</a></b><i>"_ru, date,
             "</i><div align=left>: <a href=\"/talk/7.shtml\"></div><DIV class=divMessage><dd>строка<hr></div>"_ru);
}

TEST(ConfiguredSession, TellsEveryStep) {
  Stage stage;
  stage.records.Hold(1);
  stage.fetcher.Serve(Url(2), MoyshaPage());
  stage.fetcher.Serve(Url(3), "<TITLE>404 Not Found</TITLE>");
  stage.fetcher.Fail(Url(4));
  stage.Manual("1", "4");
  EXPECT_EQ(stage.script.text(), Events(R"(hint: Получаю сообщения с 1 по 4....
cmdDownload off | cmdGetLast off | cmdCancelDL on | rows cleared | log cleared
progress 0 | row 00001 | cell 1: 000001 | cell 5: Пропущен : уже есть | icon 15 | colour 255
log: \r\n9:05:07 - Пропустил 1 | icon 13 | bar1: Пропустил 1
bar1: Загружено 0, не найдено 0, пропущено 1. Всего к загрузке - 4 | events
progress 25 | row 00002 | cell 1: 000002 | cell 5: Импортирую..... | bar1: Загружаю 2 | hourglass | icon 5
log: \r\n9:05:07 - Открываю moysha.test/2.shtml | fetch moysha.test/2.shtml, 15 s
log: \r\n9:05:07 - Загрузил 166 байт из сообщения 2 | normal pointer
bar1: Разбор сообщения для записи в базу ... | cell 1: 000002
cell 3: О курсе | bar1: Тема сообщения ***>О курсе<*** | cell 2: Ваня | bar1: Автор сообщения ***>Ваня<***
bar1: Дата сообщения ***>2002-03-15<*** | cell 4: 15.03.02 | bar1: Код главного сообщения ***>7<***
bar1: EMail сообщения ***>v@x.ru<*** | bar1: Текст сообщения ... | bar1: Запись сообщения в базу ...
new record | Код = 2 | Автор = 'Ваня' | Тема = 'О курсе' | Вответ = 7 | Дата = 2002-03-15
Текст = 'строка' | АвторMail = 'v@x.ru' | stored
bar1: Сообщение записано в базу ... | bar1: Загрузил 2 | cell 5: Ок | icon 1
bar1: Загружено 1, не найдено 0, пропущено 1. Всего к загрузке - 4 | events
progress 50 | row 00003 | cell 1: 000003 | cell 5: Импортирую..... | bar1: Загружаю 3 | hourglass | icon 5
log: \r\n9:05:07 - Открываю moysha.test/3.shtml | fetch moysha.test/3.shtml, 15 s
log: \r\n9:05:07 - Загрузил 28 байт из сообщения 3 | normal pointer
cell 5: Not Found (404) | icon 15 | colour 255 | bar1: Не нашел 3 | cell 5:  Не найден | icon 16
bar1: Загружено 1, не найдено 1, пропущено 1. Всего к загрузке - 4 | events
progress 75 | row 00004 | cell 1: 000004 | cell 5: Импортирую..... | bar1: Загружаю 4 | hourglass | icon 5
log: \r\n9:05:07 - Открываю moysha.test/4.shtml | fetch moysha.test/4.shtml, 15 s
log: \r\n9:05:07 - Загрузил 0 байт из сообщения 4 | normal pointer
log: \r\n9:05:07 - Ошибка соединения | cell 5: Not Loaded | icon 15 | colour 255
cell 5:  Нет коннекта | bar1: Проверьте соединение | icon 9
bar1: Загружено 1, не найдено 1, пропущено 1. Всего к загрузке - 4 | events
cmdDownload on | cmdGetLast on | progress 0
)") + kEnd);
  EXPECT_EQ(stage.log_file.text(), Cat("Получаю сообщения с 1 по 4....\n", cp1251::ToUtf8(MoyshaPage()), "\nстрока\n",
                                       "<TITLE>404 Not Found</TITLE>\n\n"));
}

TEST(ConfiguredSession, RefusesARange) {
  constexpr const char* kBadNumber = "hint: Ошибка в номере первого или последнего сообщения. Исправьте...\n";
  constexpr const char* kNotLess = "hint: Ошибка : номер первого должен быть меньше последнего...\n";
  const struct {
    std::string kind, begin, end, want;
  } cases[] = {
      {"moysha", "5", "5", kNotLess},  // a single message too
      {"moysha", "6", "5", kNotLess},
      {"moysha", "", "5", kBadNumber},
      {"moysha", "100001", "5", kBadNumber},
      {"", "1", "5", "critical box: Я не знаю откуда качать ! Из названия файла непонятно, что это за база\n"},
  };
  for (const auto& c : cases) {
    Stage stage(c.kind);
    stage.Manual(c.begin, c.end);
    EXPECT_EQ(stage.script.text(), c.want) << c.begin << " to " << c.end;
  }
}

TEST(ConfiguredSession, AutomaticTakesTheHundredAndOneNumbersBehindTheBase) {
  Stage stage;
  stage.records.Hold(200);
  for (int number = 201; number <= 301; ++number) stage.fetcher.Serve(Url(number), "404 Not Found</TITLE>");
  stage.session.cmdDownload_Click({});
  EXPECT_TRUE(stage.script.Tells("txtEnd: 301 | hint: Получаю сообщения с 201 по 301...."));
  EXPECT_TRUE(stage.script.Tells("bar1: Загружено 0, не найдено 101, пропущено 0. Всего к загрузке - 101"));
}

TEST(ConfiguredSession, QuestionButtonsFillTheBoxes) {
  Stage stage;
  stage.session.cmdGetFirst_Click();
  stage.session.cmdGetLast_Click();
  EXPECT_EQ(stage.script.text(), Events(R"(txtBegin: 0 | txtEnd: 100
hint: Форум не сообщает номер последнего сообщения. Предлагаю 100 номеров после последнего в базе
)"));
}

TEST(ConfiguredSession, APageThatGivesNoRow) {
  const struct {
    std::string page;
    const char *status, *counts;
  } cases[] = {
      {MoyshaPage("15/03"), "Ошибка импорта 1 | cell 5: Пропущен | icon 16", "пропущено 1"},
      {"Not Found (404) proxy server report: default", "Проверьте соединение | icon 9", "пропущено 0"},
  };
  for (const auto& c : cases) {
    Stage stage;
    for (const int number : {1, 2}) stage.fetcher.Serve(Url(number), c.page);
    stage.Manual("1", "2");
    const std::string summary = Cat("bar1: Загружено 0, не найдено 0, ", c.counts, ". Всего к загрузке - 2 | events");
    EXPECT_TRUE(stage.script.Tells(Cat("bar1: ", c.status, " | ", summary))) << stage.script.text();
    EXPECT_EQ(stage.records.size(), 0u);
  }
}

TEST(ImportPage, AMessageWithoutADateIsStoredAndYetReportedAsSkipped) {
  Stage stage("ptrv");
  constexpr const char* kPage = "<title>T</title><input name=previousname value=\"N\"><DIV class=message>123456x</DIV>";
  EXPECT_FALSE(ImportPage(stage.with, kPage, 1, 0));
  EXPECT_EQ(stage.script.From("bar1: Дата сообщения ***><***"), Events(R"(bar1: Дата сообщения ***><***
cell 4: Ошибка даты | bar1: Дата сообщения ***>Ошибка даты<*** | bar1: Код главного сообщения ***>0<***
bar1: EMail сообщения ***><*** | bar1: Текст сообщения ... | bar1: Запись сообщения в базу ...
new record | Код = 1 | Автор = 'N' | Тема = 'T' | Вответ = 0 | Текст = 'x' | АвторMail = '' | stored
bar1: Сообщение записано в базу ...
)"));
}

TEST(ImportPage, TheEmailOfAnOwsMessageStandsOnItsAuthorsPage) {
  Stage stage("ows_ptrv");
  const std::string page =
      mdl_STR::WinToKoi8("<big>Ваня</big><br><br>March&nbsp;15,&nbsp;2002<br><br><BR>Views:<B>О курсе</B>[<small>"_ru);
  stage.fetcher.Serve("ows.test/author?%F7%C1%CE%D1&full=1", "<a href=\"mailto:v@x.ru\">");
  EXPECT_TRUE(ImportPage(stage.with, page, 1, 15));
  EXPECT_EQ(stage.script.From("bar1: EMail сообщения ***><***"), Events(R"(bar1: EMail сообщения ***><***
bar1: Текст сообщения ... | log: \r\n9:05:07 - Открываю ows.test/author?%F7%C1%CE%D1&full=1
fetch ows.test/author?%F7%C1%CE%D1&full=1, 15 s | log: \r\n9:05:07 - Загрузил еще 24 байт из сообщения 1
bar1: Запись сообщения в базу ...
new record | Код = 1 | Автор = 'Ваня' | Тема = 'О курсе' | Вответ = 0 | Дата = 2002-03-15
Текст = ' ' | АвторMail = 'v@x.ru' | stored | bar1: Сообщение записано в базу ...
)"));
}

TEST(ImportPage, AFailureOfTheBaseStoresNothing) {
  for (const std::string_view step : {"AddNew"_ru, "Код"_ru, "Автор"_ru, "Тема"_ru, "Вответ"_ru, "Дата"_ru, "Текст"_ru,
                                      "АвторMail"_ru, "Update"_ru}) {
    Stage stage;
    stage.records.Fail(step);
    EXPECT_FALSE(ImportPage(stage.with, MoyshaPage(), 12, 0));
    EXPECT_EQ(stage.records.size(), 0u);
    EXPECT_TRUE(stage.script.Tells(R"(log: \r\n9:05:07 - Сообщение 12 не записано: Диск не отвечает
bar1: Ошибка записи сообщения в базу ***>Диск не отвечает)"));
    EXPECT_THROW(stage.records.Update(), Error) << "a record is still under way";
  }
}

TEST(ImportPage, AForumWithoutAParserIsNotStored) {
  Stage stage("broken");
  EXPECT_FALSE(ImportPage(stage.with, "<title>T</title>", 1, 0));
  EXPECT_EQ(stage.records.size(), 0u);
}

TEST(ConfiguredSession, AStopWhileThePageComesEndsItThere) {
  Stage stage;
  stage.fetcher.Serve(Url(1), [&]() -> std::string {
    stage.session.cmdCancelDL_Click();
    return "";
  });
  stage.Manual("1", "2");
  EXPECT_EQ(stage.script.From("cancel the transfer"), Events(R"(cancel the transfer
hint: Дождитесь завершения скачивания текущего файла.... | normal pointer | cmdDownload on | cmdGetLast on
log: \r\n9:05:07 - Скачивание остановлено | bar1: Остановлено пользователем | scroll to row | cell 5: Остановлено...
)") + kEnd);
}

TEST(ConfiguredSession, AStopBetweenNumbersMarksTheLastRow) {
  Stage stage;
  for (const int number : {1, 2}) stage.records.Hold(number);
  int events = 0, stop_at = 1;
  stage.view.on_events = [&] {
    if (++events == stop_at) stage.session.cmdCancelDL_Click();
  };
  stage.Manual("1", "2");
  EXPECT_TRUE(stage.script.text().ends_with(Cat("scroll to row\ncell 5: Остановлено...\n", kEnd)));
  EXPECT_FALSE(stage.script.Tells("row 00002"));
  stop_at = 3;  // the end of the next session: too late for it
  for (int session = 0; session < 2; ++session) {
    stage.script.Take();
    stage.Manual("1", "2");
    EXPECT_FALSE(stage.script.Tells("scroll to row")) << "no stop lasts longer than its session";
    EXPECT_TRUE(stage.script.Tells("bar1: Загружено 0, не найдено 0, пропущено 2. Всего к загрузке - 2")) << "no count";
  }
}

TEST(ConfiguredSession, AnErrorOfTheLoopTriesTheSameNumberAgainInItsRow) {
  Stage stage;
  for (const int number : {1, 2}) stage.fetcher.Serve(Url(number), MoyshaPage());
  stage.records.Fail("msgExist", 2);
  stage.Manual("1", "2");
  EXPECT_TRUE(stage.script.Tells(R"(progress 0 | row 00001 | cell 1: 000001
log: \r\n9:05:07 - TimeOut | cell 5: TimeOut | icon 15 | colour 255 | bar1: Нет соединения с сайтом | icon 9 | pause
progress 0 | cell 1: 000001
log: \r\n9:05:07 - TimeOut | cell 5: TimeOut | icon 15 | colour 255 | bar1: Нет соединения с сайтом | icon 9 | pause
progress 0 | cell 1: 000001 | cell 5: Импортирую.....)"));
  EXPECT_EQ(stage.records.size(), 2u);
}

TEST(ConfiguredSession, AStopEndsTheTrying) {
  Stage stage;
  stage.records.Fail("msgExist", 1000);
  int pauses = 0;
  stage.view.on_events = [&] {
    if (++pauses == 3) stage.session.cmdCancelDL_Click();
  };
  stage.Manual("1", "2");
  EXPECT_EQ(pauses, 3);
  EXPECT_TRUE(stage.script.Tells("cell 5: Остановлено..."));
}

TEST(ConfiguredSession, ClosingIsRefusedWhileItRunsAndStopsNothing) {
  Stage stage;
  EXPECT_TRUE(stage.session.MayClose());
  stage.script.Take();
  stage.fetcher.Serve(Url(1), [&] {
    EXPECT_FALSE(stage.session.MayClose());
    EXPECT_TRUE(stage.script.Tells("hint: Дождитесь завершения скачивания текущего файла...."));
    return MoyshaPage();
  });
  stage.fetcher.Serve(Url(2), MoyshaPage());
  stage.Manual("1", "2");
  EXPECT_EQ(stage.records.size(), 2u);
  for (const char* event : {"cancel the transfer", "close"}) EXPECT_FALSE(stage.script.Tells(event));
}

TEST(ConfiguredSession, ATimeOutThatIsNoNumberOfSecondsIsTold) {
  Stage stage("gelium");
  stage.Manual("1", "2");
  EXPECT_TRUE(stage.script.text().ends_with("bar1: Переполнение\nhint: Переполнение\n")) << stage.script.text();
  EXPECT_TRUE(stage.view.IsEnabled(SessionButton::cmdDownload));
}

TEST(ConfiguredSession, ShowsTheStatesOfATransfer) {
  constexpr const char* kTexts[] = {"Ничего не происходит ...", "Поиск сервера ...",          "Сервер найден ...",
                                    "Установка соединения ...", "Соединение установлено ...", "Отсылка запроса ...",
                                    "Запрос отправлен ...",     "Получение ответа ...",       "Ответ получен ...",
                                    "Разрыв соединения ...",    "Соединение разорвано ...",   "Ошибка соединения ...",
                                    "Ответ обработан ..."};
  Stage stage;
  for (int state = 0; const char* text : kTexts) {
    stage.fetcher.TellState(state++);
    EXPECT_EQ(stage.script.Take(), Cat("bar1: ", text, "\nevents\n"));
  }
  for (const int unknown : {-1, 13}) stage.fetcher.TellState(unknown);
  EXPECT_EQ(stage.script.text(), "events\nevents\n");
}

}  // namespace
