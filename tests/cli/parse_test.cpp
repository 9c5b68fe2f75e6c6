// Saved pages as the tool prints them: what would be stored of each.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/ru_literal.h"
#include "cli/run_tool.h"
#include "demo_forum/demo_pages.h"
#include "support/temp_folder.h"

namespace cli {
namespace {

using testing::HasSubstr;

Outcome Parse(std::vector<std::string> words) {
  words.insert(words.begin(), "parse");
  return Kdvbase(words);
}

MessageRecord Full() {
  return {.Код = 12,
          .Вответ = 5,
          .Тема = std::string("О \"курсе\""_ru),
          .Автор = std::string("Ваня"_ru),
          .АвторMail = "v@x.ru",
          .Дата = OleDate{37'330},  // 2002-03-15, a Friday
          .Текст = std::string("Вырос.\r\nДа"_ru),
          .Картинка = "man"};
}

/// What is empty on the page, and what the page lacks.
MessageRecord Bare() {
  MessageRecord message;
  message.Тема = "T";
  return message;
}

TEST(Parse, PrintsThePagesOfSixForumsAsTheyWouldBeStored) {
  constexpr const char* kFull =
      R"("Код": 12, "Вответ": 5, "Тема": "О \"курсе\"", "Дата": 37330.0, "Автор": "Ваня", "АвторMail": "v@x.ru", )"
      R"("Текст": "Вырос.\r\nДа", "Картинка": null})";
  const struct {
    std::string kind;
    MessageRecord message;
    std::string want;
  } cases[] = {
      {"rts-an", Full(),
       R"("Код": 12, "Вответ": 5, "Тема": "О \"курсе\" -", "Дата": 37330.0, "Автор": "Ваня", "АвторMail": "v@x.ru", )"
       R"("Текст": "Вырос.\r\nДа", "Картинка": "man"})"},
      {"kdv", Full(), kFull},
      {"ptrv", Full(), kFull},
      {"moysha", Full(), kFull},
      {"gelium", Full(), kFull},
      {"ows_ptrv", Full(), kFull},
      {"kdv", Bare(),
       R"("Код": 12, "Вответ": 0, "Тема": "T", "Дата": 0.0, "Автор": null, "АвторMail": null, "Текст": "\r\n", )"
       R"("Картинка": null})"},
      {"ptrv", Bare(),
       R"("Код": 12, "Вответ": 0, "Тема": "T", "Дата": null, "Автор": "", "АвторMail": "", "Текст": " ", )"
       R"("Картинка": null})"},
  };
  for (const auto& c : cases) {
    const TempFolder folder;
    const std::string page = folder.Put("12.html", demo_pages::MessagePage(c.kind, c.message));
    folder.Put("12_author.html", demo_pages::OwsAuthorPage(c.message));
    const Outcome outcome = Parse({c.kind, page});
    EXPECT_EQ(outcome.out, "{\"page\": \"" + page + "\", \"check\": 1, " + c.want + "\n") << c.kind;
    EXPECT_EQ(outcome.errors, "") << c.kind;
    EXPECT_EQ(outcome.status, 0) << c.kind;
  }
}

TEST(Parse, APageWithoutAMessageHasItsCheckAlone) {
  const TempFolder folder;
  const std::string empty = folder.Put("1.html"), absent = folder.Put("2.html", demo_pages::NotFoundPage("moysha"));
  const Outcome outcome = Parse({"moysha", empty, absent});
  EXPECT_EQ(outcome.out, "{\"page\": \"" + empty + "\", \"check\": 0}\n{\"page\": \"" + absent + "\", \"check\": 2}\n");
  EXPECT_EQ(outcome.status, 0);
}

TEST(Parse, APageThatCannotBeReadFailsButStopsNoOther) {
  const TempFolder folder;
  const std::string missing = folder / "1.html", torn = folder.Put("2.html", "<title>T</title>"),
                    good = folder.Put("page.html", demo_pages::MoyshaPage(Full()));
  const Outcome outcome = Parse({"moysha", missing, torn, good});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_THAT(outcome.errors,
              testing::AllOf(HasSubstr(missing + ": "), HasSubstr(torn + ": "), HasSubstr("страниц: 2")));
  EXPECT_THAT(outcome.out, testing::StartsWith("{\"page\": \"" + torn + "\", \"check\": 1}\n"));
  EXPECT_THAT(outcome.out, HasSubstr("\"check\": 1, \"Код\": null, \"Вответ\": 5, "));
}

TEST(Parse, OptionsChooseTheYearAndTheAuthorsPage) {
  const TempFolder folder;
  const std::string ptrv = folder.Put("1.html", demo_pages::PtrvPage(Full())),
                    ows = folder.Put("2.html", demo_pages::OwsPage(Full())),
                    author = folder.Put("ivan.html", demo_pages::OwsAuthorPage(Full()));
  EXPECT_THAT(Parse({"ptrv", ptrv, "--now", "2000-01-01"}).out, HasSubstr("\"Дата\": 35139.0"));  // 1996-03-15
  EXPECT_THAT(Parse({"ows_ptrv", ows}).out, HasSubstr("\"АвторMail\": \"\""));
  EXPECT_THAT(Parse({"ows_ptrv", ows, "--author-page", author}).out, HasSubstr("\"АвторMail\": \"v@x.ru\""));
  EXPECT_EQ(Parse({"ows_ptrv", ows, "--author-page", folder / "none.html"}).status, 1);
  EXPECT_EQ(Parse({"ows", ows}).status, 2);
  EXPECT_EQ(Parse({"ptrv", ptrv, "--now", "вчера"}).status, 2);
  EXPECT_EQ(Parse({"ptrv"}).status, 2);
}

TEST(Parse, APathThatIsNoUtf8IsStillPrinted) {
  const TempFolder folder;
  const std::string page = folder.Put("\xCC\xEE\xFF 3.html", demo_pages::KdvPage(Full()));
  const Outcome outcome = Parse({"kdv", page});
  EXPECT_EQ(outcome.status, 0) << outcome.errors;
  EXPECT_THAT(outcome.out, HasSubstr("\xEF\xBF\xBD 3.html\", \"check\": 1, \"Код\": 3, "));
}

}  // namespace
}  // namespace cli
