#pragma once

#include <cstdint>
#include <string_view>

#include "download_fixed/fixed_download.h"

/// Appends the message of a kdv page to the base; forum.log gets a line for every field. The outcome
/// stands in the current row; a failure is told there by its step and leaves the base as it was.
/// @param page  one that trueMsgKDV calls a message
void ImportKdvMessage(const FixedDownload& with, std::string_view page, std::int32_t number);
