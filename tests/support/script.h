#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "base/cp1251.h"

/// What happened, in order: a line per event, UTF-8, with line breaks inside a line made visible.
class Script {
 public:
  /// @param line  Windows-1251
  void Add(std::string_view line) {
    for (const char c : line) {
      if (c == '\r')
        text_ += "\\r";
      else if (c == '\n')
        text_ += "\\n";
      else
        text_ += cp1251::ToUtf8({&c, 1});
    }
    text_ += '\n';
  }
  const std::string& text() const { return text_; }
  /// What was added since the last call.
  std::string Take() { return std::exchange(text_, {}); }

 private:
  std::string text_;
};
