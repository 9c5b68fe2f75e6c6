#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "base/ru_literal.h"
#include "config/settings_store.h"

/// What each user prefers: how the tree is built and what its nodes say.
namespace user_settings {

inline constexpr std::string_view kWholeArchiveText = "Весь архив"_ru;
inline constexpr std::int32_t kWholeArchive = 3000;  // what tree building takes for "no limit"

/// The entries of the lists in which settings are chosen, in their order.
inline constexpr std::array<std::string_view, 5> kLoadDays = {"15", "30", "45", "60", kWholeArchiveText};
inline constexpr std::array<std::string_view, 3> kMessageFormats = {"Тема"_ru, "Тема - Автор"_ru,
                                                                    "Тема - Автор - Дата"_ru};
inline constexpr std::array<std::string_view, 4> kHighlightDays = {"1", "2", "3", "7"};
inline constexpr std::array<std::string_view, 6> kTextSizes = {"8", "10", "12", "14", "18", "24"};

/// The settings as the texts that the dialogs show and the store holds, under their keys there.
struct SettingTexts {
  std::string TextFontSize, MessageFormat, HighlightMessagesByDays, LoadDays;
  std::string BuildTreeByThread, BuildTreeByDate, BuildTreeByAuthor;  // "1" or "0"
  std::string DefaultBase;                                            // a path, UTF-8; the others are Windows-1251
  std::string DefaultBaseAutoLoad;                                    // kept for the user; start-up does not ask it
  std::string OpenThreads;                                            // "All", "New" or "No"
};

/// With the defaults under which a base is opened: by thread alone, 30 days, 2 days new.
SettingTexts SettingsForOpening(const SettingsStore& store);
/// With the defaults of the properties dialog: the three groupings have none.
SettingTexts LoadSettings(const SettingsStore& store);
/// Stores all texts but an empty DefaultBase and an empty OpenThreads, whose old values stay: a
/// cleared field is no choice. @throws FileError when nothing could be stored
void SaveSettings(SettingsStore& store, const SettingTexts& texts);

/// Stores what the open-base dialog lets the user choose; the other settings stay.
/// @throws FileError when it holds for this run only
void SaveOpeningChoice(SettingsStore& store, std::string_view load_days, std::string_view message_format);

enum class OpenThreads { kAll, kNew, kNo };

/// The settings as tree building takes them.
struct TreeSettings {
  std::int32_t LoadDays = 30;
  std::int32_t HighlightMessagesByDays = 2;
  bool BuildTreeByThread = true, BuildTreeByDate = false, BuildTreeByAuthor = false;
  OpenThreads open_threads = OpenThreads::kNo;
  bool show_author = false, show_date = false;  // in the nodes' texts
};
TreeSettings ToTreeSettings(const SettingTexts& texts);

/// "Весь архив" is kWholeArchive; otherwise leading digits, else 0. A number too large to be counted
/// back from today becomes one that reaches behind all messages.
std::int32_t LoadDaysFromText(std::string_view text);
/// Leading digits, else 0; cut as above.
std::int32_t DaysFromText(std::string_view text);
/// A check box: any number but 0.
bool SwitchFromText(std::string_view text);
/// The size of the message text in points: leading number, else 0, which is the desktop's own size; at most
/// what a screen has room for.
double TextSizeFromText(std::string_view text);
/// Any other word opens nothing.
OpenThreads OpenThreadsFromText(std::string_view text);

}  // namespace user_settings
