#include "config/paths.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <optional>
#include <system_error>
#include <tuple>

#include "base/cp1251.h"

namespace paths {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kSeparators = "/\\";

bool Exists(const std::string& path) {
  std::error_code ignored;
  return fs::exists(path, ignored);
}

/// Lower-cases a name without losing what Windows-1251 lacks: of such a name only the ASCII letters fold.
std::string FoldedName(std::string_view name) {
  const std::string text = cp1251::FromUtf8(name);
  if (cp1251::ToUtf8(text) == name) return cp1251::ToUtf8(cp1251::Folded(text));
  std::string folded(name);
  for (char& c : folded)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return folded;
}

template <typename Wanted>
std::vector<std::string> NamesIn(const std::string& folder, Wanted wanted) {
  std::vector<std::string> names;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error); !error && entry != fs::directory_iterator(); entry.increment(error))
    if (wanted(*entry)) names.push_back(entry->path().filename().string());
  std::sort(names.begin(), names.end(), [](const std::string& a, const std::string& b) {
    return std::tuple(FoldedName(a), a) < std::tuple(FoldedName(b), b);
  });
  return names;
}

/// The name in `folder` that equals `name` but for letter case; the first when there are several.
std::optional<std::string> FindIgnoringCase(const std::string& folder, std::string_view name) {
  const std::string folded = FoldedName(name);
  auto names = NamesIn(folder.empty() ? "." : folder, [&](const fs::directory_entry& e) {
    return FoldedName(e.path().filename().string()) == folded;
  });
  if (names.empty()) return std::nullopt;
  return std::move(names.front());
}

}  // namespace

std::string WithSlashes(std::string_view path) {
  std::string result;
  for (const char c : path) {
    const bool separator = kSeparators.find(c) != std::string_view::npos;
    if (!separator) result += c;
    if (separator && !result.ends_with('/')) result += '/';
  }
  return result;
}

std::string Join(std::string_view folder, std::string_view name) {
  std::string joined(folder);
  if (!joined.empty() && kSeparators.find(joined.back()) == std::string_view::npos) joined += '/';
  return joined.append(name);
}

std::string_view FileName(std::string_view path) { return path.substr(path.find_last_of(kSeparators) + 1); }

std::string_view FolderOf(std::string_view path) {
  const std::size_t separator = path.find_last_of(kSeparators);
  if (separator == std::string_view::npos) return {};
  return path.substr(0, std::max<std::size_t>(separator, 1));
}

std::string Resolve(const std::string& path) {
  if (Exists(path)) return path;
  const std::string slashed = WithSlashes(path);
  if (Exists(slashed)) return slashed;
  std::string found = slashed.starts_with('/') ? "/" : "";
  for (std::size_t begin = found.size(); begin < slashed.size();) {
    const std::size_t end = std::min(slashed.find('/', begin), slashed.size());
    const std::string name = slashed.substr(begin, end - begin);
    if (const std::string exact = Join(found, name); Exists(exact)) {
      found = exact;
    } else if (const auto spelling = FindIgnoringCase(found, name)) {
      found = Join(found, *spelling);
    } else {
      return slashed;
    }
    begin = end + 1;
  }
  return found.empty() ? slashed : found;
}

std::vector<std::string> PlainFiles(const std::string& folder) {
  return NamesIn(folder, [](const fs::directory_entry& entry) {
    std::error_code ignored;
    return entry.is_regular_file(ignored) && !entry.path().filename().string().starts_with('.');
  });
}

std::string ShownName(std::string_view file_name) { return cp1251::Folded(cp1251::FromUtf8(file_name)); }

}  // namespace paths
