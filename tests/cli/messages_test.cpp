// Messages of a base found and deleted from the command line.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/cat.h"
#include "base/ru_literal.h"
#include "cli/run_tool.h"
#include "demo_forum/demo_pages.h"
#include "support/temp_folder.h"

namespace cli {
namespace {

using testing::HasSubstr;

/// 1 with the reply 2 and its reply 3; 4 alone.
class MessagesOfABase : public testing::Test {
 protected:
  MessagesOfABase() {
    for (const auto& [number, answered] : {std::pair{1, 0}, {2, 1}, {3, 2}, {4, 0}})
      folder_.Put(Cat("pages/", number, ".html"), Page(number, answered));
    folder_.Put("program/forum.ini", "[FORUMS]\r\nmax=1\r\nf1=kdv\r\n");
    EXPECT_EQ(Kdvbase({"create", base_}).status, 0);
    EXPECT_EQ(Kdvbase({"import", base_, folder_ / "pages", "--data-dir", folder_ / "program"}).status, 0);
  }

  static std::string Page(int number, int answered) {
    MessageRecord message;
    message.Вответ = answered;
    message.Тема = Cat("Курс "_ru, number);
    message.Автор = number == 4 ? "Петя"_ru : "Ваня"_ru;
    message.АвторMail = number == 4 ? "" : Cat("v", number % 2, "@x.ru");
    message.Дата = OleDate{37'330};
    message.Текст = number == 3 ? "Совсем ВЫРОС."_ru : "Упал."_ru;
    return demo_pages::KdvPage(message);
  }
  std::string Numbers() { return Kdvbase({"sql", base_, "select Код from База order by Код", "--json"}).out; }

  TempFolder folder_;
  std::string base_ = folder_ / "kdv_2002.mdb";
};

TEST_F(MessagesOfABase, AreFoundByTextAndAuthor) {
  const struct {
    std::vector<std::string> words;
    int status;
    std::string out, errors;
  } cases[] = {
      {{"search", base_, "выро"}, 0, "3\tКурс 3\n", ""},
      {{"search", base_, "Курс [14]"}, 0, "1\tКурс 1\n4\tКурс 4\n", ""},
      {{"--data-dir", folder_ / "program", "search", base_, "выро"}, 0, "3\tКурс 3\n", ""},
      {{"search", base_, " "}, 2, "", "пуст"},
      {{"search", base_, "日"}, 2, "", "не бывает"},  // not every character, as "?" would be
      {{"import", base_, folder_ / "none", "--data-dir", folder_ / "program"}, 1, "", "Нет такого файла"},
      {{"search", base_, "it's"}, 1, "", "kdvbase: "},
      {{"emails", base_, "Ваня"}, 0, "v0@x.ru\nv1@x.ru\n", ""},
      {{"emails", base_, "Петя"}, 0, "", "Петя за время своего присутствия"},
  };
  for (const auto& c : cases) {
    const Outcome outcome = Kdvbase(c.words);
    EXPECT_EQ(outcome.status, c.status) << testing::PrintToString(c.words);
    EXPECT_EQ(outcome.out, c.out) << testing::PrintToString(c.words);
    EXPECT_THAT(outcome.errors, HasSubstr(c.errors)) << testing::PrintToString(c.words);
  }
}

TEST_F(MessagesOfABase, AreDeletedAloneOrWithReplies) {
  EXPECT_EQ(Kdvbase({"delete", base_, "5"}).status, 1);
  EXPECT_EQ(Kdvbase({"delete", base_, "пять"}).status, 2);
  EXPECT_EQ(Numbers(), "[1]\n[2]\n[3]\n[4]\n");
  EXPECT_EQ(Kdvbase({"delete", base_, "1"}).out,
            "Сообщение удалено. Все ответы на него появятся в ветке 'Оборванные цепочки'\n");
  EXPECT_EQ(Numbers(), "[2]\n[3]\n[4]\n");
  EXPECT_EQ(Kdvbase({"delete", base_, "2", "--with-replies"}).out, "Удалено 2 сообщений\n");  // a broken thread
  EXPECT_EQ(Numbers(), "[4]\n");
  EXPECT_EQ(Kdvbase({"check", base_}).status, 0);
}

TEST_F(MessagesOfABase, OfADamagedBaseAreRescuedIntoANewOne) {
  const std::string whole = folder_ / "whole.mdb", rest = folder_ / "rest.mdb";
  EXPECT_EQ(Kdvbase({"rescue", base_, whole}).out, "Спасены все сообщения: 4.\n");
  std::string bytes = folder_.Get("kdv_2002.mdb");
  constexpr std::size_t kPage = 2048;
  const std::size_t row = bytes.find("Курс 3"_ru);
  bytes.replace(row / kPage * kPage, kPage, kPage, '\0');
  folder_.Put("kdv_2002.mdb", bytes);
  const Outcome outcome = Kdvbase({"rescue", base_, rest});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.out, Cat("Потеряны сообщения с номерами: 1-4\nПовреждённые страницы файла: ", row / kPage,
                             "\nСпасено сообщений: 0, из них не полностью: 0. Потеряно: 4.\n"));
  EXPECT_EQ(Kdvbase({"check", rest}).status, 0);
}

TEST_F(MessagesOfABase, AStatementMayDeleteRowsAndTellsHowMany) {
  EXPECT_EQ(Kdvbase({"sql", base_, "delete from База where Код > 2"}).out, "Удалено записей: 2\n");
  EXPECT_EQ(Kdvbase({"sql", base_, "DELETE * FROM База WHERE Автор = 'Никто'"}).out, "Удалено записей: 0\n");
  EXPECT_EQ(Kdvbase({"sql", base_, "delete from База where Нет = 1"}).status, 1);
  EXPECT_EQ(Numbers(), "[1]\n[2]\n");
}

}  // namespace
}  // namespace cli
