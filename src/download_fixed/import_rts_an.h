#pragma once

#include <cstdint>
#include <string_view>

#include "download_fixed/fixed_download.h"

/// Appends the message of an rts-an page to the base. The outcome stands in the current row; a failure
/// is told there by its step and leaves the base as it was.
/// @param page  one that rts_an::trueMsg calls a message
void ImportRtsAnMessage(const FixedDownload& with, std::string_view page, std::int32_t number);
