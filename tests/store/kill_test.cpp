// A program that changes a base is killed at a random moment, again and again. FORUM_KILL_ROUNDS tells
// how often, tools/kill_many.sh asks for more than the default.

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <cstdlib>
#include <iostream>
#include <map>
#include <random>
#include <stdexcept>
#include <string>
#include <utility>

#include "base/cat.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "jet/check.h"
#include "sql/connection.h"
#include "store/new_base.h"
#include "support/fixed_clock.h"
#include "support/temp_folder.h"

namespace {

using Messages = std::map<std::int32_t, std::string>;  // the texts by number

constexpr int kRounds = 50;
constexpr long kLongestLife = 60'000'000;  // nanoseconds

/// What the program does in one round: the same for the same seed and messages.
class Work {
 public:
  Work(unsigned seed, Messages messages) : random_(seed), messages_(std::move(messages)) {}

  const Messages& messages() const { return messages_; }

  /// Decides upon the next change, makes it here and, when there is one, in the base.
  void Step(sql::Connection* base) {
    const auto chance = random_() % 10;
    if (messages_.size() > 3 && chance < 2) return DeleteOne(base);
    if (messages_.size() > 30 && chance < 3) return DeleteMany(base);
    Add(base);
  }

 private:
  std::int32_t Number() { return static_cast<std::int32_t>(random_() % 100'000); }

  void Add(sql::Connection* base) {
    std::int32_t number = Number();
    while (messages_.contains(number)) ++number;
    const std::string text(random_() % 3 == 0 ? random_() % 9000 : random_() % 300,
                           static_cast<char>('a' + random_() % 26));
    messages_[number] = text;
    if (base == nullptr) return;
    sql::Recordset rows = base->OpenDynaset("БазаЗапрос"_ru);
    rows.AddNew();
    rows.Set("Текст"_ru, text);
    rows.Set("Код"_ru, number);
    rows.Update();
  }

  void DeleteOne(sql::Connection* base) {
    auto doomed = messages_.lower_bound(Number());
    if (doomed == messages_.end()) doomed = messages_.begin();
    if (base != nullptr) base->Execute(Cat("DELETE * FROM База WHERE Код="_ru, doomed->first));
    messages_.erase(doomed);
  }

  void DeleteMany(sql::Connection* base) {
    const std::int32_t end = Number();
    if (base != nullptr) base->Execute(Cat("DELETE * FROM База WHERE Код<"_ru, end));
    messages_.erase(messages_.begin(), messages_.lower_bound(end));
  }

  std::mt19937 random_;
  Messages messages_;
};

/// The kernel kills this process after so many nanoseconds.
void KillMeAfter(long nanoseconds) {
  sigevent event{};
  event.sigev_notify = SIGEV_SIGNAL;
  event.sigev_signo = SIGKILL;
  timer_t timer;
  if (::timer_create(CLOCK_MONOTONIC, &event, &timer) != 0) _exit(2);
  itimerspec when{};
  when.it_value.tv_nsec = nanoseconds;
  if (::timer_settime(timer, 0, &when, nullptr) != 0) _exit(2);
}

/// Changes the base until it is killed, and reports every change that is done with one byte.
[[noreturn]] void ChangeUntilKilled(const std::string& path, Work work, long life, int report) {
  KillMeAfter(life);
  try {
    DiskFileSystem files;
    const FixedClock clock(2002, 3, 15);
    jet::Database base = jet::Database::Open(files, path, jet::Access::kReadWrite);
    sql::Connection connection(base, clock);
    for (;;) {
      work.Step(&connection);
      if (::write(report, "+", 1) != 1) _exit(3);
    }
  } catch (const std::exception& error) {
    std::cerr << error.what() << std::endl;
    _exit(1);
  }
}

class Killed : public testing::Test {
 protected:
  Killed() { CreateMessageBase(files_, path_, {}, clock_); }

  /// @return how many changes the killed program reported
  int Round(const Work& work, long life) {
    int ends[2];
    if (::pipe(ends) != 0) throw std::runtime_error("no pipe");
    const pid_t child = ::fork();
    if (child == 0) ChangeUntilKilled(path_, work, life, ends[1]);
    ::close(ends[1]);
    int changes = 0;
    for (char byte; ::read(ends[0], &byte, 1) == 1;) ++changes;
    ::close(ends[0]);
    int status = 0;
    ::waitpid(child, &status, 0);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL) << status;
    return changes;
  }

  Messages Stored() {
    jet::Database base = jet::Database::Open(files_, path_, jet::Access::kReadWrite);
    NoProgress progress;
    for (const jet::Finding& finding : jet::Check(base, progress).findings) ADD_FAILURE() << finding.text;
    Messages messages;
    sql::Connection connection(base, clock_);
    sql::Recordset rows = connection.OpenSnapshot("SELECT Код, Текст FROM База"_ru);
    for (; !rows.Eof(); rows.MoveNext()) messages[rows.Int(0)] = rows.Text(1);
    return messages;
  }

  TempFolder folder_;
  DiskFileSystem files_;
  FixedClock clock_{2002, 3, 15};
  std::string path_ = folder_ / "kdv.mdb";
};

TEST_F(Killed, ABaseHoldsAllThatWasReportedAndNothingByHalves) {
  const char* const asked = std::getenv("FORUM_KILL_ROUNDS");
  const int rounds = asked == nullptr ? kRounds : std::atoi(asked);
  std::mt19937 random(1);
  Messages messages;
  int changes = 0, unreported = 0;
  for (int round = 0; round < rounds && !HasFailure(); ++round) {
    SCOPED_TRACE(round);
    Work work(static_cast<unsigned>(random()), messages);
    const int reported = Round(work, static_cast<long>(random() % kLongestLife) + 1);
    for (int i = 0; i < reported; ++i) work.Step(nullptr);
    Work one_more = work;  // it may have been stored, and the program killed before it could say so
    one_more.Step(nullptr);
    messages = Stored();
    const bool had_one_more = messages == one_more.messages();
    EXPECT_TRUE(had_one_more || messages == work.messages());
    changes += reported;
    unreported += had_one_more ? 1 : 0;
  }
  std::cout << rounds << " kills, " << changes << " changes reported, " << unreported << " stored but not reported\n";
  EXPECT_GT(changes, rounds);
}

}  // namespace
