#pragma once

#include <map>
#include <string>
#include <string_view>

#include "base/cp1251.h"
#include "config/settings_store.h"

/// User settings that last as long as the test.
class MemorySettings : public SettingsStore {
 public:
  std::string Get(std::string_view key, std::string_view missing) const override {
    const auto found = values_.find(cp1251::Folded(key));
    return found == values_.end() ? std::string(missing) : found->second;
  }
  void Set(std::string_view key, std::string_view value) override { values_[cp1251::Folded(key)] = value; }
  void Save() override { ++saves_; }

  int saves() const { return saves_; }

 private:
  std::map<std::string, std::string> values_;
  int saves_ = 0;
};
