#include "jet/value.h"

#include <algorithm>

#include "base/cat.h"

namespace jet {
namespace {

// Puts the decimal point `scale` digits before the end and drops zeros behind it.
std::string WithPoint(std::string digits, std::size_t scale, bool negative) {
  if (digits.size() <= scale) digits.insert(0, scale + 1 - digits.size(), '0');
  std::string fraction = digits.substr(digits.size() - scale);
  digits.resize(digits.size() - scale);
  while (!fraction.empty() && fraction.back() == '0') fraction.pop_back();
  const bool zero = digits == "0" && fraction.empty();
  return Cat(negative && !zero ? "-" : "", digits, fraction.empty() ? "" : ".", fraction);
}

// Divides in place. @return the remainder
std::uint32_t DivideByTen(std::array<std::uint32_t, 4>& magnitude) {
  std::uint64_t rest = 0;
  for (std::uint32_t& word : magnitude) {
    rest = (rest << 32) | word;
    word = static_cast<std::uint32_t>(rest / 10);
    rest %= 10;
  }
  return static_cast<std::uint32_t>(rest);
}

}  // namespace

std::string GuidText(const Guid& guid) {
  // Where the bytes of the text stand in the stored form; -1 is a dash.
  constexpr int kOrder[] = {3, 2, 1, 0, -1, 5, 4, -1, 7, 6, -1, 8, 9, -1, 10, 11, 12, 13, 14, 15};
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string text = "{";
  for (const int from : kOrder) {
    if (from < 0) {
      text += '-';
      continue;
    }
    const std::uint8_t byte = guid.bytes[static_cast<std::size_t>(from)];
    text += kDigits[byte >> 4];
    text += kDigits[byte & 0xF];
  }
  return text + '}';
}

std::string CurrencyText(Currency currency) {
  constexpr std::size_t kDecimals = 4;
  const bool negative = currency.ten_thousandths < 0;
  const auto bits = static_cast<std::uint64_t>(currency.ten_thousandths);
  return WithPoint(Cat(negative ? 0 - bits : bits), kDecimals, negative);
}

std::string NumericText(const Numeric& numeric) {
  std::array<std::uint32_t, 4> magnitude = numeric.magnitude;
  std::string digits;
  do digits += static_cast<char>('0' + DivideByTen(magnitude));
  while (std::any_of(magnitude.begin(), magnitude.end(), [](std::uint32_t word) { return word != 0; }));
  std::reverse(digits.begin(), digits.end());
  return WithPoint(std::move(digits), numeric.scale, numeric.negative);
}

}  // namespace jet
