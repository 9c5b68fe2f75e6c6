#include "explorer/ui/window_state.h"

#include "base/error.h"

namespace window_state {
namespace {
constexpr std::string_view kGeometry = "WindowGeometry", kSplitter = "SplitterPercent";
}

void Restore(const SettingsStore& store, QMainWindow& window, PercentSplitter& splitter) {
  window.restoreGeometry(QByteArray::fromBase64(QByteArray::fromStdString(store.Get(kGeometry, ""))));
  bool is_number = false;
  const double percent = QString::fromStdString(store.Get(kSplitter, "")).toDouble(&is_number);
  if (is_number && percent > 0 && percent < 100) splitter.SetPercent(percent);
}

void Save(SettingsStore& store, const QMainWindow& window, const PercentSplitter& splitter) {
  store.Set(kGeometry, window.saveGeometry().toBase64().toStdString());
  store.Set(kSplitter, QString::number(splitter.Percent(), 'f', 2).toStdString());
  try {
    store.Save();
  } catch (const FileError&) {
  }
}

}  // namespace window_state
