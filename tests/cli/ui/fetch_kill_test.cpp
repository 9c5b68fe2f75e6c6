// A download is killed at a random moment, again and again, and goes on from where it was. FORUM_KILL_ROUNDS
// tells how often; tools/kill_many.sh asks for more than the default.

#include <poll.h>

#include <atomic>
#include <iostream>
#include <random>
#include <set>

#include "cli/ui/fetch_stage.h"
#include "demo_forum/web_server.h"

namespace {

// Messages that wait are stored together, a few times a second.
constexpr int kRounds = 10, kMostLines = 30, kLongestGroup = 120;  // the last in milliseconds
constexpr int kPage = 2;                                           // milliseconds that the server takes for it

int Rounds() {
  const char* const asked = std::getenv("FORUM_KILL_ROUNDS");
  return asked == nullptr ? kRounds : std::atoi(asked);
}

class FetchKilled : public FetchStage {
 protected:
  /// @return the lines that say that a message is stored, whole ones only
  static void NoteStored(std::string_view lines, std::set<int>& stored) {
    for (std::size_t end = 0; (end = lines.find('\n')) != std::string_view::npos; lines.remove_prefix(end + 1))
      if (lines.substr(0, end).find(" записано: ") != std::string_view::npos)
        stored.insert(std::atoi(std::string(lines.substr(0, end)).c_str()));
  }
  /// Fetches on; killed after so many lines, anywhere in the time that one group takes.
  void Round(int lines, int milliseconds, std::set<int>& stored) {
    RunningProgram fetch(Words({"fetch", base_}));
    std::string out;
    for (int i = 0; i < lines; ++i) out += fetch.ReadLine() + '\n';
    ::poll(nullptr, 0, milliseconds);
    fetch.Send(SIGKILL);
    out += fetch.ReadRest();
    EXPECT_EQ(fetch.Wait(), -SIGKILL) << out;
    NoteStored(out, stored);
  }
  std::set<int> InBase() {
    std::set<int> numbers;
    const std::string out = Kdvbase({"sql", base_, "select Код from База", "--json"}).out;
    for (std::size_t at = 0; (at = out.find('[', at)) != std::string::npos; ++at)
      numbers.insert(std::atoi(out.c_str() + at + 1));
    return numbers;
  }

  std::string base_ = demo_folder::BasePath(program_, "kdv");
};

TEST_F(FetchKilled, NoMessageThatWasStoredIsLost) {
  const int rounds = Rounds();
  DemoSite site(static_cast<std::size_t>(rounds * (kMostLines + kLongestGroup) + 100), 0, clock_);
  std::atomic<bool> slow = true;
  const WebServer server(
      0, [&](std::string_view target) { return site.Get(target); },
      [&](std::string_view) {
        return slow ? Mischief{Mischief::Kind::kWait, kPage} : Mischief{};
      });
  demo_folder::Make(files_, program_, server.Address(), site, 5, clock_);
  const std::string expected = BaseWithPages(site, base_, "kdv");
  std::mt19937 random(1);
  std::set<int> stored;
  for (int round = 0; round < rounds && !HasFailure(); ++round) {
    SCOPED_TRACE(round);
    Round(static_cast<int>(random() % kMostLines), static_cast<int>(random() % kLongestGroup), stored);
    ExpectSound(base_);
    const std::set<int> in_base = InBase();
    for (const int number : stored) EXPECT_TRUE(in_base.contains(number)) << number;
  }
  std::cout << rounds << " kills, " << stored.size() << " messages told as stored, " << InBase().size()
            << " in the base\n";
  EXPECT_GT(stored.size(), static_cast<std::size_t>(rounds));
  slow = false;
  EXPECT_EQ(Kdvbase({"fetch", base_}).status, 0);
  ExpectSame(base_, expected);  // nothing by halves
}

}  // namespace
