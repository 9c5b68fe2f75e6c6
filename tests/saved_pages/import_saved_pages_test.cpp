#include "saved_pages/import_saved_pages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "base/cat.h"
#include "base/cp1251.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "demo_forum/demo_pages.h"
#include "support/fixed_clock.h"
#include "support/memory_query_recordset.h"
#include "support/temp_folder.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr std::string_view kKinds[] = {"rts-an", "kdv", "ptrv", "moysha", "gelium", "ows_ptrv"};

MessageRecord Message() {
  return {.Код = 0,  // stands in the file's name
          .Вответ = 5,
          .Тема = std::string("О курсе"_ru),
          .Автор = std::string("Ваня"_ru),
          .АвторMail = "v@x.ru",
          .Дата = OleDate{37'330},  // 2002-03-15
          .Текст = std::string("Вырос."_ru),
          .Картинка = "man"};
}

/// Counts its calls, and asks to stop at one of them.
class Watcher : public Progress {
 public:
  bool Advance(int percent) override {
    percents.push_back(percent);
    return percents.size() != stop_at;
  }
  std::vector<int> percents;
  std::size_t stop_at = 0;
};

class Told : public page_files::Trouble {
 public:
  void Tell(const std::string& path, std::string_view why) override {
    lines.push_back(path.substr(path.rfind('/') + 1) + ": " + cp1251::ToUtf8(why));
  }
  std::vector<std::string> lines;
};

struct Stage {
  TempFolder folder;
  DiskFileSystem files;
  Script script;
  MemoryQueryRecordset records{script};
  FixedClock clock{2002, 6, 15};
  Watcher watcher;
  Told told;

  ImportTotals Import(std::string_view kind) {
    const std::string top[] = {folder.path()};
    return ImportSavedPages({files, records, clock, watcher, told}, kind, page_files::Find(top, told));
  }
  std::string Summary(std::string_view kind) { return cp1251::ToUtf8(ImportSummary(Import(kind))); }
};

TEST(ImportSavedPages, StoresWhatEachForumsImporterWouldAndNothingTwice) {
  for (const std::string_view kind : kKinds) {
    Stage stage;
    stage.folder.Put("12.html", demo_pages::MessagePage(kind, Message()));
    stage.folder.Put("12_author.html", demo_pages::OwsAuthorPage(Message()));
    if (kind != "ows_ptrv") std::filesystem::remove(stage.folder / "12_author.html");
    EXPECT_EQ(stage.Summary(kind), "Записано сообщений: 1, уже были в базе: 0, не записано страниц: 0") << kind;
    const std::string stored = stage.script.Take();
    for (const char* const field :
         {"Код = 12\n", "Вответ = 5\n", "Тема = 'О курсе", "Автор = 'Ваня'\n", "АвторMail = 'v@x.ru'\n",
          "Дата = 2002-03-15\n", "Текст = 'Вырос.'\n", "\nstored\n"})
      EXPECT_THAT(stored, HasSubstr(field)) << kind;
    EXPECT_EQ(stored.find("Картинка = 'man'") != std::string::npos, kind == "rts-an");
    EXPECT_EQ(stage.Summary(kind), "Записано сообщений: 0, уже были в базе: 1, не записано страниц: 0") << kind;
    EXPECT_EQ(stage.script.text(), "") << kind;
    EXPECT_THAT(stage.told.lines, IsEmpty()) << kind;
  }
}

TEST(ImportSavedPages, AnOwsMessageWithoutItsAuthorsPageHasNoEmail) {
  Stage stage;
  stage.folder.Put("12.html", demo_pages::OwsPage(Message()));
  EXPECT_EQ(stage.Import("ows_ptrv").imported, 1u);
  EXPECT_THAT(stage.script.text(), HasSubstr("АвторMail = ''\n"));
}

TEST(ImportSavedPages, TellsWhyAPageGaveNoMessageAndGoesOn) {
  Stage stage;
  const std::string good = demo_pages::MoyshaPage(Message());
  stage.folder.Put("index.html", good);
  stage.folder.Put("1.html", "");
  stage.folder.Put("2.html", demo_pages::NotFoundPage("moysha"));
  stage.folder.Put("3.html", demo_pages::ProxyReport());
  stage.folder.Put("4.html", "<title>T</title><i>вчера</i>");
  stage.folder.Put("5.html", std::string(17 * 1024 * 1024, ' '));
  stage.folder.Put("6.html", Cat("<title>", std::string(300, 'x'), "</title><i>1/2/02</i>"));
  stage.folder.Put("10.html", good);
  EXPECT_EQ(stage.Summary("moysha"), "Записано сообщений: 1, уже были в базе: 0, не записано страниц: 7");
  ASSERT_EQ(stage.told.lines.size(), 7u) << testing::PrintToString(stage.told.lines);
  const char* const wanted[] = {"index.html: в имени файла нет номера сообщения",
                                "1.html: страница пуста",
                                "2.html: на странице нет сообщения",
                                "3.html: это сообщение прокси-сервера",
                                "4.html: Страница не разбирается: ",
                                "5.html: Файл",
                                "6.html: Текст длиннее поля"};
  for (std::size_t i = 0; i < 7; ++i) EXPECT_THAT(stage.told.lines[i], testing::StartsWith(wanted[i]));
  EXPECT_TRUE(stage.records.msgExist(10));
  EXPECT_EQ(stage.records.size(), 1u);
}

TEST(ImportSavedPages, APageOfAnotherSiteIsNoMessageWhereTheCheckLetsAllPass) {
  Stage stage;
  stage.folder.Put("12.html", "<html><title>Погода</title><p>Дождь</html>");
  EXPECT_EQ(stage.Import("kdv").not_imported, 1u);
  EXPECT_THAT(stage.told.lines, ElementsAre("12.html: на странице нет сообщения"));
  EXPECT_EQ(stage.records.size(), 0u);
}

TEST(ImportSavedPages, AMessageWhoseDateIsLostIsStoredAsItsImporterDoesAndTold) {
  MessageRecord undated = Message();
  undated.Дата.reset();
  const struct {
    std::string_view kind, stored, told;
  } cases[] = {
      {"ptrv", "", "12.html: дата не читается, сообщение записано без неё"},
      {"kdv", "Дата = 1899-12-30\n", "12.html: дата не читается, сообщение записано без неё"},
  };
  for (const auto& c : cases) {
    Stage stage;
    stage.folder.Put("12.html", demo_pages::MessagePage(c.kind, undated));
    EXPECT_EQ(stage.Summary(c.kind), "Записано сообщений: 1 (без даты: 1), уже были в базе: 0, не записано страниц: 0");
    EXPECT_THAT(stage.script.text(), HasSubstr(c.stored));
    EXPECT_EQ(stage.script.text().find("Дата") == std::string::npos, c.stored.empty());
    EXPECT_THAT(stage.told.lines, ElementsAre(std::string(c.told)));
  }
  Stage rts_an;  // refuses such a page
  rts_an.folder.Put("12.html", cp1251::FromUtf8("<title>Курс - Форум аналитиков</title>\r\n<font size=-1>[вчера]"));
  EXPECT_EQ(rts_an.Import("rts-an").not_imported, 1u);
  EXPECT_THAT(rts_an.told.lines, ElementsAre(HasSubstr("12.html: Страница не разбирается: ")));
  EXPECT_EQ(rts_an.records.size(), 0u);
}

TEST(ImportSavedPages, ARefusalOfTheBaseLosesOnePageAndNoMore) {
  for (const std::string_view step : {std::string_view("msgExist"), std::string_view("AddNew"),
                                      std::string_view("Тема"_ru), std::string_view("Update")}) {
    Stage stage;
    for (const char* const name : {"1.html", "2.html", "3.html"})
      stage.folder.Put(name, demo_pages::GeliumPage(Message()));
    stage.records.Fail(step);
    EXPECT_EQ(stage.Summary("gelium"), "Записано сообщений: 2, уже были в базе: 0, не записано страниц: 1");
    EXPECT_THAT(stage.told.lines, ElementsAre("1.html: Диск не отвечает"));
    const bool row_begun = step != "msgExist" && step != "AddNew";
    EXPECT_EQ(stage.script.text().find("record dropped") != std::string::npos, row_begun) << cp1251::ToUtf8(step);
    EXPECT_EQ(stage.Summary("gelium"), "Записано сообщений: 1, уже были в базе: 2, не записано страниц: 0");
  }
}

TEST(ImportSavedPages, ABatchThatTheDiskRefusesIsTriedPageByPage) {
  const struct {
    int refusals;
    std::string_view summary;
    std::size_t told;
  } cases[] = {
      {1, "Записано сообщений: 3, уже были в базе: 0, не записано страниц: 1", 1},  // together, not one by one
      {3, "Записано сообщений: 2, уже были в базе: 0, не записано страниц: 2", 2},
      {5, "Записано сообщений: 0, уже были в базе: 0, не записано страниц: 4", 4},
  };
  for (const auto& c : cases) {
    Stage stage;
    for (const char* const name : {"1.html", "2.html", "3.html"})
      stage.folder.Put(name, demo_pages::GeliumPage(Message()));
    stage.folder.Put("index.html");  // takes a try of its own too
    stage.records.Fail("CommitBatch", c.refusals);
    EXPECT_EQ(stage.Summary("gelium"), c.summary);
    EXPECT_EQ(stage.told.lines.size(), c.told) << testing::PrintToString(stage.told.lines);
    EXPECT_EQ(stage.Import("gelium").imported, c.told - 1);
  }
}

TEST(ImportSavedPages, GoesFromTheLowestNumberUpAndCanBeStoppedAndRepeated) {
  Stage stage;
  for (const char* const name : {"10.html", "9.html", "a/2.html", "msg_9.html"})
    stage.folder.Put(name, demo_pages::KdvPage(Message()));
  stage.watcher.stop_at = 3;
  EXPECT_EQ(stage.Summary("kdv"),
            "Записано сообщений: 2, уже были в базе: 0, не записано страниц: 0. Остановлено, осталось страниц: 2");
  EXPECT_THAT(stage.watcher.percents, ElementsAre(0, 25, 50));
  EXPECT_TRUE(stage.records.msgExist(2) && stage.records.msgExist(9));
  EXPECT_EQ(stage.Summary("kdv"), "Записано сообщений: 1, уже были в базе: 3, не записано страниц: 0");
  EXPECT_EQ(stage.watcher.percents.back(), 100);
}

TEST(ImportSavedPages, AnUnknownForumIsRefusedBeforeAnyPage) {
  Stage stage;
  stage.folder.Put("12.html", demo_pages::KdvPage(Message()));
  EXPECT_THROW(stage.Import("kd"), Error);
  EXPECT_EQ(stage.records.size(), 0u);
}

}  // namespace
