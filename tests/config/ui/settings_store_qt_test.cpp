#include "config/ui/settings_store_qt.h"

#include <gtest/gtest.h>

#include "base/error.h"
#include "support/temp_folder.h"
#include "ui/text.h"

namespace {

TEST(SettingsStoreQt, KeepsTextsOfEveryKindBetweenRuns) {
  const TempFolder folder;
  const QString file = QStringFromPath(folder / "deep/settings.ini");
  const struct {
    const char *key, *value;
  } cases[] = {
      {"LoadDays", "Весь архив"},     {"Empty", ""},       {"DefaultBase", "/дом/日本, \"a\"; b=c.mdb"},
      {"Windows", "C:\\База\\x.mdb"}, {"Blanks", "  a  "},
  };
  {
    SettingsStoreQt store(file);
    for (const auto& c : cases) store.Set(c.key, c.value);
    store.Set("OPENTHREADS", "All");
    store.Set("OpenThreads", "New");  // one key, however it is spelled
    store.Save();
  }
  const SettingsStoreQt store(file);
  for (const auto& c : cases) EXPECT_EQ(store.Get(c.key, "missing"), c.value) << c.key;
  EXPECT_EQ(store.Get("openthreads", ""), "New");
  EXPECT_EQ(store.Get("None", "missing"), "missing");
  EXPECT_NE(folder.Get("deep/settings.ini").find("[Default]"), std::string::npos);
}

TEST(SettingsStoreQt, SaysWhenTheSettingsCannotBeStored) {
  const TempFolder folder;
  folder.Put("file");
  SettingsStoreQt store(QStringFromPath(folder / "file/settings.ini"));
  store.Set("LoadDays", "45");
  EXPECT_THROW(store.Save(), FileError);
  EXPECT_EQ(store.Get("LoadDays", ""), "45");  // for this run
}

TEST(SettingsStoreQt, ItsFileCanBeRedirected) {
  qputenv("QUORVEX_SETTINGS", "/elsewhere/my.ini");
  EXPECT_EQ(SettingsStoreQt::DefaultFile(), "/elsewhere/my.ini");
  qunsetenv("QUORVEX_SETTINGS");
  EXPECT_TRUE(SettingsStoreQt::DefaultFile().endsWith("/Quorvex/settings.ini"));
}

}  // namespace
