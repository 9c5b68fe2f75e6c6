// A program that loads messages, deletes them or compacts their base is killed at a random moment, again and
// again. FORUM_KILL_ROUNDS tells how often in each case, tools/kill_many.sh asks for more than the default.

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <cstdlib>
#include <iostream>
#include <iterator>
#include <map>
#include <optional>
#include <random>
#include <stdexcept>
#include <string>
#include <utility>

#include "base/cat.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "jet/check.h"
#include "jet/compact.h"
#include "sql/connection.h"
#include "sql/transaction.h"
#include "store/new_base.h"
#include "support/fixed_clock.h"
#include "support/temp_folder.h"

namespace {

using Messages = std::map<std::int32_t, std::string>;  // the texts by number

constexpr int kRounds = 17;                                 // of each kind
constexpr long kLongestLife = 120'000'000;                  // nanoseconds
constexpr long kLongestCompactingLife = 10 * kLongestLife;  // a change takes that much longer

enum class Kind { kLoading, kDeleting, kCompacting };

/// The base as the killed program has it open: for statements, or closed while it is compacted.
struct OpenBase {
  explicit OpenBase(std::string base_path) : path(std::move(base_path)) {}

  sql::Connection& connection() {
    if (!connection_) {
      database_.emplace(jet::Database::Open(files, path, jet::Access::kReadWrite));
      connection_.emplace(*database_, clock);
    }
    return *connection_;
  }

  DiskFileSystem files;
  FixedClock clock{2002, 3, 15};
  std::string path;

 private:
  std::optional<jet::Database> database_;
  std::optional<sql::Connection> connection_;
};

/// What the program does in one round: the same for the same seed and messages.
class Work {
 public:
  Work(Kind kind, unsigned seed, Messages messages) : kind_(kind), random_(seed), messages_(std::move(messages)) {}

  const Messages& messages() const { return messages_; }

  /// Decides upon the next change, makes it here and, when there is one, in the base.
  void Step(OpenBase* base) {
    if (kind_ == Kind::kCompacting) return Compact(base);
    const unsigned deletions = kind_ == Kind::kDeleting ? 9 : 2;  // out of ten changes
    if (messages_.size() > 3 && random_() % 10 < deletions)
      return random_() % 8 == 0 ? DeleteMany(base) : DeleteOne(base);
    Add(base);
  }

 private:
  std::int32_t Number() { return static_cast<std::int32_t>(random_() % 100'000); }

  static void Compact(OpenBase* base) {
    NoProgress progress;
    if (base != nullptr) jet::Compact(base->files, base->path, {}, progress);
  }

  void Add(OpenBase* base) {
    std::int32_t number = Number();
    while (messages_.contains(number)) ++number;
    const std::string text(random_() % 3 == 0 ? random_() % 9000 : random_() % 300,
                           static_cast<char>('a' + random_() % 26));
    messages_[number] = text;
    if (base == nullptr) return;
    sql::Recordset rows = base->connection().OpenDynaset("БазаЗапрос"_ru);
    rows.AddNew();
    rows.Set("Текст"_ru, text);
    rows.Set("Код"_ru, number);
    rows.Update();
  }

  void DeleteOne(OpenBase* base) {
    auto doomed = messages_.lower_bound(Number());
    if (doomed == messages_.end()) doomed = messages_.begin();
    if (base != nullptr) base->connection().Execute(Cat("DELETE * FROM База WHERE Код="_ru, doomed->first));
    messages_.erase(doomed);
  }

  void DeleteMany(OpenBase* base) {
    const std::int32_t end = std::next(messages_.begin(), static_cast<int>(random_() % 4))->first;
    if (base != nullptr) base->connection().Execute(Cat("DELETE * FROM База WHERE Код<"_ru, end));
    messages_.erase(messages_.begin(), messages_.lower_bound(end));
  }

  Kind kind_;
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
  constexpr long kASecond = 1'000'000'000;
  when.it_value.tv_sec = nanoseconds / kASecond;
  when.it_value.tv_nsec = nanoseconds % kASecond;
  if (::timer_settime(timer, 0, &when, nullptr) != 0) _exit(2);
}

/// Changes the base until it is killed, and reports every change that is done with one byte.
[[noreturn]] void ChangeUntilKilled(const std::string& path, Work work, long life, int report) {
  KillMeAfter(life);
  try {
    OpenBase base(path);
    for (;;) {
      work.Step(&base);
      if (::write(report, "+", 1) != 1) _exit(3);
    }
  } catch (const std::exception& error) {
    std::cerr << error.what() << std::endl;
    _exit(1);
  }
}

class Killed : public testing::TestWithParam<Kind> {
 protected:
  Killed() { CreateMessageBase(files_, path_, {}, clock_); }

  /// Adds messages when there are few, so that there is something to delete and to copy.
  void Refill(Messages& messages, unsigned seed) {
    constexpr std::size_t kFew = 60, kEnough = 200;
    if (GetParam() == Kind::kLoading || messages.size() > kFew) return;
    Work filling(Kind::kLoading, seed, std::move(messages));
    OpenBase base(path_);
    sql::Transaction transaction(base.connection());
    while (filling.messages().size() < kEnough) filling.Step(&base);
    transaction.Commit();
    messages = filling.messages();
  }

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

std::string NameOf(Kind kind) {
  if (kind == Kind::kLoading) return "Loads";
  return kind == Kind::kDeleting ? "Deletes" : "Compacts";
}

INSTANTIATE_TEST_SUITE_P(WhileIt, Killed, testing::Values(Kind::kLoading, Kind::kDeleting, Kind::kCompacting),
                         [](const auto& kind) { return NameOf(kind.param); });

TEST_P(Killed, ABaseHoldsAllThatWasReportedAndNothingByHalves) {
  const char* const asked = std::getenv("FORUM_KILL_ROUNDS");
  const int rounds = asked == nullptr ? kRounds : std::atoi(asked);
  const auto longest =
      static_cast<unsigned long>(GetParam() == Kind::kCompacting ? kLongestCompactingLife : kLongestLife);
  std::mt19937 random(1);
  Messages messages;
  int changes = 0, unreported = 0;
  for (int round = 0; round < rounds && !HasFailure(); ++round) {
    SCOPED_TRACE(round);
    Refill(messages, static_cast<unsigned>(random()));
    Work work(GetParam(), static_cast<unsigned>(random()), messages);
    const int reported = Round(work, static_cast<long>(random() % longest) + 1);
    for (int i = 0; i < reported; ++i) work.Step(nullptr);
    Work one_more = work;  // it may have been stored, and the program killed before it could say so
    one_more.Step(nullptr);
    messages = Stored();
    const bool had_one_more = messages == one_more.messages();
    EXPECT_TRUE(had_one_more || messages == work.messages());
    changes += reported;
    unreported += had_one_more && one_more.messages() != work.messages() ? 1 : 0;
  }
  std::cout << rounds << " kills, " << changes << " changes reported, " << unreported << " stored but not reported\n";
  EXPECT_GT(changes, 0);
}

}  // namespace
