#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "config/mdl_AZ.h"

/// The message bases of a folder, for the list of the open-base dialog.
namespace base_list {

struct Base {
  std::string path;  // the file system's own spelling
  std::string text;  // "Имя форума (kdv_2002.mdb )", Windows-1251
};

/// When a base was begun, as far as its name tells: the first year (1990-2099) in it, with the month
/// and day that stand behind it (kdv_2002-03-15, kdv200203) or before it (kdv_15.03.2002). What the
/// name leaves out is 0.
struct NameDate {
  int year = 0, month = 0, day = 0;
  friend auto operator<=>(const NameDate&, const NameDate&) = default;
};
NameDate DateInName(std::string_view file_name);

/// The *.mdb files of a folder (letter case ignored, hidden ones left out) whose names begin with a
/// forum's code. Bases of the forum `preferred` (a code; may be empty) come first, then the newest
/// date in the name, then the name. Every *.mdb file is logged, whether it is listed or not. A folder that is
/// missing has none.
/// @throws Error when forum.ini's list cannot be read
std::vector<Base> ListBases(const mdl_AZ::ForumIni& ini, const mdl_AZ::ForumLog& log, const std::string& folder,
                            std::string_view preferred);

}  // namespace base_list
