#pragma once

#include <cstdint>

#include "download_fixed/fixed_download.h"

/// The last message number on a forum, told in the status bar and the hint; the buttons show a running
/// session meanwhile. What cannot be fetched or read counts as 0. @throws Error when the base fails

/// Never calls the number wrong: one below the base's last is told as it is, and left to the session.
std::int32_t GetLastKDV(const FixedDownload& with);
/// Calls a number below the base's last wrong, yet returns it.
std::int32_t GetLastRtsAn(const FixedDownload& with);
