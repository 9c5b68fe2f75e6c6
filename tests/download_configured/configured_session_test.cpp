#include "download_configured/configured_session.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

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
    "[ows_ptrv]\r\nURL=ows.test/?id=\r\nURL1=ows.test/author?\r\nURLSFX1=&full=1\r\n"
    "[gelium]\r\nTIMEOUT=1e10\r\n[broken]\r\nURL=x\r\n";

struct Stage : DownloadStage {
  explicit Stage(std::string kind = "moysha", std::string forum_ini = kIni)
      : DownloadStage(std::move(forum_ini)), with{std::move(kind), records, fetcher, view, ini, forum_log, clock} {}
  ConfiguredDownload with;
  ConfiguredSession session{with};

  void Manual(std::string begin, std::string end) {
    session.cmdDownload_Click({.automatic = false, .begin = std::move(begin), .end = std::move(end)});
  }
  bool Happened(std::string_view line) const { return script.text().find(Cat(line, "\n")) != std::string::npos; }
  std::string From(std::string_view line) const {
    const std::size_t at = script.text().rfind(Cat(line, "\n"));
    return at == std::string::npos ? "never: " + std::string(line) : script.text().substr(at);
  }
};

std::string Url(int number) { return Cat("moysha.test/", number, ".shtml"); }

constexpr const char* kEnd =
    "hint: Hint : для определения последнего сообщения в базе или последнего сообщения на форуме нажмите на кнопки "
    "\"?\"";

std::string MoyshaPage(std::string_view date) {
  return Cat("<title>О курсе</title><b><a href=\"mailto:v@x.ru\">Ваня</a></b><i>"_ru, date,
             "</i><div align=left>: <a href=\"/talk/7.shtml\"></div><DIV class=divMessage><dd>строка<hr></div>"_ru);
}

TEST(ConfiguredSession, TellsEveryStep) {
  Stage stage;
  stage.records.Hold(1);
  stage.fetcher.Serve(Url(2), MoyshaPage("15/03/02"));
  stage.fetcher.Serve(Url(3), "<TITLE>404 Not Found</TITLE>");
  stage.fetcher.Fail(Url(4));
  stage.Manual("1", "4");
  EXPECT_EQ(stage.script.text(), R"(hint: Получаю сообщения с 1 по 4....
cmdDownload off
cmdGetLast off
cmdCancelDL on
rows cleared
log cleared
progress 0
row 00001
cell 1: 000001
cell 5: Пропущен : уже есть
icon 15
colour 255
log: \r\n9:05:07 - Пропустил 1
icon 13
bar1: Пропустил 1
bar1: Загружено 0, не найдено 0, пропущено 1. Всего к загрузке - 4
events
progress 25
row 00002
cell 1: 000002
cell 5: Импортирую.....
bar1: Загружаю 2
hourglass
icon 5
log: \r\n9:05:07 - Открываю moysha.test/2.shtml
fetch moysha.test/2.shtml, 15 s
log: \r\n9:05:07 - Загрузил 166 байт из сообщения 2
normal pointer
bar1: Разбор сообщения для записи в базу ...
cell 1: 000002
cell 3: О курсе
bar1: Тема сообщения ***>О курсе<***
cell 2: Ваня
bar1: Автор сообщения ***>Ваня<***
bar1: Дата сообщения ***>2002-03-15<***
cell 4: 15.03.02
bar1: Код главного сообщения ***>7<***
bar1: EMail сообщения ***>v@x.ru<***
bar1: Текст сообщения ...
bar1: Запись сообщения в базу ...
new record
Код = 2
Автор = 'Ваня'
Тема = 'О курсе'
Вответ = 7
Дата = 2002-03-15
Текст = 'строка'
АвторMail = 'v@x.ru'
stored
bar1: Сообщение записано в базу ...
bar1: Загрузил 2
cell 5: Ок
icon 1
bar1: Загружено 1, не найдено 0, пропущено 1. Всего к загрузке - 4
events
progress 50
row 00003
cell 1: 000003
cell 5: Импортирую.....
bar1: Загружаю 3
hourglass
icon 5
log: \r\n9:05:07 - Открываю moysha.test/3.shtml
fetch moysha.test/3.shtml, 15 s
log: \r\n9:05:07 - Загрузил 28 байт из сообщения 3
normal pointer
cell 5: Not Found (404)
icon 15
colour 255
bar1: Не нашел 3
cell 5:  Не найден
icon 16
bar1: Загружено 1, не найдено 1, пропущено 1. Всего к загрузке - 4
events
progress 75
row 00004
cell 1: 000004
cell 5: Импортирую.....
bar1: Загружаю 4
hourglass
icon 5
log: \r\n9:05:07 - Открываю moysha.test/4.shtml
fetch moysha.test/4.shtml, 15 s
log: \r\n9:05:07 - Загрузил 0 байт из сообщения 4
normal pointer
log: \r\n9:05:07 - Ошибка соединения
cell 5: Not Loaded
icon 15
colour 255
cell 5:  Нет коннекта
bar1: Проверьте соединение
icon 9
bar1: Загружено 1, не найдено 1, пропущено 1. Всего к загрузке - 4
events
cmdDownload on
cmdGetLast on
progress 0
hint: Hint : для определения последнего сообщения в базе или последнего сообщения на форуме нажмите на кнопки "?"
)");
  EXPECT_EQ(stage.log_file.text(), Cat("Получаю сообщения с 1 по 4....\n", cp1251::ToUtf8(MoyshaPage("15/03/02")),
                                       "\nстрока\n", "<TITLE>404 Not Found</TITLE>\n\n"));
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
      {"moysha", "5", "x", kBadNumber},
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
  EXPECT_TRUE(stage.Happened("txtEnd: 301"));
  EXPECT_TRUE(stage.Happened("hint: Получаю сообщения с 201 по 301...."));
  EXPECT_TRUE(stage.Happened("bar1: Загружено 0, не найдено 101, пропущено 0. Всего к загрузке - 101"));
}

