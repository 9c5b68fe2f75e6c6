#pragma once

#include <cstdint>
#include <string>

#include "base/file.h"
#include "jet/create.h"

struct ArchiveOptions {
  jet::NewBase kind;
  std::uint32_t messages = 10'000;
  std::uint32_t seed = 1;
  std::uint32_t longest = 3'000;  // characters of a message's text, all but a few
};

/// Makes a base of made-up messages, the same for the same options.
/// @throws FileError 75 when there is a file of that name
void MakeArchive(FileSystem& files, const std::string& path, const ArchiveOptions& options);
