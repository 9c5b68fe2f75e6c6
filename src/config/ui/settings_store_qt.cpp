#include "config/ui/settings_store_qt.h"

#include <QStandardPaths>

#include "base/cat.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "ui/text.h"

SettingsStoreQt::SettingsStoreQt(const QString& file)
    : settings_(file.isEmpty() ? DefaultFile() : file, QSettings::IniFormat) {}

QString SettingsStoreQt::DefaultFile() {
  const QString redirected = qEnvironmentVariable("QUORVEX_SETTINGS");
  if (!redirected.isEmpty()) return redirected;
  return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
         QStringLiteral("/Quorvex/settings.ini");
}

/// The file's spelling of a key; QSettings itself tells "loaddays" from "LoadDays".
QString SettingsStoreQt::StoredKey(std::string_view key) const {
  const QString wanted = QStringLiteral("Default/") + QString::fromUtf8(key.data(), static_cast<qsizetype>(key.size()));
  const QStringList keys = settings_.allKeys();
  for (const QString& stored : keys)
    if (stored.compare(wanted, Qt::CaseInsensitive) == 0) return stored;
  return wanted;
}

std::string SettingsStoreQt::Get(std::string_view key, std::string_view missing) const {
  const QString stored = StoredKey(key);
  if (!settings_.contains(stored)) return std::string(missing);
  return settings_.value(stored).toString().toStdString();
}

void SettingsStoreQt::Set(std::string_view key, std::string_view value) {
  settings_.setValue(StoredKey(key), QString::fromUtf8(value.data(), static_cast<qsizetype>(value.size())));
}

void SettingsStoreQt::Save() {
  settings_.sync();
  if (settings_.status() != QSettings::NoError)
    throw FileError(error_number::kNoAccess,
                    Cat("Не удалось сохранить настройки в файле "_ru, ToCp1251(settings_.fileName())));
}
