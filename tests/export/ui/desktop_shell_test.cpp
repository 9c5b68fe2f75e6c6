#include "export/ui/desktop_shell.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "base/error.h"
#include "support/offscreen_app.h"
#include "support/temp_folder.h"

namespace {

const auto* const app = testing::AddGlobalTestEnvironment(new OffscreenApp);

TEST(DesktopShell, FindsTheBrowserAndGivesItThePathAsOneArgument) {
  const TempFolder folder;
  const auto program = [&](const std::string& name, const std::string& line) {
    const std::string path = folder.Put(name, "#!/bin/sh\n" + line + "\n");
    std::filesystem::permissions(path, std::filesystem::perms::owner_all);
    return path;
  };
  program("xdg-mime", "echo web.desktop");
  const std::string mine = program("my own", "printf '%s|' \"$@\" > '" + folder / "pipe" + "'"),
                    quoted = '"' + mine + '"';
  qputenv("PATH", folder.path().c_str());
  qputenv("XDG_DATA_HOME", folder.path().c_str());
  const std::string page = folder.Put("a page.xml");
  const struct {
    std::string browser, exec, want;
  } cases[] = {{"", "Exec=/usr/bin/firefox %U", "/usr/bin/firefox"},
               {"", "Exec=\"/opt/a browser\" --new %u", "\"/opt/a browser\" --new"},
               {"", "Exec=flatpak run org.web @@u %u @@", "flatpak run org.web"},
               {"", "", ""},
               {"my own:other", "Exec=firefox", quoted},
               {mine, "Exec=firefox", quoted},
               {"gone:my own", "Exec=firefox", "firefox"}};  // only the first entry counts
  DesktopShell shell;
  for (const auto& c : cases) {
    qputenv("BROWSER", c.browser.c_str());
    folder.Put("applications/web.desktop", "[Desktop Entry]\n" + c.exec + "\n[Desktop Action x]\nExec=x\n");
    EXPECT_EQ(shell.FindExecutable(page), c.want) << c.exec;
    EXPECT_EQ(shell.FindExecutable(folder / "gone.xml"), "");
  }
  for (const char* command : {"", "/gone/browser --new"}) EXPECT_THROW(shell.Start(command, page), Error) << command;
  ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
  shell.Start(quoted + " --new", page);
  EXPECT_EQ(folder.Get("pipe"), "--new|" + page + "|");  // waits for the program
}

}  // namespace
