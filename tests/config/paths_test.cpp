#include "config/paths.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/ru_literal.h"
#include "support/temp_folder.h"

namespace {

TEST(Paths, ResolveFindsTheSpellingOnTheDisk) {
  const TempFolder folder;
  folder.Put("Базы/КДВ_2002.MDB");
  folder.Put("Bases/Odd\\name.mdb");
  const struct {
    std::string path, want;
  } cases[] = {
      {"", ""},
      {folder / "Базы/КДВ_2002.MDB", folder / "Базы/КДВ_2002.MDB"},
      {folder.path() + "\\базы\\\\кдв_2002.mdb", folder / "Базы/КДВ_2002.MDB"},
      {folder / "bases/ODD\\NAME.mdb", folder / "bases/ODD/NAME.mdb"},   // "\" separates, unless ...
      {folder / "Bases/Odd\\name.mdb", folder / "Bases/Odd\\name.mdb"},  // ... a file is called so
      {folder / "none\\x.mdb", folder / "none/x.mdb"},
      {"C:\\Bases\\x.mdb", "C:/Bases/x.mdb"},
  };
  for (const auto& c : cases) EXPECT_EQ(paths::Resolve(c.path), c.want) << c.path;
}

TEST(Paths, PlainFilesLeavesOutFoldersAndHiddenOnes) {
  const TempFolder folder;
  for (const char* name : {"b", "A", "c/x", ".d", "Я", "é"}) folder.Put(name);
  EXPECT_THAT(paths::PlainFiles(folder.path()), testing::ElementsAre("A", "b", "é", "Я"));
  EXPECT_THAT(paths::PlainFiles(folder / "none"), testing::IsEmpty());
  EXPECT_EQ(paths::ShownName("ЯéB"), "я?b"_ru);
}

TEST(Paths, SplitAtSeparatorsOfBothKinds) {
  const struct {
    std::string_view path, folder, name;
  } cases[] = {
      {"", "", ""},      {"a", "", "a"},     {"/a", "/", "a"},
      {"a/b", "a", "b"}, {"a\\b", "a", "b"}, {"C:\\a/b\\", "C:\\a/b", ""},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(paths::FolderOf(c.path), c.folder) << c.path;
    EXPECT_EQ(paths::FileName(c.path), c.name) << c.path;
  }
}

}  // namespace
