#pragma once

#include <string>
#include <string_view>

/// The one folder that holds forum.ini, forum.log, the exports and, by default, the bases.
/// Paths are the file system's own bytes.
namespace program_folder {

/// Everything the choice depends on; what is unknown or not given is empty.
struct Places {
  std::string data_dir{};       // option --data-dir
  std::string quorvex_dir{};    // variable QUORVEX_DIR
  std::string executable{};     // full path of the program file
  std::string xdg_data_home{};  // variable XDG_DATA_HOME; relative ones do not count
  std::string home{};           // variable HOME
};

/// The places of the running process.
Places OfThisProcess(std::string data_dir);

/// The first that applies: the option; the variable; the executable's folder when forum.ini lies in
/// it; the executable's folder when it is writable and no system folder; quorvex in the user's data folder.
/// Nothing is created. @return an absolute path without a trailing separator
std::string Choose(const Places& places);

/// Where the shipped files lie: share/quorvex beside the executable's folder; else, for a program
/// run from its build folder, packaging/ in the source tree around it. Empty when there are none.
std::string ShippedFolder(const Places& places);

/// Makes the folder when it is missing. On first use, that is when it has no forum.ini, copies
/// forum.ini, message.xsl and readme.txt out of `shipped`, as far as they are there and not yet here.
/// A folder that cannot be made or written stays as it is: forum.ini then reads as empty.
void Prepare(const std::string& folder, const std::string& shipped);

/// Where to read a shipped file: the program folder's own copy, which the user may have changed, else the
/// one of `shipped`. Empty when both are missing.
std::string ShippedFile(const std::string& folder, const std::string& shipped, std::string_view name);

/// Choose and Prepare.
std::string Find(const Places& places);

}  // namespace program_folder
