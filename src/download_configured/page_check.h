#pragma once

#include <string_view>

/// Tells a message from a server's or a proxy's report, for the forums whose addresses forum.ini gives.
/// @param kind  "ptrv", "moysha", "gelium" or "ows_ptrv"
/// @return a page_code
int trueMsg(std::string_view kind, std::string_view page);
