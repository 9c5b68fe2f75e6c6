#pragma once

#include <string_view>

namespace mdl_All {

/// The month that a forum's date names in Russian or English, "01" to "12"; "01" when it names none. The
/// name may stand anywhere; of several the first one of a fixed list counts, Russian before English.
std::string_view MonthNumber(std::string_view date);

/// The text between two markers, letter case ignored; a view of `text`.
/// @return without outer blanks when both markers are there; the whole rest, blanks kept, when `end` is
///         missing; empty when `start` is missing
std::string_view TextBetween(std::string_view text, std::string_view start, std::string_view end);

}  // namespace mdl_All
