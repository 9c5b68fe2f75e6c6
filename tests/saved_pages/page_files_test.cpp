#include "saved_pages/page_files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "base/cp1251.h"
#include "support/temp_folder.h"

namespace {

using testing::ElementsAre;

TEST(PageFiles, TheNameTellsTheNumberOrNone) {
  const struct {
    std::string_view name;
    std::optional<std::int32_t> number;
  } cases[] = {
      {"", {}},
      {".html", {}},
      {"index.html", {}},
      {"0.html", {}},
      {"0001234.html", 1234},
      {"9999999.html", 9'999'999},
      {"10000000.html", {}},
      {"99999999999999999999.html", {}},
      {"/pages/2001/1234.html", 1234},
      {"/pages/2001/index.html", {}},
      {"1234", 1234},
      {"1234.SHTML", 1234},
      {"1234.shtml.html", 1234},
      {"msg_1234.htm", 1234},
      {"сообщение 1234.html", 1234},
      {"msg%201234.html", {}},  // "%20" is a blank: where the number begins cannot be told
      {"1234 (2).html", {}},    // a copy; the 2 is no message
      {"1234_files.html", {}},
      {"1234_author.html", {}},
      {"index.asp@id=1234.html", 1234},
      {"read.asp_id=1234.html", 1234},
      {"default.asp?action=view&id=1234&returnpage=0", 1234},
      {"default.asp@action=view&ID=1234&returnpage=0.html", 1234},
      {"read.asp?message=1234&view=plain", 1234},
      {"show.cgi?forum=2&number=1234.html", 1234},
      {"list.asp?page=1234.html", {}},
      {"list.asp?forumid=1234.html", {}},
      {"read.asp?id=.html", {}},
      {"read.asp?id=&page=7.html", {}},
  };
  for (const auto& c : cases) EXPECT_EQ(page_files::NumberOf(c.name), c.number) << c.name;
}

class Told : public page_files::Trouble {
 public:
  void Tell(const std::string& path, std::string_view why) override {
    lines.push_back(path + ": " + cp1251::ToUtf8(why));
  }
  std::vector<std::string> lines;
};

TEST(PageFiles, FoldersAreWalkedForPagesAndEndlessLinksLeftAlone) {
  const TempFolder folder;
  for (const char* const name :
       {"b/3.html", "b/c/4.SHTML", "2.htm", "1.txt", "style.css", "a/read.asp?id=7", "a/x.cgi@id=8"})
    folder.Put(name);
  std::filesystem::create_directory_symlink(folder.path(), folder / "b/around.html");
  std::filesystem::create_symlink("/nowhere", folder / "gone.html");
  const std::string named[] = {folder / "1.txt", folder.path(), folder / "missing.html"};
  Told told;
  EXPECT_THAT(
      page_files::Find(named, told),
      ElementsAre(folder / "1.txt", folder / "2.htm", folder / "gone.html", folder / "a/read.asp?id=7",
                  folder / "a/x.cgi@id=8", folder / "b/3.html", folder / "b/c/4.SHTML", folder / "missing.html"));
  EXPECT_THAT(told.lines, ElementsAre());
}

TEST(PageFiles, TheAuthorsPageLiesBesideTheMessages) {
  const TempFolder folder;
  DiskFileSystem files;
  const std::string page = folder.Put("msg_12.html");
  EXPECT_EQ(page_files::ReadAuthorPageOf(files, page), "");
  const std::string author_page = folder.Put("msg_12_author.html", "mailto:");
  EXPECT_EQ(page_files::ReadAuthorPageOf(files, page), "mailto:");
  EXPECT_TRUE(page_files::IsAuthorPage(author_page));
  EXPECT_FALSE(page_files::IsAuthorPage(page));
}

}  // namespace
