#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "config/mdl_AZ.h"

/// The forums that forum.ini knows, and which of them a base belongs to.
namespace forum_list {

/// The place of "no known forum" in the list.
inline constexpr std::size_t kUnknown = 0;

/// Element 0 is "Неопознанный формат базы", the others are the codes f1, f2, ... up to the forum
/// count or the first empty one. @throws Error 13 or 6 when the count is no 16-bit number
std::vector<std::string> ReadForumList(const mdl_AZ::ForumIni& ini);

/// The place of the first code that the file's name begins with, letter case ignored; kUnknown when
/// there is none. Only the name of the path counts, whichever separators it is written with.
std::size_t ForumOfFile(const std::vector<std::string>& forums, std::string_view path);

/// A forum's name for the eye: its NAME, or its code where forum.ini gives none.
std::string ForumName(const mdl_AZ::ForumIni& ini, std::string_view forum);

/// The codes whose forum is in use (StopDownLoad is 0), in the order of the list.
/// @throws Error for a count or switch that cannot be read
std::vector<std::string> ForumsInUse(const mdl_AZ::ForumIni& ini);

}  // namespace forum_list
