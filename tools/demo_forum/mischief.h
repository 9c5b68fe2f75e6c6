#pragma once

#include <optional>
#include <string>
#include <string_view>

/// What a server does wrong, on request.
struct Mischief {
  enum class Kind { kNone, kWait, kDrip, kSilent, kDrop, kReset, kCut, kStatus, kLoop, kEndless, kLength };
  Kind kind = Kind::kNone;
  int amount = 0;

  friend bool operator==(const Mischief&, const Mischief&) = default;
};

namespace mischief {

/// "wait:300", "drop" ... None for anything else, and for a missing or superfluous amount.
std::optional<Mischief> FromText(std::string_view text);

/// Takes "/@cut:100" off the front of a path. None when there is none, or it is not known.
std::optional<Mischief> TakeFromPath(std::string_view& path);

/// All of them, a line each, for --help. UTF-8.
extern const char kHelp[];

}  // namespace mischief
