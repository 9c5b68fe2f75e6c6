#include "text/numbers.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>
#include <system_error>

#include "base/cat.h"
#include "base/checked.h"
#include "base/error.h"
#include "base/ru_literal.h"

namespace text {
namespace {

constexpr std::string_view kWhiteSpace = " \t\r\n";

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsSign(char c) { return c == '+' || c == '-'; }
bool IsAnyOf(char c, std::string_view set) { return set.find(c) != std::string_view::npos; }

[[noreturn]] void ThrowNoNumber() { throw ConversionError(error_number::kTypeMismatch, "Значение не того типа"_ru); }

// Reads a text character by character, white space left out or not.
class Reader {
 public:
  Reader(std::string_view text, bool skip_white_space) : rest_(text), skip_(skip_white_space) { Skip(); }

  static constexpr char kEnd = '\0';  // fits into no number, so a NUL in the text ends one as well
  char Peek() const { return rest_.empty() ? kEnd : rest_.front(); }
  bool AtEnd() const { return rest_.empty(); }
  char Take() {
    const char taken = rest_.front();
    rest_.remove_prefix(1);
    Skip();
    return taken;
  }
  bool TakeIf(std::string_view set) {
    const bool fits = !AtEnd() && IsAnyOf(Peek(), set);
    if (fits) Take();
    return fits;
  }

 private:
  void Skip() {
    if (skip_) rest_.remove_prefix(std::min(rest_.find_first_not_of(kWhiteSpace), rest_.size()));
  }

