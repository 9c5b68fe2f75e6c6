#include <gtest/gtest.h>

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

TEST(Importers, StoreFieldByField) {
  Stage kdv, rts_an;
  ImportKdvMessage(kdv.with, kKdvPage, 12);
  EXPECT_EQ(kdv.script.text(), Events(R"(cell 5: Импортирую...
cell 1: 00012 | cell 2: Ваня | cell 3: О курсе | cell 4: 15.03.2002
new record | Текст = 'строка' | Дата = 2002-03-15 | Автор = 'Ваня' | Тема = 'О курсе' | Вответ = 7
АвторMail = 'v@x.ru' | Код = 12 | stored | cell 5: Импортирован
)"));
  EXPECT_EQ(kdv.log_file.text(), Events(R"(Import: text=строка | Import: date=15.03.2002 | Import: author=Ваня
Import: theme=О курсе | Import: from=7 | Import: email=v@x.ru | Import: kod=12
)"));
  ImportRtsAnMessage(rts_an.with, RtsAnPage("15 Март 2002"_ru), 12);
  EXPECT_EQ(rts_an.script.text(), Events(R"(cell 5: Импортирую...
cell 1: 00012 | cell 2: Ваня | cell 3: О курсе | cell 4: 15.03.02
new record | Текст = 'строка\r\nещё' | Дата = 2002-03-15 | Автор = 'Ваня' | Тема = 'О курсе' | Вответ = 7
АвторMail = 'v@x.ru' | Код = 12 | Картинка = 'man' | stored | cell 5: Импортирован
)"));
  EXPECT_EQ(rts_an.log_file.text(), "");
}

TEST(Importers, LeaveAuthorAndEmailUnsetWhenThePageHasNone) {
  Stage kdv, rts_an;
  ImportKdvMessage(kdv.with, "<title></title>", 12);
  EXPECT_EQ(kdv.script.From("new record"), Events(R"(new record | Текст = '\r\n' | Дата = 1899-12-30
Тема = '(...пусто...)' | Вответ = 0 | Код = 12 | stored | cell 5: Импортирован
)"));
  ImportRtsAnMessage(rts_an.with, "\r\n<font size=-1>[1 1 2002]", 13);
  EXPECT_EQ(rts_an.script.From("new record"), Events(R"(new record | Текст = '\r\n' | Дата = 2002-01-01
Тема = '(...пусто...)' | Вответ = 0 | Код = 13 | Картинка = '' | stored | cell 5: Импортирован
)"));
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

/// Nothing is stored, and the row names the step; the log box and, for some, forum.log say more.
void ExpectFailure(Stage& stage, int step) {
  EXPECT_TRUE(stage.script.text().ends_with(Cat("\ncell 5: Ошибка ", step, "\nicon 15\ncolour 255\n")))
      << stage.script.text();
  EXPECT_NE(stage.script.text().find(R"(log: \r\n9:05:07 - Сообщение 12 не записано: )"), std::string::npos);
  EXPECT_EQ(stage.records.size(), 0u);
  EXPECT_THROW(stage.records.Update(), Error) << "a record is still under way";
}

void ExpectKdvFailure(Stage& stage, int step) {
  ExpectFailure(stage, step);
  EXPECT_TRUE(stage.log_file.text().ends_with(Cat("Import error=Ошибка ", step, "\n")));
}

TEST(Importers, TellTheStepThatTheBaseRefused) {
  const struct {
    std::string_view fails;
    int kdv_step, rts_an_step;
  } cases[] = {
      {"msgExist", 1, 1},  {"AddNew", 8, 20},      {"Текст"_ru, 8, 20},  {"Дата"_ru, 8, 21},
      {"Автор"_ru, 8, 22}, {"Тема"_ru, 8, 23},     {"Вответ"_ru, 8, 24}, {"АвторMail"_ru, 8, 25},
      {"Код"_ru, 8, 26},   {"Картинка"_ru, 0, 27},  // set by one of them alone
      {"Update", 8, 28},
  };
  for (const auto& c : cases) {
    Stage kdv, rts_an;
    kdv.records.Fail(c.fails);
    rts_an.records.Fail(c.fails);
    ImportKdvMessage(kdv.with, kKdvPage, 12);
    ImportRtsAnMessage(rts_an.with, RtsAnPage("15 Март 2002"_ru), 12);
    ExpectFailure(rts_an, c.rts_an_step);
    if (c.kdv_step != 0) ExpectKdvFailure(kdv, c.kdv_step);
  }
}

TEST(Importers, TellTheStepThatThePageBroke) {
  constexpr std::string_view kKdvParent = "в ответ на: <a href=\"99999999999.html\">"_ru;
  constexpr std::string_view kRtsAnParent = "\r\n<font size=-1>[1 Апр 2002]В ответ на:action=view&id=99999999999\">"_ru;
  const std::string long_subject = Cat("<title>", std::string(256, 'x'), "</title>\r\n<font size=-1>[1 1 2002]");
  const struct {
    std::string page;
    int kdv_step, rts_an_step;  // 0: stored
  } cases[] = {
      {std::string(kKdvParent), 4, 15},        {std::string(kRtsAnParent), 0, 17},   {long_subject, 8, 23},
      {RtsAnPage("31 Апрель 2001"_ru), 0, 15}, {RtsAnPage("32 Мар 2002"_ru), 0, 15}, {RtsAnPage("вчера"_ru), 0, 15},
  };
  for (const auto& c : cases) {
    Stage kdv, rts_an;
    ImportKdvMessage(kdv.with, c.page, 12);
    ImportRtsAnMessage(rts_an.with, c.page, 12);
    ExpectFailure(rts_an, c.rts_an_step);
    if (c.kdv_step != 0) ExpectKdvFailure(kdv, c.kdv_step);
  }
}

}  // namespace
