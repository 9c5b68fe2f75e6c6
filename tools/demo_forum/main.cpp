#include <atomic>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <mutex>

#include "base/clock.h"
#include "base/cp1251.h"
#include "base/error.h"
#include "base/file.h"
#include "demo_forum/child_program.h"
#include "demo_forum/demo_folder.h"
#include "demo_forum/demo_site.h"
#include "demo_forum/options.h"
#include "demo_forum/web_server.h"

namespace {

constexpr int kDone = 0, kFailed = 1, kMisused = 2;

/// What the answers of the whole server suffer.
class EveryNth {
 public:
  EveryNth(Mischief mischief, int every) : mischief_(mischief), every_(every) {}
  Mischief Next() { return ++answers_ % every_ == 0 ? mischief_ : Mischief{}; }

 private:
  const Mischief mischief_;
  const int every_;
  std::atomic<int> answers_ = 0;
};

void Print(std::string_view target) {
  static std::mutex one_at_a_time;
  const std::lock_guard guard(one_at_a_time);
  std::cerr << target << std::endl;
}

// The command must reach this server past whatever proxy the user has.
void TellCommand(const std::string& address, const std::string& program_folder) {
  ::setenv("DEMO_FORUM", address.c_str(), 1);
  for (const char* variable : {"no_proxy", "NO_PROXY"}) ::setenv(variable, "127.0.0.1", 1);
  if (!program_folder.empty()) ::setenv("QUORVEX_DIR", program_folder.c_str(), 1);
}

int Run(const Options& options) {
  child_program::HoldSignals();
  DiskFileSystem files;
  const SystemClock clock;
  DemoSite site(options.messages, options.grow, clock);
  EveryNth mischief(options.mischief, options.every);
  const WebServer server(
      options.port,
      [&](std::string_view target) {
        if (options.log) Print(target);
        return site.Get(target);
      },
      [&](std::string_view) { return mischief.Next(); });
  const std::string address = server.Address();
  if (!options.program_folder.empty())
    demo_folder::Make(files, options.program_folder, address, site, options.base_messages, clock);
  std::cout << "http://" << address << '/' << std::endl;
  if (options.command.empty()) {
    child_program::WaitForEnd();
    return kDone;
  }
  TellCommand(address, options.program_folder);
  return child_program::Run(options.command);
}

}  // namespace

int main(int count, char** words) try {
  const Options options = ReadOptions({words + 1, static_cast<std::size_t>(count - 1)});
  if (!options.help) return Run(options);
  std::cout << Help();
  return kDone;
} catch (const UsageError& error) {
  std::cerr << "demo_forum: " << error.what() << "\ndemo_forum --help покажет, как вызывать программу\n";
  return kMisused;
} catch (const Error& error) {
  std::cerr << "demo_forum: " << cp1251::ToUtf8(error.what()) << '\n';
  return kFailed;
} catch (const std::exception& error) {
  std::cerr << "demo_forum: " << error.what() << '\n';
  return kFailed;
}