TEST(ConfiguredSession, OutcomesOfAPage) {
  const struct {
    std::string page;
    const char *cell5, *icon, *summary;
    std::size_t stored;
  } cases[] = {
      {MoyshaPage("15/03/02"), "cell 5: Ок", "icon 1", "Загружено 1, не найдено 0, пропущено 0", 1},
      {MoyshaPage("15/03"), "cell 5: Пропущен", "icon 16", "Загружено 0, не найдено 0, пропущено 1", 0},
      {MoyshaPage(""), "cell 5: Пропущен", "icon 16", "Загружено 0, не найдено 0, пропущено 1", 0},
      {"", "cell 5:  Нет коннекта", "icon 9", "Загружено 0, не найдено 0, пропущено 0", 0},
      {"Not Found (404) proxy server report: default", "cell 5:  Нет коннекта", "icon 9",
       "Загружено 0, не найдено 0, пропущено 0", 0},
      {"not found (404)", "cell 5:  Не найден", "icon 16", "Загружено 0, не найдено 1, пропущено 0", 0},
  };
  for (const auto& c : cases) {
    Stage stage;
    stage.fetcher.Serve(Url(1), c.page);
    stage.fetcher.Serve(Url(2), "");
    stage.Manual("1", "2");
    const std::string text = stage.script.text().substr(0, stage.script.text().find("events"));
    EXPECT_NE(text.find(Cat(c.cell5, "\n")), std::string::npos) << text;
    EXPECT_NE(text.find(Cat(c.icon, "\nbar1: ", c.summary, ". Всего к загрузке - 2\n")), std::string::npos) << text;
    EXPECT_EQ(stage.records.size(), c.stored);
  }
}

