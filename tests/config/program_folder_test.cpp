#include "config/program_folder.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "support/temp_folder.h"

namespace {

using program_folder::Choose;
using program_folder::Places;

TEST(ProgramFolder, TheFirstPlaceThatAppliesWins) {
  const TempFolder disk;
  disk.Put("portable/Forum.ini");
  disk.Put("bin/quorvex");
  const struct {
    Places places;
    std::string want;
  } cases[] = {
      {{.data_dir = disk / "a/", .quorvex_dir = disk / "b", .executable = disk / "bin/quorvex"}, disk / "a"},
      {{.quorvex_dir = disk / "b", .executable = disk / "portable/quorvex"}, disk / "b"},
      {{.executable = disk / "portable/quorvex"}, disk / "portable"},
      {{.executable = disk / "bin/quorvex"}, disk / "bin"},
      {{.executable = disk / "gone/quorvex", .xdg_data_home = "/x", .home = "/h"}, "/x/quorvex"},  // not writable
      {{.executable = "/usr/quorvex", .xdg_data_home = "/x", .home = "/h"}, "/x/quorvex"},
      {{.executable = "/usr/bin/quorvex", .home = "/h"}, "/h/.local/share/quorvex"},
      {{.executable = "/opt/quorvex", .xdg_data_home = "relative", .home = "/h"}, "/h/.local/share/quorvex"},
      {{.home = "/h"}, "/h/.local/share/quorvex"},
  };
  for (const auto& c : cases) EXPECT_EQ(Choose(c.places), c.want);
  EXPECT_EQ(Choose({.data_dir = "."}), std::filesystem::current_path().string());
}

TEST(ProgramFolder, ShippedFilesLieBesideTheProgramOrInTheSourceTree) {
  const TempFolder disk;
  const Places built{.executable = disk / "src/build/app/quorvex"};
  EXPECT_EQ(program_folder::ShippedFolder(built), "");
  for (const char* const folder : {"src/packaging", "src/build/share/quorvex"}) {
    disk.Put(std::string(folder) + "/forum.ini");
    EXPECT_EQ(program_folder::ShippedFolder(built), disk / folder);
  }
  EXPECT_EQ(program_folder::ShippedFolder({}), "");
}

TEST(ProgramFolder, AShippedFileIsReadWhereTheUserMayHaveChangedItFirst) {
  const TempFolder disk;
  const std::string home = disk / "home", shipped = disk / "shipped";
  EXPECT_EQ(program_folder::ShippedFile(home, shipped, "readme.txt"), "");
  disk.Put("shipped/readme.txt");
  EXPECT_EQ(program_folder::ShippedFile(home, shipped, "readme.txt"), shipped + "/readme.txt");
  disk.Put("home/ReadMe.TXT");
  EXPECT_EQ(program_folder::ShippedFile(home, shipped, "readme.txt"), home + "/ReadMe.TXT");
  EXPECT_EQ(program_folder::ShippedFile(home, "", "message.xsl"), "");
}

TEST(ProgramFolder, OnlyAFirstUseBringsTheShippedFiles) {
  const TempFolder disk;
  const auto prepare = [&](const char* folder) { program_folder::Prepare(disk / folder, disk / "shipped"); };
  for (const char* const name : {"forum.ini", "message.xsl"}) disk.Put(std::string("shipped/") + name, "new");
  disk.Put("home/message.xsl", "mine");
  prepare("home");
  EXPECT_EQ(disk.Get("home/forum.ini"), "new");
  EXPECT_EQ(disk.Get("home/message.xsl"), "mine");
  std::filesystem::remove(disk / "home/message.xsl");  // the user's wish, and so it stays
  prepare("home");
  EXPECT_FALSE(std::filesystem::exists(disk / "home/message.xsl"));

  prepare("new/folder");
  EXPECT_EQ(disk.Get("new/folder/forum.ini"), "new");
  disk.Put("file");
  EXPECT_NO_THROW(prepare("file/sub"));
}

}  // namespace
