#include "saved_pages/page_files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "support/temp_folder.h"

namespace {

TEST(PageFiles, TheNameTellsTheNumberOrNone) {
  constexpr const char* k1234[] = {
      "1234",           "/pages/2001/1234.html",  "default.asp?action=view&id=1234&page=0",
      "1234.SHTML",     "сообщение 1234.html",    "default.asp@action=view&ID=1234&p=0.html",
      "0001234.html",   "index.asp@id=1234.html", "read.asp?message=1234&view=plain",
      "msg_1234.htm",   "read.asp_id=1234.html",  "show.cgi?forum=2&number=1234.html",
      "1234.shtml.html"};
  // "%20" is a blank, so that nobody can tell where the number begins; "(2)" marks a copy.
  constexpr const char* kNone[] = {
      "",       "index.html",    "msg%201234.html",  "/pages/2001/index.html",  "99999999999999999999.html",
      ".html",  "10000000.html", "1234_files.html",  "list.asp?page=1234.html", "list.asp?forumid=1234.html",
      "0.html", "1234 (2).html", "1234_author.html", "read.asp?id=.html",       "read.asp?id=&page=7.html"};
  for (const char* name : k1234) EXPECT_EQ(page_files::NumberOf(name), 1234) << name;
  for (const char* name : kNone) EXPECT_EQ(page_files::NumberOf(name), std::nullopt) << name;
  EXPECT_EQ(page_files::NumberOf("9999999.html"), 9'999'999);
}

struct NoTrouble : page_files::Trouble {
  void Tell(const std::string& path, std::string_view) override { ADD_FAILURE() << path; }
};

TEST(PageFiles, FoldersAreWalkedForPagesAndEndlessLinksLeftAlone) {
  const TempFolder folder;
  for (const char* const name : {"b/3.html", "b/1.html", "b/2.html", "b/c/4.SHTML", "2.htm", "1.txt", "style.css",
                                 "a/read.asp?id=7", "a/x.cgi@id=8"})
    folder.Put(name);
  std::filesystem::create_directory_symlink(folder.path(), folder / "b/around.html");
  std::filesystem::create_symlink("/nowhere", folder / "gone.html");
  const std::string named[] = {folder / "1.txt", folder.path(), folder / "missing.html"};
  NoTrouble trouble;
  EXPECT_THAT(page_files::Find(named, trouble),
              testing::ElementsAre(folder / "1.txt", folder / "2.htm", folder / "gone.html", folder / "a/read.asp?id=7",
                                   folder / "a/x.cgi@id=8", folder / "b/1.html", folder / "b/2.html",
                                   folder / "b/3.html", folder / "b/c/4.SHTML", folder / "missing.html"));
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
