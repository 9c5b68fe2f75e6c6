#include <charconv>
#include <exception>
#include <iostream>
#include <optional>
#include <string>
#include <string_view>

#include "base/cp1251.h"
#include "base/error.h"
#include "base/file.h"
#include "make_archive/make_archive.h"

namespace {

constexpr int kDone = 0, kFailed = 1, kMisused = 2;

struct Words {
  ArchiveOptions options;
  std::string path;
};

bool ReadNumber(std::string_view word, std::uint32_t& number) {
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
  return error == std::errc() && end == word.data() + word.size();
}

/// @return where the number behind this word goes; nullptr when there comes none
std::uint32_t* NumberFor(std::string_view word, ArchiveOptions& options) {
  if (word == "--messages") return &options.messages;
  if (word == "--seed") return &options.seed;
  if (word == "--longest") return &options.longest;
  return nullptr;
}

std::optional<Words> ReadWords(int count, char** given) {
  Words words;
  for (int i = 1; i < count; ++i) {
    const std::string_view word = given[i];
    const std::string_view value = i + 1 < count ? given[i + 1] : "";
    if (word == "--jet4") {
      words.options.kind.version = jet::Version::kJet4;
    } else if (std::uint32_t* const number = NumberFor(word, words.options)) {
      if (!ReadNumber(value, *number)) return std::nullopt;
      ++i;
    } else if (word.starts_with("--") || !words.path.empty()) {
      return std::nullopt;
    } else {
      words.path = word;
    }
  }
  return words.path.empty() ? std::nullopt : std::optional(words);
}

}  // namespace

int main(int count, char** given) try {
  const std::optional<Words> words = ReadWords(count, given);
  if (!words) {
    std::cerr << "make_archive [--jet4] [--messages ЧИСЛО] [--seed ЧИСЛО] [--longest ЗНАКОВ] БАЗА\n";
    return kMisused;
  }
  DiskFileSystem files;
  MakeArchive(files, words->path, words->options);
  return kDone;
} catch (const Error& error) {
  std::cerr << "make_archive: " << cp1251::ToUtf8(error.what()) << '\n';
  return kFailed;
} catch (const std::exception& error) {
  std::cerr << "make_archive: " << error.what() << '\n';
  return kFailed;
}
