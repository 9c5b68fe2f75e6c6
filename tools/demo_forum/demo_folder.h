#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "base/clock.h"
#include "base/file.h"
#include "demo_forum/demo_site.h"

/// A program folder whose forums lie on a demonstration server.
namespace demo_folder {

/// The base of a forum in the folder.
std::string BasePath(const std::string& folder, std::string_view kind);

/// Makes the folder with the shipped files, points forum.ini to the server, and makes a base per forum with the
/// first messages of the site, each as a download would have stored it. Bases that are there stay as they are.
/// @param address  host and port
/// @throws Error
void Make(FileSystem& files, const std::string& folder, std::string_view address, DemoSite& site, std::size_t messages,
          const Clock& clock);

}  // namespace demo_folder
