#include "demo_forum/child_program.h"

#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <system_error>

namespace child_program {
namespace {

sigset_t Signals() {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int signal : {SIGINT, SIGTERM, SIGCHLD}) sigaddset(&signals, signal);
  return signals;
}

int NextSignal() {
  const sigset_t signals = Signals();
  int signal = 0;
  while (sigwait(&signals, &signal) != 0) continue;
  return signal;
}

pid_t Start(const std::vector<std::string>& words) {
  std::vector<char*> arguments;
  for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  sigset_t none;
  sigemptyset(&none);
  posix_spawnattr_setsigmask(&attributes, &none);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK);
  pid_t child = 0;
  const int failure = ::posix_spawnp(&child, arguments[0], nullptr, &attributes, arguments.data(), environ);
  posix_spawnattr_destroy(&attributes);
  if (failure != 0) throw std::system_error(failure, std::generic_category(), words[0]);
  return child;
}

}  // namespace

void HoldSignals() {
  const sigset_t signals = Signals();
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

void WaitForEnd() {
  while (NextSignal() == SIGCHLD) continue;
}

int Run(const std::vector<std::string>& words) {
  constexpr int kKilled = 128;
  const pid_t child = Start(words);
  for (;;) {
    const int signal = NextSignal();
    if (signal == SIGTERM) ::kill(child, SIGTERM);
    int status = 0;
    if (signal != SIGCHLD || ::waitpid(child, &status, WNOHANG) != child) continue;
    if (WIFEXITED(status)) return WEXITSTATUS(status);
    if (WIFSIGNALED(status)) return kKilled + WTERMSIG(status);
  }
}

}  // namespace child_program
