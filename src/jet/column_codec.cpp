#include "jet/column_codec.h"

#include <bit>
#include <limits>

#include "base/cp1251.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "jet/text_codec.h"

namespace jet {
namespace {

constexpr unsigned kNumericNegative = 0x80;
constexpr std::size_t kNumericMagnitudeAt = 1;  // four u32, the most significant first

Numeric DecodeNumeric(Bytes stored, std::uint8_t scale) {
  Numeric numeric;
  numeric.negative = (LoadU8(stored, 0) & kNumericNegative) != 0;
  for (std::size_t i = 0; i < numeric.magnitude.size(); ++i)
    numeric.magnitude[i] = LoadU32(stored, kNumericMagnitudeAt + 4 * i);
  numeric.scale = scale;
  return numeric;
}

Guid DecodeGuid(Bytes stored) {
  Guid guid;
  for (std::size_t i = 0; i < guid.bytes.size(); ++i) guid.bytes[i] = LoadU8(stored, i);
  return guid;
}

[[noreturn]] void ThrowUnsuitable() {
  throw ConversionError(error_number::kConversion, "Значение не подходит к полю"_ru);
}

template <typename Kind>
const Kind& Expect(const Value& value) {
  const Kind* const held = std::get_if<Kind>(&value);
  if (held == nullptr) ThrowUnsuitable();
  return *held;
}

std::int32_t ExpectInRange(const Value& value, std::int32_t least, std::int32_t most) {
  const std::int32_t number = Expect<std::int32_t>(value);
  if (number < least || number > most) ThrowUnsuitable();
  return number;
}

void PutInteger(std::uint64_t bits, std::size_t size, std::string& to) {
  for (std::size_t i = 0; i < size; ++i) to += static_cast<char>(static_cast<std::uint8_t>(bits >> (8 * i)));
}

void PutSingle(double number, std::string& to) {
  const auto single = static_cast<float>(number);
  if (single - single != 0 && number - number == 0) ThrowUnsuitable();  // finite, but not as a Single
  PutInteger(std::bit_cast<std::uint32_t>(single), 4, to);
}

void PutNumeric(const Numeric& numeric, const Column& column, std::string& to) {
  if (numeric.scale != column.scale) ThrowUnsuitable();
  to += static_cast<char>(numeric.negative ? kNumericNegative : 0);
  for (const std::uint32_t word : numeric.magnitude) PutInteger(word, 4, to);
}

}  // namespace

bool IsKnownType(Version version, ColumnType type) {
  switch (type) {
    case ColumnType::kBoolean:
    case ColumnType::kByte:
    case ColumnType::kInteger:
    case ColumnType::kLong:
    case ColumnType::kCurrency:
    case ColumnType::kSingle:
    case ColumnType::kDouble:
    case ColumnType::kDateTime:
    case ColumnType::kBinary:
    case ColumnType::kText:
    case ColumnType::kOle:
    case ColumnType::kMemo:
    case ColumnType::kGuid: return true;
    case ColumnType::kNumeric:
    case ColumnType::kLongBinary: return version == Version::kJet4;
  }
  return false;
}

bool IsLongValue(ColumnType type) { return type == ColumnType::kMemo || type == ColumnType::kOle; }

bool IsText(ColumnType type) { return type == ColumnType::kText || type == ColumnType::kMemo; }

std::size_t SizeOf(ColumnType type) {
  switch (type) {
    case ColumnType::kByte: return 1;
    case ColumnType::kInteger: return 2;
    case ColumnType::kLong:
    case ColumnType::kSingle: return 4;
    case ColumnType::kCurrency:
    case ColumnType::kDouble:
    case ColumnType::kDateTime: return 8;
    case ColumnType::kGuid: return 16;
    case ColumnType::kNumeric: return 17;
    default: return 0;
  }
}

std::size_t FixedSizeOf(const Column& column) {
  const std::size_t size = SizeOf(column.type);
  return size != 0 ? size : column.length;
}

std::optional<Value> DecodeValue(Version version, const Column& column, Bytes stored) {
  const std::size_t size = SizeOf(column.type);
  if (size != 0 && stored.size() != size) return std::nullopt;
  switch (column.type) {
    case ColumnType::kByte: return std::int32_t{LoadU8(stored, 0)};
    case ColumnType::kInteger: return std::int32_t{static_cast<std::int16_t>(LoadU16(stored, 0))};
    case ColumnType::kLong: return static_cast<std::int32_t>(LoadU32(stored, 0));
    case ColumnType::kCurrency: return Currency{static_cast<std::int64_t>(LoadU64(stored, 0))};
    case ColumnType::kSingle: return double{LoadF32(stored, 0)};
    case ColumnType::kDouble: return LoadF64(stored, 0);
    case ColumnType::kDateTime: return OleDate{LoadF64(stored, 0)};
    case ColumnType::kGuid: return DecodeGuid(stored);
    case ColumnType::kNumeric: return DecodeNumeric(stored, column.scale);
    case ColumnType::kBinary:
    case ColumnType::kLongBinary:
    case ColumnType::kOle: return Binary{std::string(AsText(stored))};
    case ColumnType::kText:
    case ColumnType::kMemo: {
      std::string text;
      if (!AppendText(version, stored, text)) return std::nullopt;
      return text;
    }
    case ColumnType::kBoolean: break;
  }
  return std::nullopt;
}

void EncodeValue(Version version, const Column& column, const Value& value, std::string& to) {
  using Short = std::numeric_limits<std::int16_t>;
  to.clear();
  const auto bits = [](std::int32_t number) { return static_cast<std::uint32_t>(number); };
  switch (column.type) {
    case ColumnType::kByte: return PutInteger(bits(ExpectInRange(value, 0, 0xFF)), 1, to);
    case ColumnType::kInteger: return PutInteger(bits(ExpectInRange(value, Short::min(), Short::max())), 2, to);
    case ColumnType::kLong: return PutInteger(bits(Expect<std::int32_t>(value)), 4, to);
    case ColumnType::kCurrency:
      return PutInteger(static_cast<std::uint64_t>(Expect<Currency>(value).ten_thousandths), 8, to);
    case ColumnType::kSingle: return PutSingle(Expect<double>(value), to);
    case ColumnType::kDouble: return PutInteger(std::bit_cast<std::uint64_t>(Expect<double>(value)), 8, to);
    case ColumnType::kDateTime: return PutInteger(std::bit_cast<std::uint64_t>(Expect<OleDate>(value).days), 8, to);
    case ColumnType::kNumeric: return PutNumeric(Expect<Numeric>(value), column, to);
    case ColumnType::kGuid:
      for (const std::uint8_t byte : Expect<Guid>(value).bytes) PutInteger(byte, 1, to);
      return;
    case ColumnType::kBinary:
    case ColumnType::kLongBinary:
    case ColumnType::kOle: to = Expect<Binary>(value).bytes; return;
    case ColumnType::kText:
    case ColumnType::kMemo: {
      const std::string& text = Expect<std::string>(value);
      to = version == Version::kJet4 ? cp1251::ToUtf16(text) : text;
      return;
    }
    case ColumnType::kBoolean: ThrowUnsuitable();
  }
}

}  // namespace jet