  std::string_view rest_;
  bool skip_;
};

// A decimal number in the one spelling that std::from_chars takes.
struct Decimal {
  std::string digits;         // with at most one "."
  std::string exponent = "";  // with its sign
  bool negative = false;
  bool readable = false;  // there is at least one digit
};

void TakeDigits(Reader& from, std::string& to) {
  while (IsDigit(from.Peek())) to += from.Take();
}

Decimal ReadDecimal(Reader& from, std::string_view decimal_sign) {
  Decimal number;
  if (IsSign(from.Peek())) number.negative = from.Take() == '-';
  TakeDigits(from, number.digits);
  number.readable = !number.digits.empty();
  if (from.TakeIf(decimal_sign)) {
    number.digits += '.';
    TakeDigits(from, number.digits);
    number.readable = number.digits.size() > 1;
  }
  if (!number.readable) return number;
  Reader ahead = from;
  if (!ahead.TakeIf("eEdD")) return number;
  const bool negative_exponent = IsSign(ahead.Peek()) && ahead.Take() == '-';
  if (!IsDigit(ahead.Peek())) return number;
  number.exponent = negative_exponent ? "-" : "";
  TakeDigits(ahead, number.exponent);
  from = ahead;
  return number;
}

// Where the first digit other than 0 stands: 1 for 5.0, 2 for 50, 0 for 0.5.
double Magnitude(std::string_view digits) {
  const auto point = static_cast<double>(std::min(digits.find('.'), digits.size()));
  const std::size_t first = digits.find_first_not_of("0.");
  if (first == std::string_view::npos) return -std::numeric_limits<double>::infinity();
  return point - static_cast<double>(first) + (static_cast<double>(first) > point ? 1 : 0);
}

// std::from_chars says "out of range" of numbers too large and too small alike.
bool TooLarge(const Decimal& number) {
  long exponent = 0;
  const char* const end = number.exponent.data() + number.exponent.size();
  if (std::from_chars(number.exponent.data(), end, exponent).ec == std::errc::result_out_of_range)
    return number.exponent.front() != '-' && number.digits.find_first_not_of("0.") != std::string::npos;
  return Magnitude(number.digits) + static_cast<double>(exponent) > 0;
}

double Value(const Decimal& number) {
  if (!number.readable) return 0;
  std::string spelling = number.digits;
  if (!number.exponent.empty()) spelling.append("e").append(number.exponent);
  double value = 0;
  const auto result = std::from_chars(spelling.data(), spelling.data() + spelling.size(), value);
  if (result.ec == std::errc::result_out_of_range) {
    if (TooLarge(number)) ThrowOverflow();
    return 0;
  }
  return number.negative ? -value : value;
}

int DigitValue(char c) {
  if (IsDigit(c)) return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return std::numeric_limits<int>::max();
}

// What follows "&": a number of base 16 or 8 that is a 16-bit one with a sign when it fits into 16 bits,
// unless a second "&" asks for 32 bits. None when there is no digit.
std::optional<std::int32_t> ReadAmpersandNumber(Reader& from) {
  const bool hexadecimal = from.TakeIf("hH");
  if (!hexadecimal) from.TakeIf("oO");
  const int base = hexadecimal ? 16 : 8;
  if (DigitValue(from.Peek()) >= base) return std::nullopt;
  std::uint32_t value = 0;
  while (DigitValue(from.Peek()) < base) {
    value = CheckedMul(value, static_cast<std::uint32_t>(base));
    value |= static_cast<std::uint32_t>(DigitValue(from.Take()));
  }
  const bool wide = from.TakeIf("&") || value > 0xFFFF;
  return wide ? static_cast<std::int32_t>(value) : static_cast<std::int16_t>(value);
}

// None when the text is no number.
std::optional<double> ReadWhole(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(kWhiteSpace);
  if (begin == std::string_view::npos) return std::nullopt;
  Reader from(text.substr(begin, text.find_last_not_of(kWhiteSpace) + 1 - begin), false);
  if (from.TakeIf("&")) {
    const std::optional<std::int32_t> value = ReadAmpersandNumber(from);
    return value && from.AtEnd() ? std::optional<double>(*value) : std::nullopt;
  }
  const Decimal number = ReadDecimal(from, ",");
  return number.readable && from.AtEnd() ? std::optional<double>(Value(number)) : std::nullopt;
}

template <typename Whole>
Whole Fitting(double whole) {
  constexpr double kLeast = std::numeric_limits<Whole>::min(), kMost = std::numeric_limits<Whole>::max();
  if (!(whole >= kLeast && whole <= kMost)) ThrowOverflow();
  return static_cast<Whole>(whole);
}

double HalfEven(double number) {
  const double below = std::floor(number), part = number - below;
  if (part != 0.5) return part < 0.5 ? below : below + 1;
  return std::fmod(below, 2) == 0 ? below : below + 1;
}

}  // namespace

double LenientNumber(std::string_view text) {
  Reader from(text, true);
  if (from.TakeIf("&")) return ReadAmpersandNumber(from).value_or(0);
  return Value(ReadDecimal(from, "."));
}

std::int32_t LenientLong(std::string_view text) { return Fitting<std::int32_t>(std::trunc(LenientNumber(text))); }

double StrictNumber(std::string_view text) {
  const std::optional<double> number = ReadWhole(text);
  if (!number) ThrowNoNumber();
  return *number;
}

std::int16_t StrictInteger(std::string_view text) { return Fitting<std::int16_t>(HalfEven(StrictNumber(text))); }

std::int32_t StrictLong(std::string_view text) { return Fitting<std::int32_t>(HalfEven(StrictNumber(text))); }

bool IsNumber(std::string_view text) {
  try {
    return ReadWhole(text).has_value();
  } catch (const Error&) {  // a number, but beyond the range of all
    return false;
  }
}

std::int32_t RoundHalfEven(double number) { return Fitting<std::int32_t>(HalfEven(number)); }

std::string Padded(std::int64_t number, int digits) {
  std::string text = Cat(number);
  const std::size_t sign = number < 0 ? 1 : 0, wanted = static_cast<std::size_t>(std::max(digits, 0));
  if (text.size() - sign < wanted) text.insert(sign, wanted - (text.size() - sign), '0');
  return text;
}

std::string NumberText(double number) {
  constexpr double kSmallestPlain = 1e-15, kLargestPlain = 1e15;
  const double size = std::abs(number);
  if (size == 0) return "0";
  const bool plain = size >= kSmallestPlain && size < kLargestPlain;
  char text[64];
  const auto result =
      std::to_chars(text, text + sizeof text, number, plain ? std::chars_format::fixed : std::chars_format::scientific);
  return std::string(text, result.ptr);
}

}  // namespace text
