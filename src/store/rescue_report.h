#pragma once

#include <string>
#include <vector>

#include "store/rescue_messages.h"

// What a rescue has come to, in words: Russian, Windows-1251.

/// A sentence or two.
std::string RescueSummary(const RescueResult& result);
/// What is worth a line each: numbers of messages, pages, what was not carried over. Long lists are cut.
std::vector<std::string> RescueDetails(const RescueResult& result);
