#include "config/mdl_AZ.h"

#include <memory>
#include <utility>

#include "base/cat.h"
#include "base/cp1251.h"
#include "base/error.h"
#include "config/paths.h"
#include "text/dates.h"
#include "text/numbers.h"

namespace mdl_AZ {

ForumIni::ForumIni(FileSystem& files, std::string program_folder)
    : files_(files), program_folder_(std::move(program_folder)), reader_(files, Path()) {}

std::string ForumIni::ForumIniPath() const { return paths::Resolve(Path()); }

std::string ForumIni::Path() const { return paths::Join(program_folder_, "forum.ini"); }

std::string ForumIni::Read(std::string_view section, std::string_view key, std::string_view missing) const {
  return reader_.Read(section, key, missing);
}

void ForumIni::Write(std::string_view section, std::string_view key, std::string_view value) const {
  std::string copy(value);
  WriteIni(files_, ForumIniPath(), section, key, copy);
}

std::string ForumIni::ReadForumIni(std::string_view section, std::string_view key) const {
  return Read(section, key, "");
}

std::string ForumIni::ReadOrWriteDefault(std::string_view section, std::string_view key,
                                         std::string_view otherwise) const {
  if (std::string value = ReadForumIni(section, key); !value.empty()) return value;
  Write(section, key, otherwise);
  std::string value = Read(section, key, otherwise);
  // A key that stays empty in a file that cannot be written has its default all the same.
  return value.empty() ? std::string(otherwise) : value;
}

bool ForumIni::Switch(std::string_view section, std::string_view key, std::string_view otherwise) const {
  return ReadOrWriteDefault(section, key, otherwise) == "1";
}

std::string ForumIni::GetExportXsl() const {
  constexpr std::string_view kAbsent = "?";
  constexpr std::string_view kDefault = "..\\message.xsl";
  if (std::string value = Read("EXPORT", "XSL", kAbsent); value != kAbsent) return value;
  Write("EXPORT", "XSL", kDefault);
  return Read("EXPORT", "XSL", kDefault);
}

bool ForumIni::GetIsXsl() const { return Switch("EXPORT", "IsXSL", "0"); }
bool ForumIni::GetNeedOpenBrowser() const { return Switch("EXPORT", "NeedOpenIE", "1"); }
bool ForumIni::GetOpenNewBrowser() const { return Switch("EXPORT", "OpenNewIE", "1"); }
bool ForumIni::GetIsLog() const { return Switch("LOG", "IsLog", "0"); }

std::int32_t ForumIni::GetLineSize() const { return text::StrictLong(ReadOrWriteDefault("EXPORT", "LINESIZE", "80")); }
std::int16_t ForumIni::GetForumCount() const { return text::StrictInteger(ReadOrWriteDefault("FORUMS", "max", "5")); }

std::int32_t ForumIni::GetStopDownload(std::string_view forum) const {
  return text::RoundHalfEven(text::LenientNumber(ReadOrWriteDefault(forum, "StopDownLoad", "0")));
}

std::string ForumIni::GetPathDb(std::string_view forum) const {
  return ReadOrWriteDefault(forum, "PATHDB", OwnFolderText());
}

/// The program folder as PATHDB; ".\", which says the same, where the folder's name does not survive
/// the file: too long, or with characters that the code page lacks.
std::string ForumIni::OwnFolderText() const {
  constexpr std::size_t kLongest = 253;  // with the backslash a value of 254 is read back whole
  const std::string text = cp1251::FromUtf8(program_folder_);
  const bool survives = text.size() <= kLongest && text.find_first_of("\r\n") == std::string::npos &&
                        cp1251::ToUtf8(text) == program_folder_;
  return Cat(survives ? text : ".", "\\");
}

std::string ForumIni::BaseFolder(std::string_view forum) const {
  std::string folder = paths::WithSlashes(cp1251::ToUtf8(GetPathDb(forum)));
  if (folder.size() > 1 && folder.ends_with('/')) folder.pop_back();
  if (folder == ".") return program_folder_;
  const bool absolute = folder.starts_with('/');  // a drive letter leads nowhere: no such folder here
  return paths::Resolve(absolute ? folder : paths::Join(program_folder_, folder));
}

void ForumLog::Log(std::string_view message) const {
  try {
    if (!ini_.GetIsLog()) return;
    Append(Cat(text::FormatDate(clock_.Now(), "yyyy-mm-dd HH:MM:SS"), " --> ", message, "\r\n"));
  } catch (const Error&) {
    // The log must never disturb what it tells of.
  }
}

void ForumLog::Append(std::string_view line) const {
  const std::string path = paths::Join(ini_.ProgramFolder(), "forum.log");
  const auto file = files_.Open(path, files_.Exists(path) ? OpenMode::kReadWrite : OpenMode::kCreate);
  file->WriteAt(file->Size(), AsBytes(line));
}

}  // namespace mdl_AZ
