#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/clock.h"
#include "base/ole_date.h"

/// Dates from texts and back with Russian settings, whatever the locale of this machine is.
namespace text {

/// By pattern: d dd dddd m mm mmmm yy yyyy h hh s ss, letter case ignored; "m" behind an hour means
/// minutes; "/" prints as "."; other characters print as themselves.
/// "dd/mm/yy" of 5 July 2001 is 05.07.01. Month names are nominative and capitalised, weekdays lower case.
std::string FormatDate(OleDate date, std::string_view pattern);
/// As above; no date gives the empty text for every pattern.
std::string FormatDate(const std::optional<OleDate>& date, std::string_view pattern);

/// The date without a pattern: "05.07.2001 9:05:07", "05.07.2001" at midnight, "9:05:07" on day 0.
std::string DateText(OleDate date);

/// Reads a date the way the old platform's conversion did: D-M-Y, Y-M-D, M-D-Y, Y-D-M in this
/// order, month names, times. @param clock  gives the year that a text leaves out
/// @return none when the text is not a date
std::optional<OleDate> ParseDate(std::string_view text, const Clock& clock);
bool IsDate(std::string_view text, const Clock& clock);

/// A date from 16-bit year, month and day: years 0-29 are 2000-2029, 30-99 are 1930-1999; months and
/// days roll over. @throws Error 5 for a negative year or a result out of range
OleDate DateFromParts(int year, int month, int day);

}  // namespace text
