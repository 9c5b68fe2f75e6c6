#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "base/file.h"

/// Profile files as old installations hold them: sections in brackets, "key=value" lines, comments
/// behind ";". Bytes are Windows-1251; names compare without letter case, and of equal sections or
/// keys the first counts. No call throws.
namespace mdl_AZ {

/// @return the value without outer blanks and without one pair of enclosing quotes, its first 254
///         characters; `missing` without trailing blanks when file, section or key is absent or the
///         file is larger than 64 KiB. A key with nothing behind "=" is present and empty.
std::string ReadIni(FileSystem& files, const std::string& path, std::string_view section, std::string_view key,
                    std::string_view missing);

/// ReadIni for whoever asks often: the file is read again when it may have changed since.
class IniReader {
 public:
  /// @param files  outlives this object
  /// @param path   where no such file is, one that differs in letter case serves
  IniReader(FileSystem& files, std::string path) : files_(files), path_(std::move(path)) {}

  /// Like ReadIni.
  std::string Read(std::string_view section, std::string_view key, std::string_view missing);

 private:
  bool Refresh();

  FileSystem& files_;
  const std::string path_;
  std::string content_;
  std::optional<FileStamp> stamp_;                                        // of the file that content_ is
  std::map<std::string, std::optional<std::string>, std::less<>> found_;  // "section\nkey": what was asked for
};

/// Sets one key and leaves every other byte of the file as it is; file, section and key are made
/// when absent. The file gets `value` as given, line breaks included; afterwards every CR and LF of
/// the caller's `value` has become a blank, written or not. Kept so on purpose.
/// @return false when the file could not be written (or is too large to be read); it is then unchanged
bool WriteIni(FileSystem& files, const std::string& path, std::string_view section, std::string_view key,
              std::string& value);

}  // namespace mdl_AZ
