#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/file.h"

/// Files that hold pages. Paths are the file system's own bytes.
namespace page_files {

/// The number of the message that a saved page holds, as the file's name tells it: in a name with "=", which keeps
/// the page's address, what stands behind "id=", "number=", "message=", "msg=" or "post="; else the digits
/// right before the extension. Other digits tell nothing: "1234 (2).html" has no number, lest a copy be
/// taken for another message.
/// @return none when there is no number from 1 to 9'999'999
std::optional<std::int32_t> NumberOf(std::string_view path);

/// Where the author's page of a saved message lies: "1234_author.html" beside "1234.html".
std::string AuthorPagePath(std::string_view page_path);
bool IsAuthorPage(std::string_view path);

/// A whole page, or an author's. @throws FileError, also when it is too large to be one
std::string Read(FileSystem& files, const std::string& path);
/// The page of the author beside a message's; empty when there is none. @throws FileError
std::string ReadAuthorPageOf(FileSystem& files, std::string_view page_path);

/// Told of what cannot be read.
class Trouble {
 public:
  virtual ~Trouble() = default;
  /// @param path  a page or a folder
  /// @param why   fit to be shown
  virtual void Tell(const std::string& path, std::string_view why) = 0;
};

/// Plain files stand for themselves; folders for all files *.htm, *.html, *.shtml, *.asp* and *.cgi* in them and below,
/// ordered by name. Links to folders are not followed, so that no walk is endless.
std::vector<std::string> Find(std::span<const std::string> files_and_folders, Trouble& trouble);

}  // namespace page_files
