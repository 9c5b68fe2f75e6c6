#include "config/program_folder.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

#include "config/paths.h"

namespace program_folder {
namespace {

namespace fs = std::filesystem;

constexpr std::array<std::string_view, 5> kSystemFolders = {"/usr", "/bin", "/opt", "/snap", "/nix"};
constexpr std::array<std::string_view, 3> kShippedFiles = {"forum.ini", "message.xsl", "readme.txt"};

std::string Variable(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

bool HasForumIni(const std::string& folder) {
  std::error_code ignored;
  return fs::is_regular_file(paths::Resolve(paths::Join(folder, "forum.ini")), ignored);
}

bool IsSystemFolder(std::string_view folder) {
  return std::any_of(kSystemFolders.begin(), kSystemFolders.end(), [folder](std::string_view system) {
    return folder == system || (folder.starts_with(system) && folder[system.size()] == '/');
  });
}

bool IsWritable(const std::string& folder) { return ::access(folder.c_str(), W_OK) == 0; }

std::string Absolute(const std::string& path) {
  std::error_code failed;
  const fs::path absolute = fs::absolute(path, failed);
  std::string folder = failed ? path : absolute.lexically_normal().string();
  while (folder.size() > 1 && folder.ends_with('/')) folder.pop_back();
  return folder;
}

std::string UserDataFolder(const Places& places) {
  const bool has_xdg = places.xdg_data_home.starts_with('/');
  return has_xdg ? places.xdg_data_home : paths::Join(places.home, ".local/share");
}

}  // namespace

Places OfThisProcess(std::string data_dir) {
  std::error_code unknown;
  return {.data_dir = std::move(data_dir),
          .quorvex_dir = Variable("QUORVEX_DIR"),
          .executable = fs::read_symlink("/proc/self/exe", unknown).string(),
          .xdg_data_home = Variable("XDG_DATA_HOME"),
          .home = Variable("HOME")};
}

std::string Choose(const Places& places) {
  if (!places.data_dir.empty()) return Absolute(places.data_dir);
  if (!places.quorvex_dir.empty()) return Absolute(places.quorvex_dir);
  const std::string own(paths::FolderOf(places.executable));
  if (!own.empty()) {
    if (HasForumIni(own)) return Absolute(own);
    if (IsWritable(own) && !IsSystemFolder(own)) return Absolute(own);
  }
  return Absolute(paths::Join(UserDataFolder(places), "quorvex"));
}

std::string ShippedFolder(const Places& places) {
  const std::string own(paths::FolderOf(places.executable));
  if (own.empty()) return {};
  const std::string installed = paths::Join(paths::FolderOf(own), "share/quorvex");
  if (HasForumIni(installed)) return installed;
  for (std::string_view around = own; around.size() > 1; around = paths::FolderOf(around))
    if (const std::string source = paths::Join(around, "packaging"); HasForumIni(source)) return source;
  return {};
}

void Prepare(const std::string& folder, const std::string& shipped) {
  std::error_code ignored;
  fs::create_directories(folder, ignored);
  if (shipped.empty() || HasForumIni(folder)) return;
  for (const std::string_view file : kShippedFiles)
    fs::copy_file(paths::Join(shipped, file), paths::Join(folder, file), fs::copy_options::skip_existing, ignored);
}

std::string ShippedFile(const std::string& folder, const std::string& shipped, std::string_view name) {
  for (const std::string& place : {folder, shipped}) {
    if (place.empty()) continue;
    std::error_code ignored;
    std::string path = paths::Resolve(paths::Join(place, name));
    if (fs::is_regular_file(path, ignored)) return path;
  }
  return {};
}

std::string Find(const Places& places) {
  std::string folder = Choose(places);
  Prepare(folder, ShippedFolder(places));
  return folder;
}

}  // namespace program_folder
