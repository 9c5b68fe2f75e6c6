// Messages of a base found, shown, exported, deleted and rescued from the command line.

#include "base/cat.h"
#include "base/ru_literal.h"
#include "cli/run_tool.h"
#include "demo_forum/demo_pages.h"
#include "support/temp_folder.h"

namespace cli {
namespace {

/// 1 with the reply 2 and its reply 3; 4 alone.
class MessagesOfABase : public testing::Test {
 protected:
  MessagesOfABase() {
    for (const auto& [number, answered] : {std::pair{1, 0}, {2, 1}, {3, 2}, {4, 0}})
      folder_.Put(Cat("pages/", number, ".html"), Page(number, answered));
    folder_.Put("program/forum.ini", "[FORUMS]\r\nmax=1\r\nf1=kdv\r\n");
    EXPECT_EQ(Kdvbase({"create", base_}).status, 0);
    EXPECT_EQ(Kdvbase({"import", base_, folder_ / "pages", "--data-dir", program_}).status, 0);
  }

  static std::string Page(int number, int answered) {
    return demo_pages::KdvPage({.Вответ = answered,
                                .Тема = Cat("Курс "_ru, number),
                                .Автор = std::string(number == 4 ? "Петя"_ru : "Ваня"_ru),
                                .АвторMail = number == 4 ? "" : Cat("v", number % 2, "@x.ru"),
                                .Дата = OleDate{37'330},
                                .Текст = std::string(number == 3 ? "Совсем ВЫРОС."_ru : "Упал."_ru),
                                .Картинка = ""});
  }
  Call Holds(const std::string& numbers) const {
    return {{"sql", base_, "select Код from База order by Код", "--json"}, 0, numbers};
  }

  TempFolder folder_;
  std::string base_ = folder_ / "kdv_2002.mdb", program_ = folder_ / "program";
};

TEST_F(MessagesOfABase, AreFoundByTextAndAuthor) {
  ExpectCalls({{{"search", base_, "выро"}, 0, "3\tКурс 3\n"},
               {{"search", base_, "Курс [14]"}, 0, "1\tКурс 1\n4\tКурс 4\n"},
               {{"--data-dir", program_, "search", base_, "выро"}, 0, "3\tКурс 3\n"},
               {{"search", base_, " "}, 2, "", "пуст"},
               {{"search", base_, "日"}, 2, "", "не бывает"},  // not every character, as "?" would be
               {{"import", base_, folder_ / "none", "--data-dir", program_}, 1, "", "Нет такого файла"},
               {{"search", base_, "it's"}, 1, "", "kdvbase: "},
               {{"emails", base_, "Ваня"}, 0, "v0@x.ru\nv1@x.ru\n"},
               {{"emails", base_, "Петя"}, 0, "", "Петя за время своего присутствия"}});
}

TEST_F(MessagesOfABase, AreShownAsATreeAndOneByOne) {
  const std::string tree =
      "По цепочке\n  Курс 4\n  Курс 1\n    Курс 2\n      Курс 3\nОборванные цепочки\nПо дате\nПо автору\n"
      "Результаты поиска\nЗагрузил 4 сообщений, из них несогласованных -0\n";
  const std::string third =
      "Код сообщения: 3 [ответ на 2]\nТема : Курс 3\nАвтор : Ваня\nE-Mail : v1@x.ru\n"
      "Дата : пятница, 15 Март 2002\n\nСовсем ВЫРОС.\n";
  ExpectCalls({{{"tree", base_}, 0, tree},
               {{"show", base_, "3"}, 0, third},
               {{"show", base_, "9"}, 1, "", "нет сообщения с номером 9"}});
}

TEST_F(MessagesOfABase, AreExportedWithTheirWholeThread) {
  const std::string taken = folder_.Put("taken"), other = folder_ / "new/folder";
  ExpectCalls({{{"export", base_, "1", "--data-dir", program_}, 0, program_ + "/kdv_2002/Курс 1.xml\n"},
               {{"export", base_, "3", "--data-dir", program_, "--out", other}, 0, other + "/Курс 1.xml\n"},
               {{"export", base_, "десять"}, 2, "", "Не номер"},
               {{"export", base_, "9"}, 1, "", "нет сообщения с номером 9"},
               {{"export", base_, "1", "--data-dir", program_, "--out", taken}, 1, "", "неполон или не создан"}});
  EXPECT_NE(folder_.Get("new/folder/Курс 1.xml"), "");
  EXPECT_EQ(folder_.Get("new/folder/Курс 1.xml"), folder_.Get("program/kdv_2002/Курс 1.xml"));
}

TEST_F(MessagesOfABase, AreDeletedAloneOrWithReplies) {
  ExpectCalls(
      {{{"delete", base_, "5"}, 1, "", "нет сообщения с номером 5"},
       {{"delete", base_, "пять"}, 2, "", "Не номер сообщения: пять"},
       Holds("[1]\n[2]\n[3]\n[4]\n"),
       {{"delete", base_, "1"}, 0, "Сообщение удалено. Все ответы на него появятся в ветке 'Оборванные цепочки'\n"},
       Holds("[2]\n[3]\n[4]\n"),
       {{"delete", base_, "2", "--with-replies"}, 0, "Удалено 2 сообщений\n"},  // a broken thread
       Holds("[4]\n"),
       {{"check", base_}, 0, "Ошибок: 0, замечаний: 0\n"}});
}

TEST_F(MessagesOfABase, OfADamagedBaseAreRescuedIntoANewOne) {
  const std::string whole = folder_ / "whole.mdb", rest = folder_ / "rest.mdb";
  EXPECT_EQ(Kdvbase({"rescue", base_, whole}).out, "Спасены все сообщения: 4.\n");
  std::string bytes = folder_.Get("kdv_2002.mdb");
  constexpr std::size_t kPage = 2048;
  constexpr std::string_view kLost = "Курс 3"_ru;
  const std::size_t row = bytes.find(kLost);
  bytes.replace(row / kPage * kPage, kPage, kPage, '\0');
  folder_.Put("kdv_2002.mdb", bytes);
  const Outcome outcome = Kdvbase({"rescue", base_, rest});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.out, Cat("Потеряны сообщения с номерами: 1-4\nПовреждённые страницы файла: ", row / kPage,
                             "\nСпасено сообщений: 0, из них не полностью: 0. Потеряно: 4.\n"));
  EXPECT_EQ(Kdvbase({"check", rest}).status, 0);
}

TEST_F(MessagesOfABase, AStatementMayDeleteRowsAndTellsHowMany) {
  ExpectCalls({{{"sql", base_, "delete from База where Код > 2"}, 0, "Удалено записей: 2\n"},
               {{"sql", base_, "DELETE * FROM База WHERE Автор = 'Никто'"}, 0, "Удалено записей: 0\n"},
               {{"sql", base_, "delete from База where Нет = 1"}, 1, "", "Нет"},
               Holds("[1]\n[2]\n")});
}

}  // namespace
}  // namespace cli
