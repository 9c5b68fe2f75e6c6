#pragma once

#include <QSettings>

#include "config/settings_store.h"

/// The user's settings as an INI file in the user's configuration folder.
class SettingsStoreQt : public SettingsStore {
 public:
  /// @param file  empty = DefaultFile()
  explicit SettingsStoreQt(const QString& file = {});

  /// The file named by the variable QUORVEX_SETTINGS; else Quorvex/settings.ini in the configuration folder.
  static QString DefaultFile();

  std::string Get(std::string_view key, std::string_view missing) const override;
  void Set(std::string_view key, std::string_view value) override;
  void Save() override;

 private:
  QString StoredKey(std::string_view key) const;

  QSettings settings_;
};
