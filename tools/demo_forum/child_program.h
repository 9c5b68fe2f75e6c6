#pragma once

#include <string>
#include <vector>

/// The programs that a server works for, and when it ends.
namespace child_program {

/// From now on SIGINT, SIGTERM and SIGCHLD wait until one of the calls below takes them. Called before any thread
/// starts.
void HoldSignals();

/// Returns at SIGINT or SIGTERM.
void WaitForEnd();

/// Runs a program and returns when it has ended: its exit status, 128 + the signal that killed it. SIGTERM is passed on
/// to it; SIGINT reaches it from the terminal.
/// @throws std::system_error when it cannot be started
int Run(const std::vector<std::string>& words);

}  // namespace child_program
