// A download session over 2,000 small pages, every message on the disk when it ends, against curl, which fetches the
// same pages over one kept connection and drops them; in turns, from the same server. The folder of the base is
// FORUM_BENCH_FOLDER, else the current one: one in memory would measure nothing.

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QCoreApplication>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "base/cat.h"
#include "cli/fetch_view.h"
#include "demo_forum/demo_folder.h"
#include "demo_forum/web_server.h"
#include "download/ui/http_fetcher.h"
#include "download/ui/qt_alarm.h"
#include "download_fixed/fixed_session.h"
#include "store/base_recordset.h"
#include "store/new_base.h"

namespace {

constexpr std::int32_t kPages = 2000;
constexpr int kRounds = 5;
constexpr std::string_view kKind = "kdv";

class Stopwatch {
 public:
  template <typename Action>
  auto Time(Action action) {
    struct Adder {
      std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();
      double& sum;
      ~Adder() { sum += std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(); }
    } const adder{.sum = seconds};
    return action();
  }
  double seconds = 0;
};

/// The event loop is the bench's own.
class BenchNetwork : public cli::Network {
 public:
  explicit BenchNetwork(PageFetcher& fetcher) : fetcher_(fetcher) {}
  PageFetcher& pages() override { return fetcher_; }
  Alarm& alarm() override { return alarm_; }
  void RunEvents() override { QCoreApplication::processEvents(); }

 private:
  PageFetcher& fetcher_;
  QtAlarm alarm_;
};

class TimedFetcher : public PageFetcher {
 public:
  std::string OpenUrl(std::string_view url, std::int32_t timeout) override {
    return watch.Time([&] { return fetcher_.OpenUrl(url, timeout); });
  }
  void Cancel() override {}
  void OnStateChanged(StateChanged) override {}
  Stopwatch watch;

 private:
  HttpFetcher fetcher_;
};

class TimedRecords : public BatchedRecordset {
 public:
  explicit TimedRecords(MessageBase& base) : records_(base) {}
  std::int32_t GetFirst(std::int32_t when_empty) override {
    return watch.Time([&] { return records_.GetFirst(when_empty); });
  }
  bool msgExist(std::int32_t number) override {
    return watch.Time([&] { return records_.msgExist(number); });
  }
  void AddNew() override { records_.AddNew(); }
  void SetText(std::string_view field, std::string_view text) override { records_.SetText(field, text); }
  void SetNumber(std::string_view field, std::int32_t number) override { records_.SetNumber(field, number); }
  void SetDate(std::string_view field, OleDate date) override { records_.SetDate(field, date); }
  void Update() override {
    watch.Time([&] { records_.Update(); });
  }
  void Cancel() override { records_.Cancel(); }
  void BeginBatch() override { records_.BeginBatch(); }
  void CommitBatch() override {
    ++commits;
    watch.Time([&] { records_.CommitBatch(); });
  }
  void DropBatch() override { records_.DropBatch(); }
  Stopwatch watch;
  int commits = 0;

