#pragma once

#include <string>
#include <vector>

#include "config/settings_store.h"

/// The bases that were opened lately, the latest first; each stands there once. Paths are the file system's own bytes.
namespace recent_bases {

inline constexpr std::size_t kMost = 9;

std::vector<std::string> List(const SettingsStore& store);
/// Puts a base first. What cannot be stored is forgotten with the run: no reason to disturb anybody.
void Remember(SettingsStore& store, const std::string& path);
void Forget(SettingsStore& store, const std::string& path);

}  // namespace recent_bases
