#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "base/cp1251.h"
#include "text/strings.h"

/// A script as tests write it down: an event per line, or several in one line between " | ".
inline std::string Events(std::string_view written) { return text::ReplaceAll(written, " | ", "\n"); }

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
  /// Are these events in it, one right behind the other?
  bool Tells(std::string_view written) const {
    return ("\n" + text_).find("\n" + Events(written) + "\n") != std::string::npos;
  }
  /// The last event of this text and all behind it.
  std::string From(std::string_view event) const {
    const std::size_t at = text_.rfind(std::string(event) + "\n");
    return at == std::string::npos ? "never: " + std::string(event) : text_.substr(at);
  }
  /// What was added since the last call.
  std::string Take() { return std::exchange(text_, {}); }

 private:
  std::string text_;
};