TEST(ImportPage, AMessageWithoutADateIsStoredAndYetReportedAsSkipped) {
  Stage stage("ptrv", "[ptrv]\r\nURL=p.test/\r\n");
  stage.fetcher.Serve("p.test/1",
                      "<title>T</title><input name=previousname value=\"N\"><DIV class=message>123456x</DIV>");
  stage.fetcher.Serve("p.test/2", "");
  stage.Manual("1", "2");
  EXPECT_EQ(stage.records.size(), 1u);
  const std::string text = stage.script.text().substr(0, stage.script.text().find("events"));
  EXPECT_EQ(text.substr(text.find("bar1: Разбор")), R"(bar1: Разбор сообщения для записи в базу ...
cell 1: 000001
cell 3: T
bar1: Тема сообщения ***>T<***
cell 2: N
bar1: Автор сообщения ***>N<***
bar1: Дата сообщения ***><***
cell 4: Ошибка даты
bar1: Дата сообщения ***>Ошибка даты<***
bar1: Код главного сообщения ***>0<***
bar1: EMail сообщения ***><***
bar1: Текст сообщения ...
bar1: Запись сообщения в базу ...
new record
Код = 1
Автор = 'N'
Тема = 'T'
Вответ = 0
Текст = 'x'
АвторMail = ''
stored
bar1: Сообщение записано в базу ...
bar1: Ошибка импорта 1
cell 5: Пропущен
icon 16
bar1: Загружено 0, не найдено 0, пропущено 1. Всего к загрузке - 2
)");
}

TEST(ImportPage, TheEmailOfAnOwsMessageStandsOnItsAuthorsPage) {
  Stage stage("ows_ptrv");
  const auto koi8 = [](std::string_view text) { return mdl_STR::WinToKoi8(text); };
  stage.fetcher.Serve(
      "ows.test/?id=1",
      koi8("<big>Ваня</big><br><br>March&nbsp;15,&nbsp;2002<br><br><BR>Views:<B>О курсе</B>[<small>"_ru));
  stage.fetcher.Serve("ows.test/author?%F7%C1%CE%D1&full=1", koi8("<a href=\"mailto:v@x.ru\">"));
  stage.fetcher.Serve("ows.test/?id=2", "");
  stage.Manual("1", "2");
  const std::string text = stage.script.text().substr(0, stage.script.text().find("events"));
  EXPECT_EQ(text.substr(text.find("bar1: Разбор")), R"(bar1: Разбор сообщения для записи в базу ...
cell 1: 000001
cell 3: О курсе
bar1: Тема сообщения ***>О курсе<***
cell 2: Ваня
bar1: Автор сообщения ***>Ваня<***
bar1: Дата сообщения ***>2002-03-15<***
cell 4: 15.03.02
bar1: Код главного сообщения ***>0<***
bar1: EMail сообщения ***><***
bar1: Текст сообщения ...
log: \r\n9:05:07 - Открываю ows.test/author?%F7%C1%CE%D1&full=1
fetch ows.test/author?%F7%C1%CE%D1&full=1, 0 s
log: \r\n9:05:07 - Загрузил еще 24 байт из сообщения 1
bar1: Запись сообщения в базу ...
new record
Код = 1
Автор = 'Ваня'
Тема = 'О курсе'
Вответ = 0
Дата = 2002-03-15
Текст = ' '
АвторMail = 'v@x.ru'
stored
bar1: Сообщение записано в базу ...
bar1: Загрузил 1
cell 5: Ок
icon 1
bar1: Загружено 1, не найдено 0, пропущено 0. Всего к загрузке - 2
)");
}

TEST(ImportPage, AFailureOfTheBaseStoresNothing) {
  for (const std::string_view step : {"AddNew"_ru, "Код"_ru, "Автор"_ru, "Тема"_ru, "Вответ"_ru, "Дата"_ru, "Текст"_ru,
                                      "АвторMail"_ru, "Update"_ru}) {
    Stage stage;
    stage.records.Fail(step);
    EXPECT_FALSE(ImportPage(stage.with, MoyshaPage("15/03/02"), 12, 0));
    EXPECT_EQ(stage.records.size(), 0u);
    EXPECT_TRUE(stage.script.text().ends_with("bar1: Ошибка записи сообщения в базу ***>Диск не отвечает\n"));
    EXPECT_THROW(stage.records.Update(), Error) << "a record is still under way";
  }
}

