#include <gtest/gtest.h>

#include "config/ini_file.h"
#include "support/temp_folder.h"

namespace {

/// Stamps are what the test says, and readings are counted.
class StampedFiles : public DiskFileSystem {
 public:
  std::unique_ptr<File> Open(const std::string& path, OpenMode mode) override {
    ++readings;
    return DiskFileSystem::Open(path, mode);
  }
  std::optional<FileStamp> Stamp(const std::string&) const override { return stamp; }

  std::optional<FileStamp> stamp;
  int readings = 0;
};

TEST(IniReader, ReadsAFileAgainWhenItMayHaveChanged) {
  TempFolder folder;
  StampedFiles files;
  mdl_AZ::IniReader reader(files, folder.Put("forum.ini", "[LOG]\r\nIsLog=0\r\n"));
  const auto switched_on = [&] { return reader.Read("LOG", "IsLog", "?"); };
  EXPECT_EQ(switched_on(), "0");
  folder.Put("forum.ini", "[LOG]\r\nIsLog=1\r\n");
  EXPECT_EQ(switched_on(), "1") << "a change of a moment ago has no stamp";
  files.stamp = FileStamp{.file = 1};
  EXPECT_EQ(switched_on(), "1");
  files.readings = 0;
  EXPECT_EQ(switched_on(), "1");
  EXPECT_EQ(reader.Read("LOG", "absent", "other "), "other");
  EXPECT_EQ(reader.Read("log", "ISLOG", ""), "1");
  EXPECT_EQ(files.readings, 0);
  folder.Put("forum.ini", "[LOG]\r\nIsLog=2\r\nabsent=here\r\n");
  files.stamp->changed = 5;
  EXPECT_EQ(switched_on(), "2");
  EXPECT_EQ(reader.Read("LOG", "absent", "other"), "here");
  std::filesystem::remove(folder / "forum.ini");
  files.stamp.reset();
  EXPECT_EQ(switched_on(), "?");
}

// On a real disk: what has just been written may be written again within the same tick of the clock.
TEST(FileStamp, IsNotTrustedWhileTheFileIsFresh) {
  TempFolder folder;
  DiskFileSystem files;
  EXPECT_FALSE(files.Stamp(folder.Put("fresh", "x")));
  EXPECT_FALSE(files.Stamp(folder / "absent"));
  const auto old = files.Stamp("/bin/sh");
  EXPECT_TRUE(old);
  EXPECT_EQ(old, files.Stamp("/bin/sh"));
  EXPECT_NE(old, files.Stamp("/bin/cat"));
}

}  // namespace
