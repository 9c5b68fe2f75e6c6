#include <gtest/gtest.h>

#include <string>

#include "base/cat.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "download_fixed/import_kdv.h"
#include "download_fixed/import_rts_an.h"
#include "support/download_stage.h"

namespace {

struct Stage : DownloadStage {
  FixedDownload with{records, fetcher, view, ini, forum_log, clock, ""};
};

const std::string kKdvPage = Cat("<title>О курсе</title> в ответ на: <a href=\"7.html\">"_ru,
                                 "<input type=hidden name=\"origname\" value=\"Ваня\">"
                                 "<input type=hidden name=\"origemail\" value=\"v@x.ru\">"
                                 "<input type=hidden name=\"origdate\" value=\"Пятница, 15 Март 2002 в 12:30:05\">"
                                 "COLS=55 ROWS=6>строка</textarea>"_ru);

std::string RtsAnPage(std::string_view date) {
  return Cat(
      "<title>О курсе</title>"
      "align=\"middle\">&nbsp;<b>Ваня</b><a href=\"mailto:v@x.ru?subject=x\">\r\n<font size=-1>["_ru,
      date,
      "]Автор:&nbsp;<img src=\"/images/man.gif\">"
      "В ответ на:<a href=\"x?action=view&id=7\"></blockquote>\r\n<p>\r\nстрока<br>ещё</blockquote></html>"_ru);
}

TEST(ImportKdvMessage, StoresFieldByFieldAndLogsEach) {
  Stage stage;
  ImportKdvMessage(stage.with, kKdvPage, 12);
  EXPECT_EQ(stage.script.text(), R"(cell 5: Импортирую...
cell 1: 00012
cell 2: Ваня
cell 3: О курсе
cell 4: 15.03.2002
new record
Текст = 'строка'
Дата = 2002-03-15
Автор = 'Ваня'
Тема = 'О курсе'
Вответ = 7
АвторMail = 'v@x.ru'
Код = 12
stored
cell 5: Импортирован
)");
  EXPECT_EQ(stage.log_file.text(), R"(Import: text=строка
Import: date=15.03.2002
Import: author=Ваня
Import: theme=О курсе
Import: from=7
Import: email=v@x.ru
Import: kod=12
)");
}

TEST(ImportRtsAnMessage, StoresFieldByField) {
  Stage stage;
  ImportRtsAnMessage(stage.with, RtsAnPage("15 Март 2002"_ru), 12);
  EXPECT_EQ(stage.script.text(), R"(cell 5: Импортирую...
cell 1: 00012
cell 2: Ваня
cell 3: О курсе
cell 4: 15.03.02
new record
Текст = 'строка\r\nещё'
Дата = 2002-03-15
Автор = 'Ваня'
Тема = 'О курсе'
Вответ = 7
АвторMail = 'v@x.ru'
Код = 12
Картинка = 'man'
stored
cell 5: Импортирован
)");
  EXPECT_EQ(stage.log_file.text(), "");
}

TEST(Importers, LeaveAuthorAndEmailUnsetWhenThePageHasNone) {
  Stage stage;
  ImportKdvMessage(stage.with, "<title></title>", 12);
  const std::string kdv = stage.script.Take();
  EXPECT_EQ(kdv.substr(kdv.find("new record")), R"(new record
Текст = '\r\n'
Дата = 1899-12-30
Тема = '(...пусто...)'
Вответ = 0
Код = 12
stored
cell 5: Импортирован
)");
  ImportRtsAnMessage(stage.with, "\r\n<font size=-1>[1 1 2002]", 13);
  const std::string rts_an = stage.script.Take();
  EXPECT_EQ(rts_an.substr(rts_an.find("new record")), R"(new record
Текст = '\r\n'
Дата = 2002-01-01
Тема = '(...пусто...)'
Вответ = 0
Код = 13
Картинка = ''
stored
cell 5: Импортирован
)");
}

TEST(Importers, PassOverANumberThatIsThereByNow) {
  Stage stage;
  stage.records.Hold(12);
  constexpr const char* kTold = "bar1: Сообщение 12 пропущено \ncell 5: Пропущено\nicon 15\ncolour 255\n";
  ImportKdvMessage(stage.with, kKdvPage, 12);
  EXPECT_EQ(stage.script.Take(), kTold);
  EXPECT_EQ(stage.log_file.Take(), "Сообщение 12 пропущено \nImport:  Сообщение 12 пропущено \n");
  ImportRtsAnMessage(stage.with, RtsAnPage("15 Март 2002"_ru), 12);
  EXPECT_EQ(stage.script.Take(), kTold);
  EXPECT_EQ(stage.log_file.Take(), "Сообщение 12 пропущено \n");
}

TEST(Importers, TellTheStepThatFailedAndStoreNothing) {
  const struct {
    std::string_view fails;
    int kdv_step, rts_an_step;
  } cases[] = {
      {"msgExist", 1, 1},  {"AddNew", 8, 20},      {"Текст"_ru, 8, 20},  {"Дата"_ru, 8, 21},
      {"Автор"_ru, 8, 22}, {"Тема"_ru, 8, 23},     {"Вответ"_ru, 8, 24}, {"АвторMail"_ru, 8, 25},
      {"Код"_ru, 8, 26},   {"Картинка"_ru, 0, 27}, {"Update", 8, 28},
  };
  for (const auto& c : cases) {
    const auto expect = [&c](Stage& stage, int step) {
      const std::string status =
          step == 0 ? "cell 5: Импортирован\n" : Cat("cell 5: Ошибка ", step, "\nicon 15\ncolour 255\n");
      EXPECT_TRUE(stage.script.text().ends_with(status)) << cp1251::ToUtf8(c.fails) << stage.script.text();
      const bool has_reason = stage.script.text().find("Сообщение 12 не записано: ") != std::string::npos;
      EXPECT_EQ(has_reason, step != 0) << stage.script.text();
      EXPECT_EQ(stage.records.size(), step == 0 ? 1u : 0u);
      EXPECT_THROW(stage.records.Update(), Error) << "a record is still under way";
    };
    Stage kdv, rts_an;
    kdv.records.Fail(c.fails);
    ImportKdvMessage(kdv.with, kKdvPage, 12);
    if (c.kdv_step != 0) {
      EXPECT_TRUE(kdv.log_file.text().ends_with(Cat("Import error=Ошибка ", c.kdv_step, "\n")));
    }
    expect(kdv, c.kdv_step);
    rts_an.records.Fail(c.fails);
    ImportRtsAnMessage(rts_an.with, RtsAnPage("15 Март 2002"_ru), 12);
    expect(rts_an, c.rts_an_step);
  }
}

TEST(Importers, TellWhatThePageDoesToThem) {
  const std::string far_parent = "в ответ на: <a href=\"99999999999.html\">";
  const std::string long_subject = Cat("<title>", std::string(256, 'x'), "</title>");
  const struct {
    std::string page;
    void (*import)(const FixedDownload&, std::string_view, std::int32_t);
    int step;
  } cases[] = {
      {cp1251::FromUtf8(far_parent), ImportKdvMessage, 4},
      {long_subject, ImportKdvMessage, 8},
      {RtsAnPage("31 Апрель 2001"_ru), ImportRtsAnMessage, 15},
      {RtsAnPage("вчера"_ru), ImportRtsAnMessage, 15},
      {long_subject + "\r\n<font size=-1>[1 1 2002]", ImportRtsAnMessage, 23},
  };
  for (const auto& c : cases) {
    Stage stage;
    c.import(stage.with, c.page, 12);
    EXPECT_TRUE(stage.script.text().ends_with(Cat("cell 5: Ошибка ", c.step, "\nicon 15\ncolour 255\n")))
        << stage.script.text();
    EXPECT_EQ(stage.records.size(), 0u);
  }
}

}  // namespace
