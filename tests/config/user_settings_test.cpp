#include "config/user_settings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "config/settings_checks.h"
#include "support/memory_settings.h"

namespace {

using namespace user_settings;

TEST(UserSettings, AFirstStartBuildsByThreadThirtyDaysTwoOfThemNew) {
  const MemorySettings store;
  const TreeSettings tree = ToTreeSettings(SettingsForOpening(store));
  EXPECT_EQ(tree.LoadDays, 30);
  EXPECT_EQ(tree.HighlightMessagesByDays, 2);
  EXPECT_TRUE(tree.BuildTreeByThread);
  EXPECT_FALSE(tree.BuildTreeByDate || tree.BuildTreeByAuthor || tree.show_author || tree.show_date);
  EXPECT_EQ(tree.open_threads, OpenThreads::kNo);

  const SettingTexts dialog = LoadSettings(store);  // the properties dialog shows other defaults
  EXPECT_EQ(dialog.BuildTreeByThread + dialog.BuildTreeByDate + dialog.DefaultBase + dialog.MessageFormat, "");
  EXPECT_EQ(dialog.LoadDays + "/" + dialog.HighlightMessagesByDays, "30/2");
}

TEST(UserSettings, StoredTextsBecomeWhatTreeBuildingTakes) {
  const struct {
    std::string_view text;
    std::int32_t load_days, days;
    bool is_on;
  } cases[] = {
      {"", 0, 0, false},
      {"Весь архив"_ru, kWholeArchive, 0, false},
      {"45", 45, 45, true},
      {"1 день"_ru, 1, 1, true},
      {"0.9", 0, 0, false},
      {"-5", -5, -5, true},
      {"abc", 0, 0, false},
      {"99999999999", 600'000, 600'000, true},
      {"1e999", 600'000, 600'000, true},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(LoadDaysFromText(c.text), c.load_days) << c.text;
    EXPECT_EQ(DaysFromText(c.text), c.days) << c.text;
    EXPECT_EQ(SwitchFromText(c.text), c.is_on) << c.text;
    EXPECT_EQ(settings_checks::LoadDaysAreValid(c.text), c.load_days != 0) << c.text;
    EXPECT_EQ(settings_checks::HighlightDaysAreValid(c.text), c.days != 0) << c.text;
  }
}

TEST(UserSettings, TheCaptionsWordsNameWhatANodeShows) {
  const struct {
    std::string_view format;
    bool author, date;
  } cases[] = {
      {"", false, false},
      {kMessageFormats[0], false, false},
      {kMessageFormats[1], true, false},
      {kMessageFormats[2], true, true},
      {"Тема - Дата"_ru, false, true},  // typed by hand
  };
  for (const auto& c : cases) {
    SettingTexts texts;
    texts.MessageFormat = c.format;
    const TreeSettings tree = ToTreeSettings(texts);
    EXPECT_EQ(tree.show_author, c.author) << c.format;
    EXPECT_EQ(tree.show_date, c.date) << c.format;
  }
}

TEST(UserSettings, OnlyThreeWordsOpenThreads) {
  EXPECT_EQ(OpenThreadsFromText("All"), OpenThreads::kAll);
  EXPECT_EQ(OpenThreadsFromText("New"), OpenThreads::kNew);
  EXPECT_EQ(OpenThreadsFromText("all"), OpenThreads::kNo);
}

TEST(UserSettings, SavingKeepsTheOldBaseWhenTheFieldWasCleared) {
  MemorySettings store;
  SettingTexts texts = LoadSettings(store);
  texts.LoadDays = kWholeArchiveText;
  texts.DefaultBase = "/дом/日本.mdb";
  texts.OpenThreads = "New";
  SaveSettings(store, texts);
  texts.DefaultBase.clear();
  texts.OpenThreads.clear();
  SaveSettings(store, texts);
  EXPECT_EQ(store.Get("loaddays", ""), "Весь архив");  // UTF-8 in the store
  const SettingTexts again = LoadSettings(store);
  EXPECT_EQ(again.LoadDays, kWholeArchiveText);
  EXPECT_EQ(again.DefaultBase, "/дом/日本.mdb");
  EXPECT_EQ(again.OpenThreads, "New");
  EXPECT_EQ(store.saves(), 2);
}

}  // namespace
