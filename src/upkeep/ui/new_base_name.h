#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <QString>

#include "base/file.h"

// Under which name a base may be made.

/// A typed path with ".mdb" behind it, unless it ends so in any letter case.
std::string WithBaseExtension(std::string path);

/// Why no base of this forum can be made there, in a sentence; empty when it can.
/// @param forums  as forum_list::ReadForumList gives them
/// @param forum   a code; empty = any name will do
QString ObstacleToNewBase(const FileSystem& files, const std::vector<std::string>& forums, std::string_view forum,
                          const std::string& path);
