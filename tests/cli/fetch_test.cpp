// The download session of the command line, over pages that a test writes.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>

#include <functional>
#include <span>

#include "base/cat.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "cli/run_tool.h"
#include "demo_forum/demo_pages.h"
#include "store/new_base.h"
#include "support/faulty_file.h"
#include "support/fixed_clock.h"
#include "support/hand_alarm.h"
#include "support/temp_folder.h"

namespace cli {
namespace {

using testing::HasSubstr;

class Pages : public PageFetcher {
 public:
  using Page = std::function<std::string(std::string_view url)>;
  explicit Pages(Page page) : page_(std::move(page)) {}
  std::string OpenUrl(std::string_view url, std::int32_t) override {
    under_way_ = true;
    std::string page = page_(url);
    under_way_ = false;
    return page;
  }
  void Cancel() override { EXPECT_FALSE(under_way_) << "a page under way is not given up"; }
  void OnStateChanged(StateChanged) override {}

 private:
  Page page_;
  bool under_way_ = false;
};

std::string KdvPage(std::string_view subject) {
  MessageRecord message;
  message.Тема = subject;
  message.Автор = "Ваня"_ru;
  message.Текст = "Вырос."_ru;
  message.Дата = OleDate{37'330};
  return demo_pages::KdvPage(message);
}

struct PagesNetwork : Network {
  explicit PagesNetwork(const Pages::Page& page) : fetcher(page) {}
  PageFetcher& pages() override { return fetcher; }
  Alarm& alarm() override { return hand; }
  void RunEvents() override {}
  Pages fetcher;
  HandAlarm hand;
};

class FetchCommand : public testing::Test {
 protected:
  FetchCommand() {
    folder_.Put("program/forum.ini",
                "[FORUMS]\r\nmax=3\r\nf1=kdv\r\nf2=moysha\r\nf3=gelium\r\n[kdv]\r\nURL=forum\r\n"
                "[gelium]\r\nStopDownLoad=1\r\n");
    Kdvbase({"create", base_});
  }
  Outcome Fetch(const Pages::Page& page, std::vector<std::string> words, bool on_terminal = false) {
    words.insert(words.begin(), {"fetch", "--data-dir", folder_ / "program"});
    DiskFileSystem files;
    return Run(files, page, words, on_terminal);
  }
  static Outcome Run(FileSystem& files, const Pages::Page& page, std::span<const std::string> words, bool on_terminal) {
    std::ostringstream out, errors;
    const FixedClock clock(2002, 3, 15);
    Outcome outcome;
    const NetworkFactory make = [&] { return std::make_unique<PagesNetwork>(page); };
    outcome.status = RunTool(words, out, errors, files, clock, page ? make : NetworkFactory(), on_terminal);
    outcome.out = out.str();
    outcome.errors = errors.str();
    return outcome;
  }
  std::string Numbers() { return Kdvbase({"sql", base_, "select Код from База order by Код", "--json"}).out; }

  TempFolder folder_;
  std::string base_ = folder_ / "kdv_test.mdb";
};

TEST_F(FetchCommand, TellsWhatBecameOfEveryNumber) {
  const auto pages = [](std::string_view url) -> std::string {
    if (url == "forum/messages/2.html") return demo_pages::NotFoundPage("kdv");
    if (url == "forum/messages/4.html") throw TransferError(1, "");
    return KdvPage("О курсе"_ru);
  };
  const Outcome first = Fetch(pages, {base_, "--from=1", "--to=3"});
  EXPECT_EQ(first.status, 0) << first.errors;
  EXPECT_EQ(first.out,
            "Получаю сообщения с 1 по 3....\n1 записано: О курсе - Ваня\n2 нет такого сообщения\n"
            "3 записано: О курсе - Ваня\n"
            "Записано сообщений: 2, уже были в базе: 0, нет на форуме: 1, не получено: 0\n");
  const Outcome second = Fetch(pages, {base_, "--from=3", "--to=5"});
  EXPECT_EQ(second.status, 1);
  EXPECT_THAT(second.out, HasSubstr("3 уже есть в базе\n4 не получено: TimeOut\n5 записано"));
  EXPECT_THAT(second.errors, HasSubstr("Не получено сообщений: 1"));
  EXPECT_EQ(Numbers(), "[1]\n[3]\n[5]\n");
  const Outcome on_terminal = Fetch(pages, {base_, "--from=5", "--to=6"}, true);
  EXPECT_THAT(on_terminal.out, HasSubstr("\r\033[K50 %  № 6  записано 1"));
}

TEST_F(FetchCommand, StopsBetweenTwoMessages) {
  for (const int signal : {SIGINT, SIGTERM}) {
    const auto pages = [&](std::string_view url) {
      if (url.ends_with("/2.html") || url.ends_with("/12.html")) ::raise(signal);
      return KdvPage("О курсе"_ru);
    };
    const std::string from = signal == SIGINT ? "1" : "11";
    const Outcome outcome = Fetch(pages, {base_, "--from", from, "--to", "20"});
    EXPECT_EQ(outcome.status, 3) << outcome.errors;
    EXPECT_THAT(outcome.out, HasSubstr("Остановлено пользователем"));
  }
  EXPECT_EQ(Numbers(), "[1]\n[2]\n[11]\n[12]\n") << "the page that was coming when the signal came is stored";
}

TEST_F(FetchCommand, TellsNoMessageAsStoredThatTheBaseRefusesInTheEnd) {
  FaultyFileSystem files;
  files.SetContent("/p/forum.ini", "[FORUMS]\r\nmax=1\r\nf1=kdv\r\n[LOG]\r\nIsLog=0\r\n[kdv]\r\nStopDownLoad=0\r\n");
  CreateMessageBase(files, "/p/kdv.mdb", {}, FixedClock(2002, 3, 15));
  const auto pages = [&](std::string_view url) {
    if (!url.ends_with("/3.html")) return KdvPage("О курсе"_ru);
    files.FailAt(1, FaultyFileSystem::Fault::kFail, FaultyFileSystem::Lasting::kFromThenOn);
    return demo_pages::NotFoundPage("kdv");
  };
  const std::vector<std::string> words = {"fetch", "--data-dir", "/p", "/p/kdv.mdb", "--from=1", "--to=3"};
  const Outcome outcome = Run(files, pages, words, false);
  EXPECT_EQ(outcome.status, 1);
  EXPECT_THAT(outcome.out, testing::ContainsRegex("1 записано: [^\n]*\n2 не получено: Изменения не записаны[^\n]*\n"
                                                  "3 нет такого сообщения\nЗаписано сообщений: 1,"));
}

TEST_F(FetchCommand, SaysWhyThereIsNothingToDo) {
  const auto nothing_new = [](std::string_view) { return std::string("1\n"); };
  const auto dead = [](std::string_view) -> std::string { throw TransferError(1, ""); };
  const std::string nameless = folder_ / "archive.mdb", off = folder_ / "gelium_test.mdb";
  for (const std::string& base : {nameless, off}) Kdvbase({"create", base});
  const struct {
    Pages::Page pages;
    std::vector<std::string> words;
    int status;
    std::string_view told;
  } cases[] = {{nothing_new, {base_}, 0, "На форуме нет новых сообщений"},
               {dead, {base_}, 1, "Проверьте соединение"},
               {{}, {base_}, 1, "собрана без Qt"},
               {dead, {nameless}, 1, "Я не знаю откуда качать"},
               {dead, {off}, 1, "gelium отключен для загрузки"},
               {dead, {base_, "--from=2", "--to=1"}, 1, "номер первого сообщения"},
               {dead, {base_, "--from=2"}, 2, "--from и --to"},
               {dead, {base_, "--from=a", "--to=2"}, 2, "Не номер"},
               {dead, {folder_ / "absent.mdb"}, 1, "absent.mdb"}};
  for (const auto& c : cases) {
    const Outcome outcome = Fetch(c.pages, c.words);
    EXPECT_EQ(outcome.status, c.status) << c.told << outcome.errors;
    EXPECT_THAT(c.status == 0 ? outcome.out : outcome.errors, HasSubstr(c.told));
  }
}

}  // namespace
}  // namespace cli
