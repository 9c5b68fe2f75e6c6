// Saved pages as the tool prints them: what would be stored of each.

#include "cli/run_tool.h"
#include "demo_forum/demo_pages.h"
#include "saved_pages/sample_message.h"
#include "support/temp_folder.h"

namespace cli {
namespace {

using testing::HasSubstr;

void ExpectParsed(const std::string& kind, const MessageRecord& message, const std::string& want) {
  const TempFolder folder;
  const std::string page = folder.Put("12.html", demo_pages::MessagePage(kind, message));
  folder.Put("12_author.html", demo_pages::OwsAuthorPage(message));
  const Outcome outcome = Kdvbase({"parse", kind, page});
  EXPECT_EQ(outcome.out, "{\"page\": \"" + page + "\", \"check\": 1, \"Код\": 12, " + want + "}\n") << kind;
  EXPECT_EQ(outcome.errors, "") << kind;
  EXPECT_EQ(outcome.status, 0) << kind;
}

TEST(Parse, PrintsThePagesOfSixForumsAsTheyWouldBeStored) {
  const std::string rest =
      R"("Дата": 37330.0, "Автор": "Ваня", "АвторMail": "v@x.ru", "Текст": "Вырос.\r\nДа", "Картинка": )";
  ExpectParsed("rts-an", SampleMessage(), R"("Вответ": 5, "Тема": "О \"курсе\" -", )" + rest + "\"man\"");
  for (const char* kind : {"kdv", "ptrv", "moysha", "gelium", "ows_ptrv"})
    ExpectParsed(kind, SampleMessage(), R"("Вответ": 5, "Тема": "О \"курсе\"", )" + rest + "null");
  MessageRecord bare;  // what is empty on the page, and what the page lacks
  bare.Тема = "T";
  ExpectParsed(
      "kdv", bare,
      R"("Вответ": 0, "Тема": "T", "Дата": 0.0, "Автор": null, "АвторMail": null, "Текст": "\r\n", "Картинка": null)");
  ExpectParsed(
      "ptrv", bare,
      R"("Вответ": 0, "Тема": "T", "Дата": null, "Автор": "", "АвторMail": "", "Текст": " ", "Картинка": null)");
}

TEST(Parse, APageThatCannotBeReadFailsButStopsNoOther) {
  const TempFolder folder;
  const std::string empty = folder.Put("1.html"), absent = folder.Put("2.html", demo_pages::NotFoundPage("moysha"));
  ExpectCalls({{{"parse", "moysha", empty, absent},
                0,
                "{\"page\": \"" + empty + "\", \"check\": 0}\n{\"page\": \"" + absent + "\", \"check\": 2}\n"}});
  const std::string missing = folder / "3.html", torn = folder.Put("4.html", "<title>T</title>"),
                    good = folder.Put("page.html", demo_pages::MoyshaPage(SampleMessage()));
  const Outcome outcome = Kdvbase({"parse", "moysha", missing, torn, good});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_THAT(outcome.errors,
              testing::AllOf(HasSubstr(missing + ": "), HasSubstr(torn + ": "), HasSubstr("страниц: 2")));
  EXPECT_THAT(outcome.out, testing::StartsWith("{\"page\": \"" + torn + "\", \"check\": 1}\n"));
  EXPECT_THAT(outcome.out, HasSubstr("\"check\": 1, \"Код\": null, \"Вответ\": 5, "));
}

TEST(Parse, OptionsChooseTheYearAndTheAuthorsPage) {
  const TempFolder folder;
  const std::string ptrv = folder.Put("1.html", demo_pages::PtrvPage(SampleMessage())),
                    ows = folder.Put("2.html", demo_pages::OwsPage(SampleMessage())),
                    author = folder.Put("ivan.html", demo_pages::OwsAuthorPage(SampleMessage()));
  const auto parsed = [](std::vector<std::string> words) { return Kdvbase(words).out; };
  EXPECT_THAT(parsed({"parse", "ptrv", ptrv, "--now", "2000-01-01"}), HasSubstr("\"Дата\": 35139.0"));  // 1996-03-15
  EXPECT_THAT(parsed({"parse", "ows_ptrv", ows}), HasSubstr("\"АвторMail\": \"\""));
  EXPECT_THAT(parsed({"parse", "ows_ptrv", ows, "--author-page", author}), HasSubstr("\"АвторMail\": \"v@x.ru\""));
  ExpectCalls({{{"parse", "ows_ptrv", ows, "--author-page", folder / "none.html"}, 1, "", "none.html: файл не найден"},
               {{"parse", "ows", ows}, 2, "", "Неизвестный форум: ows"},
               {{"parse", "ptrv", ptrv, "--now", "вчера"}, 2, "", "Не дата: вчера"},
               {{"parse", "ptrv"}, 2, "", "Не хватает аргументов"}});
}

TEST(Parse, APathThatIsNoUtf8IsStillPrinted) {
  const TempFolder folder;
  const Outcome outcome =
      Kdvbase({"parse", "kdv", folder.Put("\xCC\xEE\xFF 3.html", demo_pages::KdvPage(SampleMessage()))});
  EXPECT_EQ(outcome.status, 0) << outcome.errors;
  EXPECT_THAT(outcome.out, HasSubstr("\xEF\xBF\xBD 3.html\", \"check\": 1, \"Код\": 3, "));
}

}  // namespace
}  // namespace cli
