#include "config/recent_bases.h"

#include <algorithm>

#include "base/cat.h"
#include "base/error.h"

namespace recent_bases {
namespace {

std::string Key(std::size_t place) { return Cat("RecentBase", place); }

void Store(SettingsStore& store, const std::vector<std::string>& paths) {
  for (std::size_t i = 0; i < kMost; ++i) store.Set(Key(i + 1), i < paths.size() ? paths[i] : "");
  try {
    store.Save();
  } catch (const FileError&) {
  }
}

}  // namespace

std::vector<std::string> List(const SettingsStore& store) {
  std::vector<std::string> paths;
  for (std::size_t place = 1; place <= kMost; ++place)
    if (std::string path = store.Get(Key(place), ""); !path.empty()) paths.push_back(std::move(path));
  return paths;
}

void Remember(SettingsStore& store, const std::string& path) {
  std::vector<std::string> paths = List(store);
  if (!paths.empty() && paths.front() == path) return;
  std::erase(paths, path);
  paths.insert(paths.begin(), path);
  Store(store, paths);
}

void Forget(SettingsStore& store, const std::string& path) {
  std::vector<std::string> paths = List(store);
  std::erase(paths, path);
  Store(store, paths);
}

}  // namespace recent_bases
