#pragma once

#include <string_view>

/// What the status bar says about a state of a transfer; empty for numbers that are none of 0 to 12.
std::string_view TransferStateText(int state);
