// The search for a word as the window does it, letter case ignored, against grep -c on the same file, which
// tells upper from lower case. Bases are the arguments. Both are timed in turns, and the best of several
// runs counts: the file is in the cache then. The ratio is told for the word that no message holds: behind a hit
// grep skips the rest of its line, which in such a file is long.

#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <functional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "base/clock.h"
#include "base/cp1251.h"
#include "base/progress.h"
#include "base/ru_literal.h"
#include "explorer/search.h"
#include "store/message_base.h"

namespace {

constexpr int kRuns = 9;

// One that no message holds, one of many messages, and one that all hold in one letter case or another.
constexpr std::string_view kWords[] = {"нетакогослова"_ru, "щека"_ru, "ю"_ru};

/// Milliseconds by the clock, and of the processor, which says more where other programs run too.
struct Times {
  double wall = 1e9, processor = 1e9;
};

double ProcessorTime(int whose) {
  rusage used{};
  ::getrusage(whose, &used);
  const auto milliseconds = [](const timeval& time) {
    return 1e3 * static_cast<double>(time.tv_sec) + 1e-3 * static_cast<double>(time.tv_usec);
  };
  return milliseconds(used.ru_utime) + milliseconds(used.ru_stime);
}

/// @param whose  RUSAGE_SELF, or RUSAGE_CHILDREN for a program that `run` waits for
void Time(int whose, Times& best, const std::function<void()>& run) {
  const double before = ProcessorTime(whose);
  const auto start = std::chrono::steady_clock::now();
  run();
  const std::chrono::duration<double, std::milli> wall = std::chrono::steady_clock::now() - start;
  best = {std::min(best.wall, wall.count()), std::min(best.processor, ProcessorTime(whose) - before)};
}

class CountingView : public SearchView {
 public:
  void SetStatus(std::string_view) override {}
  void ClearResults() override { found = 0; }
  void ShowResults(std::span<const FoundMessage> messages) override { found = messages.size(); }
  std::size_t found = 0;
};

/// The bytes by which the base stores a word that is not compressed.
std::string StoredForm(std::string_view word, jet::Version version) {
  if (version == jet::Version::kJet3) return std::string(word);
  std::string bytes;
  for (const char byte : cp1251::ToUtf16(word)) {
    char code[8];
    std::snprintf(code, sizeof code, "\\x%02X", static_cast<unsigned>(static_cast<unsigned char>(byte)));
    bytes += code;
  }
  return bytes;
}

/// Runs grep -c and waits for it. Its output must not be /dev/null: grep would stop at the first hit.
void Grep(const std::string& pattern, const std::string& path, bool by_code) {
  std::vector<std::string> words = {"grep", "-a", by_code ? "-cP" : "-cF", "-e", pattern, path};
  std::vector<char*> arguments;
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  std::string locale = "LC_ALL=C", folders = std::string("PATH=") + std::getenv("PATH");
  char* environment[] = {locale.data(), folders.data(), nullptr};
  int ends[2];
  if (::pipe(ends) != 0) throw std::runtime_error("no pipe");
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
  pid_t child = 0;
  const bool started = posix_spawnp(&child, "grep", &actions, nullptr, arguments.data(), environment) == 0;
  posix_spawn_file_actions_destroy(&actions);
  ::close(ends[1]);
  for (char count[64]; ::read(ends[0], count, sizeof count) > 0;) {
  }
  ::close(ends[0]);
  int status = 0;
  constexpr int kLeastFailure = 2;  // 1 = no hit
  if (!started || ::waitpid(child, &status, 0) != child || !WIFEXITED(status) || WEXITSTATUS(status) >= kLeastFailure)
    throw std::runtime_error("grep failed");
}

void Measure(const std::string& path) {
  DiskFileSystem files;
  const SystemClock clock;
  const mdl_AZ::ForumIni ini(files, "");
  MessageBase base(files, clock, ini);
  base.OpenBase(path);
  NoProgress progress;
  CountingView view;
  const jet::Version version = base.database().version();
  std::printf("%s\n", path.c_str());
  for (const std::string_view word : kWords) {
    const std::string pattern = StoredForm(word, version);
    Times ours, peer;
    for (int run = 0; run < kRuns; ++run) {
      Time(RUSAGE_SELF, ours, [&] { Search(base, word, progress, view); });
      Time(RUSAGE_CHILDREN, peer, [&] { Grep(pattern, path, version != jet::Version::kJet3); });
    }
    std::printf("  %-14s %7zu found %7.1f ms, processor %6.1f ms", cp1251::ToUtf8(word).c_str(), view.found, ours.wall,
                ours.processor);
    if (view.found == 0)
      std::printf("   grep -c %7.1f, %6.1f ms   ratio %.2f, %.2f", peer.wall, peer.processor, ours.wall / peer.wall,
                  ours.processor / peer.processor);
    std::printf("\n");
  }
}

}  // namespace

int main(int count, char** arguments) try {
  for (int i = 1; i < count; ++i) Measure(arguments[i]);
  return count > 1 ? 0 : 2;
} catch (const std::exception& error) {
  std::fprintf(stderr, "%s\n", cp1251::ToUtf8(error.what()).c_str());
  return 1;
}
