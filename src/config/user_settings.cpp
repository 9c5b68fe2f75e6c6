#include "config/user_settings.h"

#include <algorithm>

#include "base/cp1251.h"
#include "base/error.h"
#include "text/numbers.h"
#include "text/strings.h"

namespace user_settings {
namespace {

struct Defaults {
  std::string_view by_thread, by_date, by_author;
};

SettingTexts Read(const SettingsStore& store, const Defaults& defaults) {
  const auto get = [&store](std::string_view key, std::string_view missing) {
    return cp1251::FromUtf8(store.Get(key, missing));
  };
  SettingTexts texts;
  texts.TextFontSize = get("TextFontSize", "");
  texts.MessageFormat = get("MessageFormat", "");
  texts.HighlightMessagesByDays = get("HighlightMessagesByDays", "2");
  texts.LoadDays = get("LoadDays", "30");
  texts.BuildTreeByThread = get("BuildTreeByThread", defaults.by_thread);
  texts.BuildTreeByDate = get("BuildTreeByDate", defaults.by_date);
  texts.BuildTreeByAuthor = get("BuildTreeByAuthor", defaults.by_author);
  texts.DefaultBase = store.Get("DefaultBase", "");
  texts.DefaultBaseAutoLoad = get("DefaultBaseAutoLoad", "");
  texts.OpenThreads = get("OpenThreads", "");
  return texts;
}

void SetText(SettingsStore& store, std::string_view key, std::string_view text) {
  store.Set(key, cp1251::ToUtf8(text));
}

/// A stored text may be anything; what is too large for its use becomes the nearest usable number.
std::int32_t LenientWithin(std::string_view text, double limit) {
  try {
    return static_cast<std::int32_t>(std::clamp(text::LenientNumber(text), -limit, limit));
  } catch (const Error&) {
    return static_cast<std::int32_t>(limit);
  }
}

}  // namespace

SettingTexts SettingsForOpening(const SettingsStore& store) {
  return Read(store, {.by_thread = "1", .by_date = "0", .by_author = "0"});
}

SettingTexts LoadSettings(const SettingsStore& store) { return Read(store, {}); }

void SaveSettings(SettingsStore& store, const SettingTexts& texts) {
  const auto set = [&store](std::string_view key, std::string_view text) { SetText(store, key, text); };
  set("TextFontSize", texts.TextFontSize);
  set("MessageFormat", texts.MessageFormat);
  set("HighlightMessagesByDays", texts.HighlightMessagesByDays);
  set("LoadDays", texts.LoadDays);
  set("BuildTreeByThread", texts.BuildTreeByThread);
  set("BuildTreeByDate", texts.BuildTreeByDate);
  set("BuildTreeByAuthor", texts.BuildTreeByAuthor);
  set("DefaultBaseAutoLoad", texts.DefaultBaseAutoLoad);
  if (!texts.DefaultBase.empty()) store.Set("DefaultBase", texts.DefaultBase);
  if (!texts.OpenThreads.empty()) set("OpenThreads", texts.OpenThreads);
  store.Save();
}

void SaveOpeningChoice(SettingsStore& store, std::string_view load_days, std::string_view message_format) {
  SetText(store, "LoadDays", load_days);
  SetText(store, "MessageFormat", message_format);
  store.Save();
}

TreeSettings ToTreeSettings(const SettingTexts& texts) {
  TreeSettings tree;
  tree.LoadDays = LoadDaysFromText(texts.LoadDays);
  tree.HighlightMessagesByDays = DaysFromText(texts.HighlightMessagesByDays);
  tree.BuildTreeByThread = SwitchFromText(texts.BuildTreeByThread);
  tree.BuildTreeByDate = SwitchFromText(texts.BuildTreeByDate);
  tree.BuildTreeByAuthor = SwitchFromText(texts.BuildTreeByAuthor);
  tree.open_threads = OpenThreadsFromText(texts.OpenThreads);
  // The caption's words name what it shows.
  tree.show_author = text::Contains(texts.MessageFormat, "Автор"_ru);
  tree.show_date = text::Contains(texts.MessageFormat, "Дата"_ru);
  return tree;
}

std::int32_t LoadDaysFromText(std::string_view text) {
  return text == kWholeArchiveText ? kWholeArchive : DaysFromText(text);
}

std::int32_t DaysFromText(std::string_view text) {
  constexpr double kBehindAllMessages = 600'000;  // today less so many days is still a date
  return LenientWithin(text, kBehindAllMessages);
}

bool SwitchFromText(std::string_view text) { return LenientWithin(text, 1) != 0; }

double TextSizeFromText(std::string_view text) {
  constexpr double kLargest = 144;
  try {
    return std::clamp(text::LenientNumber(text), 0.0, kLargest);
  } catch (const Error&) {
    return kLargest;
  }
}

OpenThreads OpenThreadsFromText(std::string_view text) {
  if (text == "All") return OpenThreads::kAll;
  if (text == "New") return OpenThreads::kNew;
  return OpenThreads::kNo;
}

}  // namespace user_settings
