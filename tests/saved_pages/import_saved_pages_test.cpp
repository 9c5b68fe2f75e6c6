#include "saved_pages/import_saved_pages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/cat.h"
#include "base/cp1251.h"
#include "base/error.h"
#include "demo_forum/demo_pages.h"
#include "saved_pages/sample_message.h"
#include "support/fixed_clock.h"
#include "support/memory_query_recordset.h"
#include "support/temp_folder.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

/// An import that remembers what it tells, and asks to stop at one of its reports.
struct Stage : Progress, page_files::Trouble {
  TempFolder folder;
  DiskFileSystem files;
  Script script;
  MemoryQueryRecordset records{script};
  FixedClock clock{2002, 6, 15};
  std::vector<int> percents;
  std::size_t stop_at = 0;
  std::vector<std::string> told;

  bool Advance(int percent) override {
    percents.push_back(percent);
    return percents.size() != stop_at;
  }
  void Tell(const std::string& path, std::string_view why) override {
    told.push_back(path.substr(path.rfind('/') + 1) + ": " + cp1251::ToUtf8(why));
  }
  ImportTotals Import(std::string_view kind) {
    const std::string top[] = {folder.path()};
    return ImportSavedPages({files, records, clock, *this, *this}, kind, page_files::Find(top, *this));
  }
  std::string Summary(std::string_view kind) { return cp1251::ToUtf8(ImportSummary(Import(kind))); }
};

TEST(ImportSavedPages, StoresWhatEachForumsImporterWouldAndNothingTwice) {
  for (const std::string_view kind : {"rts-an", "kdv", "ptrv", "moysha", "gelium", "ows_ptrv"}) {
    Stage stage;
    stage.folder.Put("12.html", demo_pages::MessagePage(kind, SampleMessage()));
    if (kind == "ows_ptrv") stage.folder.Put("12_author.html", demo_pages::OwsAuthorPage(SampleMessage()));
    EXPECT_EQ(stage.Summary(kind), "Записано сообщений: 1, уже были в базе: 0, не записано страниц: 0") << kind;
    const std::string stored = stage.script.Take();
    for (const char* const field :
         {"Код = 12\n", "Вответ = 5\n", "Тема = 'О \"курсе\"", "Автор = 'Ваня'\n", "АвторMail = 'v@x.ru'\n",
          "Дата = 2002-03-15\n", "Текст = 'Вырос.\\r\\nДа'\n", "\nstored\n"})
      EXPECT_THAT(stored, HasSubstr(field)) << kind;
    EXPECT_EQ(stored.find("Картинка = 'man'") != std::string::npos, kind == "rts-an");
    EXPECT_EQ(stage.Summary(kind), "Записано сообщений: 0, уже были в базе: 1, не записано страниц: 0") << kind;
    EXPECT_EQ(stage.script.text(), "") << kind;
    EXPECT_THAT(stage.told, IsEmpty()) << kind;
  }
  Stage stage;
  stage.folder.Put("12.html", demo_pages::OwsPage(SampleMessage()));  // without its author's page
  EXPECT_EQ(stage.Import("ows_ptrv").imported, 1u);
  EXPECT_THAT(stage.script.text(), HasSubstr("АвторMail = ''\n"));
}

TEST(ImportSavedPages, TellsWhyAPageGaveNoMessageAndGoesOn) {
  const struct {
    const char* name;
    std::string page;
    const char* told;
  } cases[] = {{"index.html", demo_pages::MoyshaPage(SampleMessage()), "в имени файла нет номера сообщения"},
               {"1.html", "", "страница пуста"},
               {"2.html", demo_pages::NotFoundPage("moysha"), "на странице нет сообщения"},
               {"3.html", demo_pages::ProxyReport(), "это сообщение прокси-сервера"},
               {"4.html", "<title>T</title><i>вчера</i>", "Страница не разбирается: "},
               {"5.html", std::string(17 * 1024 * 1024, ' '), "Файл"},
               {"6.html", Cat("<title>", std::string(300, 'x'), "</title><i>1/2/02</i>"), "Текст длиннее поля"}};
  Stage stage;
  for (const auto& c : cases) stage.folder.Put(c.name, c.page);
  stage.folder.Put("10.html", demo_pages::MoyshaPage(SampleMessage()));
  EXPECT_EQ(stage.Summary("moysha"), "Записано сообщений: 1, уже были в базе: 0, не записано страниц: 7");
  ASSERT_EQ(stage.told.size(), std::size(cases)) << testing::PrintToString(stage.told);
  for (std::size_t i = 0; i < std::size(cases); ++i)
    EXPECT_THAT(stage.told[i], StartsWith(Cat(cases[i].name, ": ", cases[i].told)));
  EXPECT_TRUE(stage.records.msgExist(10));
  EXPECT_EQ(stage.records.size(), 1u);
}

