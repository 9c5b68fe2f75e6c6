#pragma once

#include <cstdint>
#include <string_view>

#include "download_configured/configured_download.h"

/// Cuts the message out of a page and stores it; the fields go to the current row and the status bar.
/// For ows_ptrv the author's own page is fetched for the e-mail.
/// @param timeout  of that fetch, in seconds
/// @return was the message stored with all its fields? A message whose date cannot be read is stored
///         without it and yet reported as failed: users look for such rows; kept so. Whatever else fails
///         stores nothing.
bool ImportPage(const ConfiguredDownload& with, std::string_view page, std::int32_t number, std::int32_t timeout);
