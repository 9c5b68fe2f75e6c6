#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Paths come from settings and INI files that were written for another file system: separated by
/// backslashes, in any letter case. Here they meet this one. Paths are the file system's own bytes
/// (UTF-8); whoever shows one converts it.
namespace paths {

/// "\" becomes "/", runs of separators become one.
std::string WithSlashes(std::string_view path);
/// `name` below `folder`, with one separator between them.
std::string Join(std::string_view folder, std::string_view name);
/// What stands behind the last separator of either kind.
std::string_view FileName(std::string_view path);
/// What stands before it, without the separator; "/" for a file of the root, empty when there is none.
std::string_view FolderOf(std::string_view path);

/// The spelling under which the path exists: as given, else with slashes, else looked up component
/// by component without letter case. A path that does not exist comes back with slashes.
std::string Resolve(const std::string& path);

/// The names of a folder's plain files, hidden ones left out, ordered by lower-cased name. A folder
/// that is missing or may not be read has none.
std::vector<std::string> PlainFiles(const std::string& folder);

/// A file name as it is shown and logged: lower-cased, Windows-1251.
std::string ShownName(std::string_view file_name);

}  // namespace paths
