#pragma once

#include <compare>

/// Local wall-clock time to the second; month and day count from 1.
struct CivilTime {
  int year = 1899, month = 12, day = 30;
  int hour = 0, minute = 0, second = 0;
  friend bool operator==(const CivilTime&, const CivilTime&) = default;
};

/// A date as bases hold it: whole part = days since 1899-12-30, fraction = part of the day. For
/// negative values the fraction still counts forward from midnight: -1.25 is 1899-12-29 06:00.
/// No zone, no daylight saving.
struct OleDate {
  double days = 0;
  friend auto operator<=>(const OleDate&, const OleDate&) = default;
};

namespace ole_date {

/// The range of a date: 0100-01-01 to 9999-12-31 23:59:59.
bool InRange(OleDate date);

/// Rounded to the nearest second. @throws ConversionError outside the range
CivilTime ToCivil(OleDate date);

/// A real calendar date and time only; no rolling over.
/// @throws ConversionError when there is no such moment or it is out of range
OleDate FromCivil(const CivilTime& time);

/// Days since 1899-12-30 of a proleptic Gregorian date; month and day must exist.
long DayNumber(int year, int month, int day);

/// 28 to 31. @param month 1 to 12
int DaysInMonth(int year, int month);

/// Sunday = 1 ... Saturday = 7. @throws ConversionError outside the range
int Weekday(OleDate date);

}  // namespace ole_date
