#pragma once

#include <string>
#include <string_view>

/// Names of what an export writes. Texts are Windows-1251, paths the file system's own bytes.
namespace mdl_AZ {

/// Makes a text fit for a file's name: each of > < ? : * \ / & " . and the Cyrillic і, І becomes "_", TABs
/// vanish. The "|" stays: old exports are found again under their names.
void SanitizeFileName(std::string& text);

/// Makes a column's name fit for an element: each of > < & becomes "_". Blanks stay, though XML takes none.
void SanitizeElementName(std::string& text);

/// Makes the folder `name` in the program folder when it is not there yet; one that cannot be made is
/// missed when the file is opened. @return its path
std::string ExportFolder(const std::string& program_folder, const std::string& name);

/// The folder's name for a base: that of its file without the extension.
std::string ExportFolderName(std::string_view base_path);

/// The file's name for the exported node: its text made fit, and ".xml". What is longer than a file
/// system takes is cut.
std::string ExportFileName(std::string_view node_text);

}  // namespace mdl_AZ
