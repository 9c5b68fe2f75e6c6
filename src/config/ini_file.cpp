#include "config/ini_file.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "base/cat.h"
#include "base/cp1251.h"
#include "base/error.h"
#include "config/paths.h"

namespace mdl_AZ {
namespace {

constexpr std::uint64_t kLargestFile = 64 * 1024;  // what the old platform could read
constexpr std::size_t kLongestValue = 254;         // a buffer of 255 with its closing NUL
constexpr std::string_view kWhiteSpace = " \t\r";
constexpr std::string_view kLineEnd = "\r\n";

struct Line {
  std::size_t begin, end;  // with its line end
  std::string_view text;   // without it and without outer white space
};

/// The lines that belong to a section: those behind its header, up to the next header.
struct Section {
  std::size_t first, last;  // `last` is behind the last line
};

struct KeyAndValue {
  std::string_view key, value;
};

std::string_view Stripped(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kWhiteSpace);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kWhiteSpace) - first + 1);
}

std::vector<Line> LinesOf(std::string_view content) {
  std::vector<Line> lines;
  for (std::size_t begin = 0; begin < content.size();) {
    const std::size_t feed = content.find('\n', begin);
    const std::size_t end = feed == std::string_view::npos ? content.size() : feed + 1;
    const std::size_t length = feed == std::string_view::npos ? end - begin : feed - begin;
    lines.push_back({begin, end, Stripped(content.substr(begin, length))});
    begin = end;
  }
  return lines;
}

std::optional<std::string_view> HeaderName(std::string_view line) {
  if (!line.starts_with('[')) return std::nullopt;
  const std::size_t close = line.rfind(']');
  if (close == std::string_view::npos) return std::nullopt;
  return line.substr(1, close - 1);
}

std::optional<KeyAndValue> ParseKey(std::string_view line) {
  const std::size_t equals = line.find('=');
  if (line.starts_with(';') || equals == std::string_view::npos) return std::nullopt;
  return KeyAndValue{Stripped(line.substr(0, equals)), Stripped(line.substr(equals + 1))};
}

std::optional<Section> FindSection(const std::vector<Line>& lines, std::string_view name) {
  const auto is_wanted = [name](const Line& line) {
    const auto header = HeaderName(line.text);
    return header && cp1251::EqualIgnoringCase(*header, name);
  };
  const auto header = std::find_if(lines.begin(), lines.end(), is_wanted);
  if (header == lines.end()) return std::nullopt;
  const auto next =
      std::find_if(header + 1, lines.end(), [](const Line& line) { return HeaderName(line.text).has_value(); });
  return Section{static_cast<std::size_t>(header + 1 - lines.begin()), static_cast<std::size_t>(next - lines.begin())};
}

/// The number of the key's line.
std::optional<std::size_t> FindKey(const std::vector<Line>& lines, Section section, std::string_view key) {
  for (std::size_t i = section.first; i < section.last; ++i) {
    const auto line = ParseKey(lines[i].text);
    if (line && cp1251::EqualIgnoringCase(line->key, key)) return i;
  }
  return std::nullopt;
}

std::string_view WithoutQuotes(std::string_view value) {
  const bool quoted =
      value.size() >= 2 && value.front() == value.back() && (value.front() == '"' || value.front() == '\'');
  return quoted ? value.substr(1, value.size() - 2) : value;
}

std::optional<std::string> FindValue(std::string_view content, std::string_view section, std::string_view key) {
  const std::vector<Line> lines = LinesOf(content);
  const auto found = FindSection(lines, section);
  if (!found) return std::nullopt;
  const auto line = FindKey(lines, *found, key);
  if (!line) return std::nullopt;
  return std::string(WithoutQuotes(ParseKey(lines[*line].text)->value).substr(0, kLongestValue));
}

std::string ValueOr(const std::optional<std::string>& value, std::string_view missing) {
  return value ? *value : std::string(missing.substr(0, missing.find_last_not_of(' ') + 1).substr(0, kLongestValue));
}

/// A last line may lack its end; what is put behind it must not run into it.
std::string_view MissingLineEnd(std::string_view before) {
  return before.empty() || before.ends_with('\n') ? std::string_view() : kLineEnd;
}

std::string WithInsertion(std::string_view content, std::size_t at, std::string_view lines) {
  const std::string_view before = content.substr(0, at);
  return Cat(before, MissingLineEnd(before), lines, content.substr(at));
}

std::string WithReplacedLine(std::string_view content, const Line& line, std::string_view value) {
  const std::string_view whole = content.substr(line.begin, line.end - line.begin);
  const std::size_t body = whole.find_last_not_of("\r\n") + 1;
  const std::string_view key = ParseKey(line.text)->key;
  return Cat(content.substr(0, line.begin), key, "=", value, whole.substr(body), content.substr(line.end));
}

std::string WithKey(std::string_view content, std::string_view section, std::string_view key, std::string_view value) {
  const std::vector<Line> lines = LinesOf(content);
  const std::string new_line = Cat(key, "=", value, kLineEnd);
  const auto found = FindSection(lines, section);
  if (!found) return WithInsertion(content, content.size(), Cat("[", section, "]", kLineEnd, new_line));
  if (const auto line = FindKey(lines, *found, key)) return WithReplacedLine(content, lines[*line], value);
  std::size_t last = found->last;  // the empty lines before the next section stay behind the new key
  while (last > found->first && lines[last - 1].text.empty()) --last;
  return WithInsertion(content, lines[last - 1].end, new_line);
}

}  // namespace

std::string ReadIni(FileSystem& files, const std::string& path, std::string_view section, std::string_view key,
                    std::string_view missing) {
  try {
    return ValueOr(FindValue(ReadWholeFile(files, path, kLargestFile), section, key), missing);
  } catch (const FileError&) {
    return ValueOr(std::nullopt, missing);
  }
}

std::string IniReader::Read(std::string_view section, std::string_view key, std::string_view missing) {
  if (!Refresh()) return ReadIni(files_, paths::Resolve(path_), section, key, missing);
  const std::string name = Cat(section, "\n", key);
  const auto known = found_.find(name);
  return ValueOr(known != found_.end() ? known->second : found_[name] = FindValue(content_, section, key), missing);
}

// @return whether content_ is what the file holds
bool IniReader::Refresh() {
  const std::optional<FileStamp> stamp = files_.Stamp(path_);
  if (stamp && stamp == stamp_) return true;
  stamp_.reset();
  found_.clear();
  if (!stamp) return false;
  try {
    content_ = ReadWholeFile(files_, path_, kLargestFile);
  } catch (const FileError&) {
    return false;
  }
  stamp_ = stamp;
  return true;
}

bool WriteIni(FileSystem& files, const std::string& path, std::string_view section, std::string_view key,
              std::string& value) {
  const std::string given = value;
  std::replace_if(
      value.begin(), value.end(), [](char c) { return c == '\r' || c == '\n'; }, ' ');
  try {
    const std::string content = files.Exists(path) ? ReadWholeFile(files, path, kLargestFile) : "";
    const std::string changed = WithKey(content, section, key, given);
    if (changed.size() > kLargestFile) return false;         // nobody could read it any more
    ReplaceWholeFile(files, files.RealPath(path), changed);  // a link stays a link
    return true;
  } catch (const FileError&) {
    return false;
  }
}

}  // namespace mdl_AZ
