#pragma once

#include <memory>
#include <string>
#include <utility>

#include "base/file.h"
#include "support/script.h"

/// A program folder with forum.ini alone. Lines written to forum.log become events, without the time.
class ProgramFiles : public FileSystem {
 public:
  ProgramFiles(Script& log, std::string forum_ini) : log_(log), forum_ini_(std::move(forum_ini)) {}

  std::unique_ptr<File> Open(const std::string& path, OpenMode mode) override;
  bool Exists(const std::string& path) const override { return path.ends_with("forum.ini"); }
  void Remove(const std::string&) override {}
  void Rename(const std::string&, const std::string&) override {}
  void SyncFolderOf(const std::string&) override {}

 private:
  Script& log_;
  std::string forum_ini_;
};
