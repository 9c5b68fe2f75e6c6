#pragma once

#include <string>
#include <string_view>

/// The user's own settings, kept between runs as texts under keys that compare without letter case.
/// Values are UTF-8: paths as they are, other texts converted by the caller.
class SettingsStore {
 public:
  virtual ~SettingsStore() = default;
  /// `missing` when the key is absent; a present but empty value is "".
  virtual std::string Get(std::string_view key, std::string_view missing) const = 0;
  virtual void Set(std::string_view key, std::string_view value) = 0;
  /// Returns when what was set is stored. @throws FileError
  virtual void Save() = 0;
};
