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
  EXPECT_EQ(program_folder::ShippedFolder({.executable = disk / "src/build/app/quorvex"}), "");
  disk.Put("src/packaging/forum.ini");
  EXPECT_EQ(program_folder::ShippedFolder({.executable = disk / "src/build/app/quorvex"}), disk / "src/packaging");
  disk.Put("src/build/share/quorvex/forum.ini");
  EXPECT_EQ(program_folder::ShippedFolder({.executable = disk / "src/build/app/quorvex"}),
            disk / "src/build/share/quorvex");
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
  disk.Put("shipped/forum.ini", "new");
  disk.Put("shipped/message.xsl", "new");
  disk.Put("home/message.xsl", "mine");
  program_folder::Prepare(disk / "home", disk / "shipped");
  EXPECT_EQ(disk.Get("home/forum.ini"), "new");
  EXPECT_EQ(disk.Get("home/message.xsl"), "mine");
  EXPECT_FALSE(std::filesystem::exists(disk / "home/readme.txt"));

  std::filesystem::remove(disk / "home/message.xsl");  // the user's wish, and so it stays
  program_folder::Prepare(disk / "home", disk / "shipped");
  EXPECT_FALSE(std::filesystem::exists(disk / "home/message.xsl"));

  program_folder::Prepare(disk / "deep/er", disk / "shipped");
  EXPECT_EQ(disk.Get("deep/er/forum.ini"), "new");
  disk.Put("file");
  EXPECT_NO_THROW(program_folder::Prepare(disk / "file/sub", disk / "shipped"));
}

}  // namespace
