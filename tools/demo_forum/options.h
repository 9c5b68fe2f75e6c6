#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include "demo_forum/mischief.h"

/// How the server was called.
struct Options {
  std::uint16_t port = 0;
  std::size_t messages = 560, base_messages = 500;
  std::int32_t grow = 0;
  std::string program_folder;  // empty: none is made
  Mischief mischief;
  int every = 1;
  bool log = false, help = false;
  std::vector<std::string> command;  // empty: the server runs until it is told to stop
};

/// what() is UTF-8.
class UsageError : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// @throws UsageError
Options ReadOptions(std::span<const char* const> words);

/// UTF-8.
std::string Help();