TEST(ImportSavedPages, AMessageWhoseDateIsLostIsStoredAsItsImporterDoesAndTold) {
  MessageRecord undated = SampleMessage();
  undated.Дата.reset();
  const struct {
    std::string_view kind;
    std::string page;
    std::size_t imported;
    std::string date, told;
  } cases[] = {{"ptrv", demo_pages::PtrvPage(undated), 1, "", "дата не читается, сообщение записано без неё"},
               {"kdv", demo_pages::KdvPage(undated), 1, "1899-12-30", "дата не читается, сообщение записано без неё"},
               {"rts-an", cp1251::FromUtf8("<title>Курс - Форум аналитиков</title>\r\n<font size=-1>[вчера]"), 0, "",
                "Страница не разбирается: "},
               // The check lets pages of other sites pass.
               {"kdv", "<html><title>Weather</title><p>Rain</html>", 0, "", "на странице нет сообщения"}};
  for (const auto& c : cases) {
    Stage stage;
    stage.folder.Put("12.html", c.page);
    EXPECT_EQ(stage.Summary(c.kind),
              c.imported == 1 ? "Записано сообщений: 1 (без даты: 1), уже были в базе: 0, не записано страниц: 0"
                              : "Записано сообщений: 0, уже были в базе: 0, не записано страниц: 1");
    EXPECT_EQ(stage.records.size(), c.imported);
    EXPECT_EQ(stage.script.text().find("Дата = " + c.date) != std::string::npos, !c.date.empty());
    EXPECT_THAT(stage.told, ElementsAre(StartsWith("12.html: " + c.told)));
  }
}

TEST(ImportSavedPages, ARefusalOfTheBaseLosesOnePageAndNoMore) {
  constexpr std::string_view kSubject = "Тема"_ru;
  const struct {
    std::string_view step;
    int refusals;
    std::size_t imported;  // of three
    bool row_begun = false;
  } cases[] = {
      {"msgExist", 1, 2},    {"AddNew", 1, 2},      {kSubject, 1, 2, true}, {"Update", 1, 2, true},
      {"CommitBatch", 1, 3}, {"CommitBatch", 3, 2}, {"CommitBatch", 5, 0}};  // a batch is tried again page by page
  for (const auto& c : cases) {
    SCOPED_TRACE(Cat(cp1251::ToUtf8(c.step), " ", c.refusals));
    Stage stage;
    for (const char* name : {"1.html", "2.html", "3.html"})
      stage.folder.Put(name, demo_pages::GeliumPage(SampleMessage()));
    stage.folder.Put("index.html");  // takes a try of its own too
    stage.records.Fail(c.step, c.refusals);
    EXPECT_EQ(stage.Summary("gelium"),
              Cat("Записано сообщений: ", c.imported, ", уже были в базе: 0, не записано страниц: ", 4 - c.imported));
    ASSERT_EQ(stage.told.size(), 4 - c.imported);
    EXPECT_EQ(stage.told[0], "index.html: в имени файла нет номера сообщения");
    EXPECT_TRUE(c.imported != 2 || stage.told[1] == "1.html: Диск не отвечает");
    EXPECT_EQ(stage.script.text().find("record dropped") != std::string::npos, c.row_begun);
    EXPECT_EQ(stage.Import("gelium").imported, 3 - c.imported);
  }
}

TEST(ImportSavedPages, GoesFromTheLowestNumberUpAndCanBeStoppedAndRepeated) {
  Stage stage;
  for (const char* name : {"10.html", "9.html", "a/2.html", "msg_9.html"})
    stage.folder.Put(name, demo_pages::KdvPage(SampleMessage()));
  stage.stop_at = 3;
  EXPECT_EQ(stage.Summary("kdv"),
            "Записано сообщений: 2, уже были в базе: 0, не записано страниц: 0. Остановлено, осталось страниц: 2");
  EXPECT_THAT(stage.percents, ElementsAre(0, 25, 50));
  EXPECT_TRUE(stage.records.msgExist(2) && stage.records.msgExist(9));
  EXPECT_EQ(stage.Summary("kdv"), "Записано сообщений: 1, уже были в базе: 3, не записано страниц: 0");
  EXPECT_EQ(stage.percents.back(), 100);
}

TEST(ImportSavedPages, AnUnknownForumIsRefused) { EXPECT_THROW(Stage().Import("kd"), Error); }

}  // namespace
