#pragma once

#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

/// A program that a test starts, with its standard output in a pipe. It does not outlive the test.
class RunningProgram {
 public:
  /// @throws std::runtime_error when it cannot be started
  explicit RunningProgram(std::vector<std::string> words) {
    int ends[2];
    if (::pipe(ends) != 0) throw std::runtime_error("no pipe");
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    for (const int end : ends) posix_spawn_file_actions_addclose(&actions, end);
    std::vector<char*> arguments;
    for (std::string& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    const int failure = ::posix_spawnp(&pid_, arguments[0], &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    ::close(ends[1]);
    out_ = ends[0];
    if (failure != 0) throw std::runtime_error("cannot start " + words[0]);
  }
  ~RunningProgram() {
    Send(SIGKILL);
    Wait();
    ::close(out_);
  }
  RunningProgram(const RunningProgram&) = delete;
  RunningProgram& operator=(const RunningProgram&) = delete;

  void Send(int signal) const {
    if (pid_ > 0) ::kill(pid_, signal);
  }
  /// Without its line break; empty at the end of the output.
  std::string ReadLine() {
    std::string line;
    for (char byte = 0; ::read(out_, &byte, 1) == 1 && byte != '\n';) line += byte;
    return line;
  }
  /// What it still prints; returns when it closes its output.
  std::string ReadRest() {
    std::string rest;
    char piece[4096];
    for (ssize_t count = 0; (count = ::read(out_, piece, sizeof piece)) > 0;)
      rest.append(piece, static_cast<std::size_t>(count));
    return rest;
  }
  /// @return the exit status; minus the signal that killed it
  int Wait() {
    if (pid_ > 0) ::waitpid(std::exchange(pid_, 0), &status_, 0);
    return WIFSIGNALED(status_) ? -WTERMSIG(status_) : WEXITSTATUS(status_);
  }

 private:
  pid_t pid_ = 0;
  int out_ = -1, status_ = 0;
};
