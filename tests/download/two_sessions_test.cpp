// Where the two download sessions part: the left column is the session of fixed addresses, the right one that of
// configured addresses. Each row is one situation; docs/download-sessions.md tells the same in words.

#include <gtest/gtest.h>

#include <string>

#include "base/cat.h"
#include "download_configured/configured_session.h"
#include "download_fixed/fixed_session.h"
#include "support/download_stage.h"

namespace {

constexpr const char* kIni = "[LOG]\r\nIsLog=1\r\n[kdv]\r\nURL=f\r\n[moysha]\r\nURL=c/\r\nTIMEOUT=5\r\n";

/// What stands behind a number's address.
enum class Page { kMessage, kNone, kNoSuchMessage, kFailure };

struct Stage : DownloadStage {
  Stage() : DownloadStage(kIni) {}

  void Serve(int number, Page page) {
    for (const std::string& url : {Cat("f/messages/", number, ".html"), Cat("c/", number)}) {
      if (page == Page::kFailure) fetcher.Fail(url);
      if (page == Page::kNone) fetcher.Serve(url, "");
      if (page == Page::kNoSuchMessage) fetcher.Serve(url, "<TITLE>404 Not Found</TITLE>");
      if (page == Page::kMessage) fetcher.Serve(url, "<title>T</title><b>N</b><i>15/03/02</i>");
    }
  }
  /// Everything said, forum.log behind it.
  std::string Told() const { return Cat(script.text(), "-- forum.log\n", log_file.text()); }
};

struct Fixed : Stage {
  FixedSession session{FixedDownload{records, fetcher, view, ini, forum_log, clock, ""}};
  void Download(const RangeChoice& choice) { session.cmdDownload_Click("kdv", choice); }
};

struct Configured : Stage {
  ConfiguredSession session{ConfiguredDownload{"moysha", records, fetcher, view, ini, forum_log, clock}};
  void Download(const RangeChoice& choice) { session.cmdDownload_Click(choice); }
};

struct Situation {
  const char* name;
  std::string first, last;         // both empty: automatic
  Page page;                       // of every number
  bool stop;                       // while the first page comes
  const char *fixed, *configured;  // told by this session and not by the other
};

RangeChoice Choice(const Situation& s) { return {.automatic = s.first.empty(), .begin = s.first, .end = s.last}; }

template <typename Session>
std::string Play(const Situation& s) {
  Session stage;
  stage.records.Hold(4);
  for (int number = 5; number <= 105; ++number) stage.Serve(number, s.page);
  stage.fetcher.Serve("f/data.txt", "6");
  if (s.stop)
    for (const char* url : {"f/messages/5.html", "c/5"})
      stage.fetcher.Serve(url, [&stage]() -> std::string {
        stage.session.cmdCancelDL_Click();
        return "";
      });
  stage.Download(Choice(s));
  return stage.Told();
}

const Situation kSituations[] = {
    {"automatic", "", "", Page::kMessage, false, "fetch f/data.txt, 60 s\n", "txtEnd: 105\n"},
    {"automatic, last number", "", "", Page::kNone, false, "hint: Получаю сообщения с 5 по 6....\n",
     "hint: Получаю сообщения с 5 по 105....\n"},
    {"one number", "5", "5", Page::kMessage, false, "fetch f/messages/5.html",
     "hint: Ошибка : номер первого должен быть меньше последнего...\n"},
    {"last below first", "6", "5", Page::kMessage, false,
     "hint: Ошибка : номер первого сообщения равен или больше последнего...\n",
     "hint: Ошибка : номер первого должен быть меньше последнего...\n"},
    {"time-out", "5", "6", Page::kMessage, false, ", 60 s\n", ", 5 s\n"},
    {"total", "5", "6", Page::kMessage, false, "Всего к загрузке - 1\n", "Всего к загрузке - 2\n"},
    {"summary", "5", "6", Page::kMessage, false, "bar2: Загружено 1", "bar1: Загружено 1"},
    {"order of the rows", "5", "6", Page::kMessage, false, "rows sorted\n", "rows cleared\nlog cleared\n"},
    {"number in the row", "5", "6", Page::kNone, false, "cell 1: 5\n", "cell 1: 000005\n"},
    {"number of a message", "5", "6", Page::kMessage, false, "cell 1: 00005\n", "cell 1: 000005\n"},
    {"number in the base", "4", "5", Page::kMessage, false, "bar1: Пропущено 4\n", "bar1: Пропустил 4\n"},
    {"message", "5", "6", Page::kMessage, false, "cell 5: Импортирован\n", "cell 5: Ок\n"},
    {"no such message", "5", "6", Page::kNoSuchMessage, false,
     "cell 5: Not Found (404)\nicon 15\ncolour 255\nbar1: Не нашел 5\nicon 16\n", "cell 5:  Не найден\nicon 16\n"},
    {"empty page", "5", "6", Page::kNone, false, "bar1: Проверьте соединение\nicon 9\nbar2",
     "cell 5:  Нет коннекта\nbar1: Проверьте соединение\nicon 9\n"},
    {"failed transfer", "5", "6", Page::kFailure, false, "cell 5: TimeOut\n", "Загрузил 0 байт из сообщения 5\n"},
    {"forum.log, status", "5", "6", Page::kNone, false, "-- forum.log\nЗагружаю 5\n",
     "-- forum.log\nПолучаю сообщения с 5 по 6....\n"},
    {"forum.log, page", "5", "6", Page::kMessage, false, "\nImport: theme=T\n",
     "\n<title>T</title><b>N</b><i>15/03/02</i>\n"},
    {"end", "5", "6", Page::kMessage, false, "cmdCancelDL off\nprogress 0\n", "cmdGetLast on\nprogress 0\n"},
    {"stop, the page under way", "5", "6", Page::kMessage, true, "Загрузил 0 байт из сообщения 5\n",
     "cell 5: Остановлено...\n"},
};

TEST(TwoSessions, PartWhereTheTableSays) {
  for (const Situation& s : kSituations) {
    const std::string fixed = Play<Fixed>(s), configured = Play<Configured>(s);
    const auto tells = [](const std::string& told, const char* line) { return told.find(line) != std::string::npos; };
    EXPECT_TRUE(tells(fixed, s.fixed)) << s.name << "\n" << fixed;
    EXPECT_FALSE(tells(fixed, s.configured)) << s.name << "\n" << fixed;
    EXPECT_TRUE(tells(configured, s.configured)) << s.name << "\n" << configured;
    EXPECT_FALSE(tells(configured, s.fixed)) << s.name << "\n" << configured;
  }
}

}  // namespace
