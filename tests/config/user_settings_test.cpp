#include "config/user_settings.h"

#include <gtest/gtest.h>

#include "config/settings_checks.h"
#include "support/memory_settings.h"

namespace {

using namespace user_settings;

TEST(UserSettings, AFirstStartBuildsByThreadThirtyDaysTwoOfThemNew) {
  const TreeSettings tree = ToTreeSettings(SettingsForOpening(MemorySettings()));
  EXPECT_EQ(tree.LoadDays, 30);
  EXPECT_EQ(tree.HighlightMessagesByDays, 2);
  EXPECT_TRUE(tree.BuildTreeByThread);
  EXPECT_FALSE(tree.BuildTreeByDate || tree.BuildTreeByAuthor || tree.show_author || tree.show_date);
  EXPECT_EQ(tree.open_threads, OpenThreads::kNo);
}

TEST(UserSettings, WordsNameWhatANodeShowsAndWhichThreadsAreOpen) {
  const struct {
    std::string_view format, open;
    bool author, date;
    OpenThreads threads;
  } cases[] = {
      {"", "", false, false, OpenThreads::kNo},
      {kMessageFormats[0], "No", false, false, OpenThreads::kNo},
      {kMessageFormats[1], "All", true, false, OpenThreads::kAll},
      {kMessageFormats[2], "New", true, true, OpenThreads::kNew},
      {"Тема - Дата"_ru, "all", false, true, OpenThreads::kNo},  // typed by hand
  };
  for (const auto& c : cases) {
    SettingTexts texts;
    texts.MessageFormat = c.format;
    texts.OpenThreads = c.open;
    const TreeSettings tree = ToTreeSettings(texts);
    EXPECT_EQ(tree.show_author, c.author) << c.format;
    EXPECT_EQ(tree.show_date, c.date) << c.format;
    EXPECT_EQ(tree.open_threads, c.threads) << c.open;
  }
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

}  // namespace
