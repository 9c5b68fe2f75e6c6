#pragma once

#include <array>
#include <cstdio>
#include <cstdlib>
#include <string>

/// An independent reader of bases, as a judge of ours.
namespace mdbtools {

inline bool AreInstalled() { return std::system("command -v mdb-count mdb-export >/dev/null 2>&1") == 0; }

/// What one of its programs prints, "failed: " before it when the program says that it failed. Locale and code page are
/// set, whatever the machine's are.
inline std::string Output(const std::string& command) {
  std::FILE* const pipe = ::popen(("LC_ALL=C.UTF-8 MDB_JET3_CHARSET=cp1251 " + command).c_str(), "r");
  if (pipe == nullptr) return "failed: " + command;
  std::string output;
  std::array<char, 65536> part;
  while (const std::size_t size = std::fread(part.data(), 1, part.size(), pipe)) output.append(part.data(), size);
  return ::pclose(pipe) == 0 ? output : "failed: " + output;
}

}  // namespace mdbtools
