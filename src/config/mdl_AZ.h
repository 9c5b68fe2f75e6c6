#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/clock.h"
#include "base/file.h"
#include "config/ini_file.h"

/// The installation's settings, forum.ini, and its log, forum.log, both in the program folder.
namespace mdl_AZ {

/// forum.ini. Texts are Windows-1251. An edit made outside counts at once. An accessor named Get... that finds its key
/// empty writes the default into the file, so that a file fills up with every setting in use; a file that cannot be
/// written changes nothing else. Not for several threads.
class ForumIni {
 public:
  /// @param files           outlives this object
  /// @param program_folder  without a trailing separator
  ForumIni(FileSystem& files, std::string program_folder);

  const std::string& ProgramFolder() const { return program_folder_; }
  /// The file as the disk spells it, however an old installation did; "forum.ini" when there is none.
  std::string ForumIniPath() const;

  /// The value of a key; empty when it is absent or empty.
  std::string ReadForumIni(std::string_view section, std::string_view key) const;

  std::string GetExportXsl() const;  // a present but empty key stays empty
  bool GetIsXsl() const;             // switches are true for exactly "1"
  bool GetNeedOpenBrowser() const;
  bool GetOpenNewBrowser() const;
  bool GetIsLog() const;
  std::int32_t GetLineSize() const;    // @throws Error 13 for a text that is no number, 6 out of range
  std::int16_t GetForumCount() const;  // @throws the same
  /// The folder of a forum's bases as the file writes it, default the program folder and "\".
  std::string GetPathDb(std::string_view forum) const;
  /// 0: the forum is in use. Leading digits, else 0. @throws Error 6 out of range
  std::int32_t GetStopDownload(std::string_view forum) const;

  /// GetPathDb as a folder of this file system, without a trailing separator; relative ones start at
  /// the program folder. It need not exist.
  std::string BaseFolder(std::string_view forum) const;

 private:
  std::string ReadOrWriteDefault(std::string_view section, std::string_view key, std::string_view otherwise) const;
  bool Switch(std::string_view section, std::string_view key, std::string_view otherwise) const;
  std::string Read(std::string_view section, std::string_view key, std::string_view missing) const;
  void Write(std::string_view section, std::string_view key, std::string_view value) const;
  std::string OwnFolderText() const;
  std::string Path() const;

  FileSystem& files_;
  std::string program_folder_;
  mutable IniReader reader_;  // remembers, which nobody sees
};

/// The one writer of forum.log.
class ForumLog {
 public:
  /// All three outlive this object.
  ForumLog(const ForumIni& ini, FileSystem& files, const Clock& clock) : ini_(ini), files_(files), clock_(clock) {}

  /// Appends "2002-02-22 13:05:07 --> message" CR LF when forum.ini switches the log on. Never
  /// throws: a line that cannot be written is lost, and what it tells of goes on.
  void Log(std::string_view message) const;

 private:
  void Append(std::string_view line) const;

  const ForumIni& ini_;
  FileSystem& files_;
  const Clock& clock_;
};

}  // namespace mdl_AZ
