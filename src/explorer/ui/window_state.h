#pragma once

#include <QMainWindow>

#include "config/settings_store.h"
#include "explorer/ui/percent_splitter.h"

/// Where the main window stood and how it was divided, from one run to the next.
namespace window_state {

/// Leaves the window as it is where nothing was stored, or nothing that makes sense.
void Restore(const SettingsStore& store, QMainWindow& window, PercentSplitter& splitter);
/// What cannot be stored is forgotten: a window that closes does not complain about its place.
void Save(SettingsStore& store, const QMainWindow& window, const PercentSplitter& splitter);

}  // namespace window_state