TEST(ConfiguredSession, AForumWithoutAParserIsNotStored) {
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
  EXPECT_EQ(stage.From("cancel the transfer"), R"(cancel the transfer
hint: Дождитесь завершения скачивания текущего файла....
normal pointer
cmdDownload on
cmdGetLast on
log: \r\n9:05:07 - Скачивание остановлено
bar1: Остановлено пользователем
scroll to row
cell 5: Остановлено...
hint: Hint : для определения последнего сообщения в базе или последнего сообщения на форуме нажмите на кнопки "?"
)");
}

TEST(ConfiguredSession, AStopBetweenNumbersMarksTheLastRow) {
  Stage stage;
  stage.records.Hold(1);
  stage.view.on_events = [&] { stage.session.cmdCancelDL_Click(); };
  stage.Manual("1", "3");
  EXPECT_TRUE(stage.script.text().ends_with(Cat("scroll to row\ncell 5: Остановлено...\n", kEnd, "\n")));
  EXPECT_FALSE(stage.Happened("row 00002"));
  stage.view.on_events = nullptr;
  stage.records.Hold(2);
  stage.Manual("1", "2");  // the stop is over
  EXPECT_TRUE(stage.Happened("row 00002"));
}

TEST(ConfiguredSession, AnErrorOfTheLoopTriesTheSameNumberAgainInItsRow) {
  Stage stage;
  stage.fetcher.Serve(Url(1), MoyshaPage("15/03/02"));
  stage.fetcher.Serve(Url(2), MoyshaPage("15/03/02"));
  stage.records.Fail("msgExist", 2);
  stage.Manual("1", "2");
  const std::string& text = stage.script.text();
  const std::size_t row = text.find("row 00001\n");
  EXPECT_EQ(text.substr(row, text.find("cell 5: Импорт") - row), R"(row 00001
cell 1: 000001
log: \r\n9:05:07 - TimeOut
cell 5: TimeOut
icon 15
colour 255
bar1: Нет соединения с сайтом
icon 9
pause
progress 0
cell 1: 000001
log: \r\n9:05:07 - TimeOut
cell 5: TimeOut
icon 15
colour 255
bar1: Нет соединения с сайтом
icon 9
pause
progress 0
cell 1: 000001
)");
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
  EXPECT_TRUE(stage.Happened("cell 5: Остановлено..."));
}

TEST(ConfiguredSession, ClosingIsRefusedWhileItRunsAndStopsNothing) {
  Stage stage;
  EXPECT_TRUE(stage.session.MayClose());
  stage.fetcher.Serve(Url(1), [&] {
    EXPECT_FALSE(stage.session.MayClose());
    return MoyshaPage("15/03/02");
  });
  stage.fetcher.Serve(Url(2), MoyshaPage("15/03/02"));
  stage.Manual("1", "2");
  EXPECT_EQ(stage.records.size(), 2u);
  EXPECT_FALSE(stage.Happened("close"));
}

TEST(ConfiguredSession, ATimeOutThatIsNoNumberOfSecondsIsTold) {
  Stage stage("gelium");
  stage.Manual("1", "2");
  EXPECT_TRUE(stage.script.text().ends_with("hint: Переполнение\n")) << stage.script.text();
  EXPECT_TRUE(stage.view.IsEnabled(SessionButton::cmdDownload));
}

TEST(ConfiguredSession, ShowsTheStatesOfATransfer) {
  Stage stage;
  for (const int state : {-1, 0, 12, 13}) stage.fetcher.TellState(state);
  EXPECT_EQ(stage.script.text(),
            "events\nbar1: Ничего не происходит ...\nevents\nbar1: Ответ обработан ...\nevents\nevents\n");
}

}  // namespace
