#include "saved_pages/page_files.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <system_error>

#include "base/cat.h"
#include "base/cp1251.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "config/paths.h"
#include "store/message_record.h"

namespace page_files {
namespace {

namespace fs = std::filesystem;

constexpr std::uint64_t kLargestPage = 16 * 1024 * 1024;
constexpr std::string_view kAuthorMark = "_author";
// What the servers of forums and the programs that save pages put behind a name; two may follow each other.
constexpr std::string_view kExtensions[] = {".html", ".htm", ".shtml", ".asp", ".aspx", ".cgi", ".php", ".txt"};
constexpr std::string_view kNumberKeys[] = {"id", "number", "message", "msg", "post"};

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsWordCharacter(char c) { return IsDigit(c) || c == '_' || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

std::optional<std::int32_t> ToNumber(std::string_view digits) {
  std::int32_t number = 0;
  for (const char c : digits) {
    number = 10 * number + (c - '0');
    if (number > kLargestNumber) return std::nullopt;
  }
  if (number == 0) return std::nullopt;
  return number;
}

bool EndsWithIgnoringCase(std::string_view name, std::string_view end) {
  return name.size() >= end.size() && cp1251::EqualIgnoringCase(name.substr(name.size() - end.size()), end);
}

std::string_view WithoutExtension(std::string_view name) {
  for (const std::string_view extension : kExtensions)
    if (EndsWithIgnoringCase(name, extension)) return name.substr(0, name.size() - extension.size());
  return name;
}

bool IsNumberKey(std::string_view word) {
  // Browsers write "read.asp?id" as "read.asp_id".
  for (const std::string_view script : {"asp_", "cgi_", "php_"})
    if (cp1251::StartsWithIgnoringCase(word, script)) return IsNumberKey(word.substr(script.size()));
  return std::any_of(std::begin(kNumberKeys), std::end(kNumberKeys),
                     [word](std::string_view key) { return cp1251::EqualIgnoringCase(word, key); });
}

/// The digits behind the first "=" whose whole word before it is a key.
std::optional<std::int32_t> NumberBehindKey(std::string_view name) {
  for (std::size_t sign = name.find('='); sign != std::string_view::npos; sign = name.find('=', sign + 1)) {
    std::size_t key = sign, end = sign + 1;
    while (key > 0 && IsWordCharacter(name[key - 1])) --key;
    while (end < name.size() && IsDigit(name[end])) ++end;
    if (IsNumberKey(name.substr(key, sign - key))) return ToNumber(name.substr(sign + 1, end - sign - 1));
  }
  return std::nullopt;
}

std::optional<std::int32_t> NumberAtEnd(std::string_view stem) {
  std::size_t begin = stem.size();
  while (begin > 0 && IsDigit(stem[begin - 1])) --begin;
  if (begin > 0 && stem[begin - 1] == '%') return std::nullopt;  // the digits of "%20" are none of the number's
  return ToNumber(stem.substr(begin));
}

bool IsPageName(std::string_view name) {
  for (const std::string_view end : {".htm", ".html", ".shtml"})
    if (EndsWithIgnoringCase(name, end)) return true;
  const std::string folded = cp1251::Folded(name);
  return folded.find(".asp") != std::string::npos || folded.find(".cgi") != std::string::npos;
}

[[noreturn]] void ThrowUnreadable(const std::string& folder) {
  throw FileError(error_number::kNoAccess, Cat("Не удалось прочитать папку "_ru, cp1251::FromUtf8(folder)));
}

struct FolderContent {
  std::vector<std::string> pages, folders;
};

FolderContent ContentOf(const std::string& folder) {
  FolderContent content;
  std::error_code error, ignored;
  fs::directory_iterator entry(folder, error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    if (entry->is_directory(ignored)) {
      if (!entry->is_symlink(ignored)) content.folders.push_back(entry->path().string());
    } else if (IsPageName(entry->path().filename().string())) {
      content.pages.push_back(entry->path().string());
    }
  }
  if (error) ThrowUnreadable(folder);
  std::sort(content.pages.begin(), content.pages.end());
  std::sort(content.folders.begin(), content.folders.end());
  return content;
}

/// A list of the folders to come instead of a recursion: folders may lie as deep as the disk allows.
void Walk(const std::string& top, Trouble& trouble, std::vector<std::string>& pages) {
  std::vector<std::string> waiting{top};
  while (!waiting.empty()) {
    const std::string folder = std::move(waiting.back());
    waiting.pop_back();
    try {
      FolderContent content = ContentOf(folder);
      pages.insert(pages.end(), content.pages.begin(), content.pages.end());
      waiting.insert(waiting.end(), content.folders.rbegin(), content.folders.rend());
    } catch (const FileError& error) {
      trouble.Tell(folder, error.what());
    }
  }
}

}  // namespace

std::optional<std::int32_t> NumberOf(std::string_view path) {
  const std::string_view name = paths::FileName(path);
  if (name.find('=') != std::string_view::npos) return NumberBehindKey(name);
  return NumberAtEnd(WithoutExtension(WithoutExtension(name)));
}

std::string AuthorPagePath(std::string_view page_path) {
  const std::size_t stem = WithoutExtension(page_path).size();
  return Cat(page_path.substr(0, stem), kAuthorMark, page_path.substr(stem));
}

bool IsAuthorPage(std::string_view path) { return EndsWithIgnoringCase(WithoutExtension(path), kAuthorMark); }

std::string Read(FileSystem& files, const std::string& path) { return ReadWholeFile(files, path, kLargestPage); }

std::string ReadAuthorPageOf(FileSystem& files, std::string_view page_path) {
  const std::string path = AuthorPagePath(page_path);
  return files.Exists(path) ? Read(files, path) : std::string();
}

std::vector<std::string> Find(std::span<const std::string> files_and_folders, Trouble& trouble) {
  std::vector<std::string> pages;
  std::error_code ignored;
  for (const std::string& name : files_and_folders) {
    if (fs::is_directory(name, ignored)) {
      Walk(name, trouble, pages);
    } else {
      pages.push_back(name);
    }
  }
  return pages;
}

}  // namespace page_files
