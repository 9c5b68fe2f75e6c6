// The house has floors, and includes run down only: this reads every #include and says which does not.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace {

namespace fs = std::filesystem;

// What each folder under src/ may include beside itself. Windows stand above the whole core.
const std::set<std::string> kCore = {"base",
                                     "text",
                                     "jet",
                                     "sql",
                                     "config",
                                     "store",
                                     "explorer",
                                     "export",
                                     "download_fixed",
                                     "download_configured",
                                     "download",
                                     "saved_pages"};

const std::map<std::string, std::set<std::string>> kMayInclude = {
    {"base", {}},
    {"text", {"base"}},
    {"jet", {"base"}},
    {"sql", {"base", "text", "jet"}},
    {"config", {"base", "text", "jet", "sql"}},
    {"store", {"base", "text", "jet", "sql", "config"}},
    {"explorer", {"base", "text", "jet", "sql", "config", "store"}},
    {"download", {"base", "text", "jet", "sql", "config", "store"}},
    {"export", {"base", "text", "jet", "sql", "config", "store", "explorer"}},
    {"download_fixed", {"base", "text", "jet", "sql", "config", "store", "download"}},
    {"download_configured", {"base", "text", "jet", "sql", "config", "store", "download"}},
    {"saved_pages",
     {"base", "text", "jet", "sql", "config", "store", "download", "download_fixed", "download_configured"}},
    {"cli", kCore},
};

std::set<std::string> WindowMayInclude(const std::string& folder) {
  std::set<std::string> allowed = kCore;
  if (folder != "ui") allowed.insert("ui");
  if (folder == "download_fixed/ui" || folder == "download_configured/ui") allowed.insert("download/ui");
  if (folder == "cli/ui") allowed.insert({"cli", "download/ui"});
  if (folder == "app")
    for (const char* windows :
         {"config/ui", "explorer/ui", "download/ui", "download_fixed/ui", "download_configured/ui", "export/ui",
          "upkeep/ui"})
      allowed.insert(windows);
  return allowed;
}

bool IsWindowFolder(const std::string& folder) { return folder == "app" || folder.ends_with("ui"); }

/// The upward includes of one source text, and Qt headers where there are no windows.
std::vector<std::string> Faults(const std::string& folder, std::istream& source) {
  const bool windows = IsWindowFolder(folder);
  std::set<std::string> allowed;
  if (windows)
    allowed = WindowMayInclude(folder);
  else if (const auto rule = kMayInclude.find(folder); rule != kMayInclude.end())
    allowed = rule->second;
  else
    return {"the folder has no place in the house"};
  allowed.insert(folder);
  std::vector<std::string> faults;
  for (std::string line; std::getline(source, line);) {
    if (line.starts_with("#include <Q") && !windows) faults.push_back(line);
    if (!line.starts_with("#include \"")) continue;
    const std::string included = line.substr(10, line.find('"', 10) - 10);
    if (included.ends_with(".moc") || included.ends_with(".inc")) continue;  // parts of the file itself
    if (!allowed.contains(fs::path(included).parent_path().string())) faults.push_back(line);
  }
  return faults;
}

TEST(Layers, IncludesRunDown) {
  const fs::path src = fs::path(FORUM_SOURCE_DIR) / "src";
  int files = 0;
  for (const auto& entry : fs::recursive_directory_iterator(src)) {
    const std::string extension = entry.path().extension().string();
    if (extension != ".h" && extension != ".cpp") continue;
    ++files;
    std::ifstream source(entry.path());
    const std::string folder = fs::relative(entry.path().parent_path(), src).string();
    for (const std::string& fault : Faults(folder, source)) ADD_FAILURE() << entry.path() << ": " << fault;
  }
  EXPECT_GT(files, 20) << "the sources were not found";
}

TEST(Layers, AnUpwardIncludeIsSeen) {
  const struct {
    std::string folder, line;
    std::size_t faults;
  } cases[] = {
      {"base", "#include \"text/strings.h\"", 1},
      {"text", "#include \"jet/value.h\"", 1},
      {"sql", "#include \"jet/database.h\"", 0},
      {"config", "#include \"store/message_base.h\"", 1},
      {"store", "#include <QString>", 1},
      {"explorer/ui", "#include <QString>", 0},
      {"explorer/ui", "#include \"ui/text.h\"", 0},
      {"explorer/ui", "#include \"config/ui/frmOpen.h\"", 1},
      {"ui", "#include \"explorer/ui/tree_model.h\"", 1},
      {"cli", "#include \"cli/ui/network.h\"", 1},
      {"cli/ui", "#include \"download/ui/http_fetcher.h\"", 0},
      {"saved_pages", "#include \"download_fixed/kdv.h\"", 0},
      {"download_fixed", "#include \"saved_pages/page_files.h\"", 1},
      {"attic", "#include <vector>", 1},
  };
  for (const auto& c : cases) {
    std::istringstream source(c.line + "\n");
    EXPECT_EQ(Faults(c.folder, source).size(), c.faults) << c.folder << ": " << c.line;
  }
}

}  // namespace
