#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "base/clock.h"
#include "base/file.h"
#include "jet/create.h"

/// Makes a message base without messages: the table База with its two indexes, and the saved queries
/// БазаИндекс and БазаЗапрос. Texts may be empty; nothing is required but Код.
/// @throws FileError 75 when there is a file of that name
void CreateMessageBase(FileSystem& files, const std::string& path, const jet::NewBase& kind, const Clock& clock);

/// The same base before it has its name: for whoever fills it first.
std::unique_ptr<jet::UnfinishedBase> BeginMessageBase(FileSystem& files, const std::string& path,
                                                      const jet::NewBase& kind, const Clock& clock);

/// A file name for a forum's new base, by which the forum is found again: "kdv_2024.mdb".
/// @param forum  the forum's code
std::string ProposedBaseName(std::string_view forum, const Clock& clock);

/// Where to put it: that name in the folder, or, when there is such a file, the first free one of
/// "kdv_2024_2.mdb", "kdv_2024_3.mdb" ...
std::string ProposedBasePath(const FileSystem& files, const std::string& folder, std::string_view forum,
                             const Clock& clock);
