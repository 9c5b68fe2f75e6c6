#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <variant>

#include "base/ole_date.h"

namespace jet {

/// Type codes as a column entry stores them.
enum class ColumnType : std::uint8_t {
  kBoolean = 0x01,
  kByte = 0x02,
  kInteger = 0x03,
  kLong = 0x04,
  kCurrency = 0x05,
  kSingle = 0x06,
  kDouble = 0x07,
  kDateTime = 0x08,
  kBinary = 0x09,
  kText = 0x0A,
  kOle = 0x0B,
  kMemo = 0x0C,
  kGuid = 0x0F,
  kNumeric = 0x10,
  kLongBinary = 0x11,  // bytes in the row, up to a page of them; Jet 4, only in system tables
};

/// Bytes without a meaning of their own: Binary and OLE columns.
struct Binary {
  std::string bytes;
  friend bool operator==(const Binary&, const Binary&) = default;
};

struct Currency {
  std::int64_t ten_thousandths = 0;
  friend bool operator==(const Currency&, const Currency&) = default;
};

/// As stored: u32, u16, u16 little-endian, then eight bytes.
struct Guid {
  std::array<std::uint8_t, 16> bytes{};
  friend bool operator==(const Guid&, const Guid&) = default;
};

/// A decimal of up to 28 digits: magnitude / 10^scale, most significant word first.
struct Numeric {
  bool negative = false;
  std::array<std::uint32_t, 4> magnitude{};
  std::uint8_t scale = 0;
  friend bool operator==(const Numeric&, const Numeric&) = default;
};

using Null = std::monostate;

/// One value of a row. Byte, Integer and Long are std::int32_t; Single and Double are double; Text
/// and Memo are Windows-1251.
using Value = std::variant<Null, bool, std::int32_t, double, OleDate, std::string, Binary, Currency, Guid, Numeric>;

inline bool IsNull(const Value& value) { return std::holds_alternative<Null>(value); }

/// {00112233-4455-6677-8899-AABBCCDDEEFF}
std::string GuidText(const Guid& guid);
/// Plain decimal without trailing zeros behind the point: 3.5, -0.0001, 12.
std::string CurrencyText(Currency currency);
std::string NumericText(const Numeric& numeric);

}  // namespace jet