 private:
  BaseRecordset records_;
};

/// One run, in seconds.
struct Split {
  double all = 0, network = 0, store = 0;
  int stored = 0, commits = 0;
};

Split Session(const std::string& folder, const mdl_AZ::ForumIni& ini, FileSystem& files, const Clock& clock) {
  const std::string path = folder + "/kdv_bench.mdb";
  std::filesystem::remove(path);
  CreateMessageBase(files, path, {}, clock);
  MessageBase base(files, clock, ini);
  base.OpenBase(path);
  std::ofstream nowhere("/dev/null");
  const mdl_AZ::ForumLog log(ini, files, clock);
  Stopwatch all;
  Split split;
  all.Time([&] {
    TimedFetcher fetcher;
    TimedRecords rows(base);
    const cli::Interrupt interrupt;
    BenchNetwork network(fetcher);
    cli::FetchView view(nowhere, false, rows, network, interrupt);
    GroupedRecords records(rows, network.alarm(), [&view](const SettledRows& settled) { view.Settle(settled); });
    FixedSession session({records, fetcher, view, ini, log, clock, {}});
    session.cmdDownload_Click(kKind, {.automatic = false, .begin = "1", .end = Cat(kPages)});
    split = {.network = fetcher.watch.seconds,
             .store = rows.watch.seconds,
             .stored = view.totals().stored,
             .commits = rows.commits};
  });
  split.all = all.seconds;
  std::filesystem::remove(path);
  return split;
}

/// What the disk alone needs to make as many small changes durable, one after another.
double Syncs(const std::string& folder, int count) {
  const std::string path = folder + "/syncs";
  const int file = ::open(path.c_str(), O_RDWR | O_CREAT, 0600);
  const std::string page(4096, 'x');
  const auto write = [&] { return ::pwrite(file, page.data(), page.size(), 0) == 4096 && ::fdatasync(file) == 0; };
  Stopwatch watch;
  bool done = write();
  watch.Time([&] {
    for (int i = 0; i < count; ++i) done = write() && done;
  });
  ::close(file);
  std::filesystem::remove(path);
  if (!done) throw std::runtime_error("the disk fails");
  return watch.seconds;
}

double Curl(const std::string& folder, const std::string& address) {
  const std::string config = folder + "/fetch_bench.curl";
  {
    std::ofstream file(config);
    for (std::int32_t number = 1; number <= kPages; ++number)
      file << "url = \"http://" << address << '/' << kKind << "/messages/" << number << ".html\"\noutput = /dev/null\n";
  }
  std::string words[] = {"curl", "-s", "--noproxy", "*", "--config", config};
  char* arguments[std::size(words) + 1] = {};
  std::transform(std::begin(words), std::end(words), arguments, [](std::string& word) { return word.data(); });
  Stopwatch watch;
  watch.Time([&] {
    pid_t child = 0;
    int status = 0;
    if (::posix_spawnp(&child, "curl", nullptr, nullptr, arguments, environ) != 0) throw std::runtime_error("no curl");
    if (::waitpid(child, &status, 0) != child || status != 0) throw std::runtime_error("curl failed");
  });
  std::filesystem::remove(config);
  return watch.seconds;
}

}  // namespace

int main(int count, char** words) {
  ::setenv("no_proxy", "127.0.0.1", 1);
  const QCoreApplication application(count, words);
  const char* const asked = std::getenv("FORUM_BENCH_FOLDER");
  const std::string folder = std::string(asked == nullptr ? "." : asked) + "/fetch_bench_files";
  DiskFileSystem files;
  const SystemClock clock;
  DemoSite site(kPages, 0, clock);
  const WebServer server(
      0, [&](std::string_view target) { return site.Get(target); }, [](std::string_view) { return Mischief{}; });
  demo_folder::Make(files, folder, server.Address(), site, 0, clock);
  const mdl_AZ::ForumIni ini(files, folder);
  ::sleep(3);  // a session lasts longer than forum.ini needs to be trusted not to change unseen
  double best_curl = 1e9;
  Split best{.all = 1e9};
  for (int round = 0; round < kRounds; ++round) {
    best_curl = std::min(best_curl, Curl(folder, server.Address()));
    const Split split = Session(folder, ini, files, clock);
    if (split.all < best.all) best = split;
  }
  const double syncs = Syncs(folder, best.stored);
  std::filesystem::remove_all(folder);
  std::printf("%d pages, %d messages; best of %d\n", kPages, best.stored, kRounds);
  std::printf("curl      %.3f s\nsession   %.3f s = %.2f x curl\n", best_curl, best.all, best.all / best_curl);
  std::printf("  network %.3f s\n  store   %.3f s, %d commits; as many 4 KiB writes as messages, each synced: %.3f s\n",
              best.network, best.store, best.commits, syncs);
  const double rest = best.all - best.network - best.store;
  std::printf("  the rest (parse, texts, log) %.3f s\nwithout the store %.2f x curl\n", rest,
              (best.network + rest) / best_curl);
}
