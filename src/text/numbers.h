#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Numbers from texts and back, as a Russian desktop reads and writes them, whatever the locale of
/// this machine is.
namespace text {

/// Lenient reading: blanks, TABs, CRs and LFs are skipped wherever they stand; then a sign, digits,
/// one ".", digits, an exponent (E or D), or &H / &O; reading stops at the first character that
/// does not fit. Nothing readable gives 0. @throws Error 6 out of a double's range
double LenientNumber(std::string_view text);
/// LenientNumber cut toward zero. @throws Error 6 outside 32 bits
std::int32_t LenientLong(std::string_view text);

/// Strict conversion: the whole text must be a number (decimal comma, exponent, &H, &O, outer white space
/// allowed), rounded half to even. @throws ConversionError 13 when it is none, Error 6 out of range
double StrictNumber(std::string_view text);
std::int16_t StrictInteger(std::string_view text);
std::int32_t StrictLong(std::string_view text);
bool IsNumber(std::string_view text);

/// Half to even, the way fractional numbers become whole ones. @throws Error 6 outside 32 bits
std::int32_t RoundHalfEven(double number);

/// At least `digits` digits with leading zeros; the sign stands before them.
std::string Padded(std::int64_t number, int digits);
/// A number as text: shortest decimal that reads back equal, decimal point; no exponent from 1e-15 to 1e15.
std::string NumberText(double number);

}  // namespace text
