#include "sql/packed_rows.h"

#include <cmath>
#include <cstring>
#include <utility>

#include "base/error.h"
#include "sql/sql_errors.h"
#include "text/numbers.h"

namespace sql {
namespace {

using jet::ColumnType;

constexpr std::size_t kBlockSize = 1 << 20;
constexpr std::size_t kVariable = 0;

/// Bytes of a value that has the same size in every row, kVariable for the others.
std::size_t FixedSize(ColumnType type) {
  switch (type) {
    case ColumnType::kBoolean:
    case ColumnType::kByte: return sizeof(std::uint8_t);
    case ColumnType::kInteger: return sizeof(std::int16_t);
    case ColumnType::kLong: return sizeof(std::int32_t);
    case ColumnType::kSingle: return sizeof(float);
    case ColumnType::kDouble:
    case ColumnType::kDateTime: return sizeof(double);
    case ColumnType::kCurrency: return sizeof(jet::Currency);
    case ColumnType::kGuid: return sizeof(jet::Guid);
    case ColumnType::kNumeric: return sizeof(jet::Numeric);
    case ColumnType::kText:
    case ColumnType::kMemo:
    case ColumnType::kBinary:
    case ColumnType::kOle:
    case ColumnType::kLongBinary: return kVariable;
  }
  return kVariable;
}

bool IsText(ColumnType type) { return type == ColumnType::kText || type == ColumnType::kMemo; }

/// Seven bits a byte, lowest first; the eighth says that more follow.
void AppendLength(std::size_t length, std::string& to) {
  for (; length >= 0x80; length >>= 7) to.push_back(static_cast<char>(length | 0x80));
  to.push_back(static_cast<char>(length));
}

std::string_view TakeVariable(const char*& at) {
  std::size_t length = 0;
  for (unsigned shift = 0;; shift += 7) {
    const auto byte = static_cast<unsigned char>(*at++);
    length |= static_cast<std::size_t>(byte & 0x7F) << shift;
    if (byte < 0x80) break;
  }
  const std::string_view bytes(at, length);
  at += length;
  return bytes;
}

template <typename Whole>
Whole ToWhole(const Scalar& value) {
  const bool is_whole = value.kind == ScalarKind::kLong;
  const std::int32_t whole = is_whole ? static_cast<std::int32_t>(value.number) : text::RoundHalfEven(value.number);
  if (!std::in_range<Whole>(whole)) ThrowOverflow();
  return static_cast<Whole>(whole);
}

jet::Currency ToCurrency(double number) {
  constexpr double kUnits = 10'000, kLimit = 9.2e18;
  const double units = std::nearbyint(number * kUnits);
  if (!(std::abs(units) < kLimit)) ThrowOverflow();
  return {static_cast<std::int64_t>(units)};
}

}  // namespace

PackedRows::PackedRows(std::vector<Field> fields) : fields_(std::move(fields)) {
  null_size_ = fixed_size_ = (fields_.size() + 7) / 8;
  std::size_t variables = 0;
  for (const Field& field : fields_) {
    const std::size_t size = FixedSize(field.type);
    const std::size_t at = size == kVariable ? variables++ : fixed_size_;
    places_.push_back({field.type, size == kVariable, static_cast<std::uint32_t>(at)});
    fixed_size_ += size;
  }
  fixed_.assign(fixed_size_, '\0');
}

void PackedRows::AddNull() {
  const std::size_t column = next_column_++;
  char& bits = fixed_[column / 8];
  bits = static_cast<char>(bits | (1 << (column % 8)));
  if (places_[column].variable) variable_.push_back('\0');
}

void PackedRows::AddVariable(std::string_view bytes) {
  ++next_column_;
  AppendLength(bytes.size(), variable_);
  variable_.append(bytes);
}

template <typename Number>
void PackedRows::AddFixed(Number number) {
  std::memcpy(fixed_.data() + places_[next_column_++].at, &number, sizeof number);
}

void PackedRows::Add(const Scalar& value) {
  const ColumnType type = places_[next_column_].type;
  if (value.IsNull()) return AddNull();
  if (IsText(type)) {
    if (value.kind == ScalarKind::kText) return AddVariable(value.text);
    std::string text;
    AppendAsText(value, text);
    return AddVariable(text);
  }
  if (value.kind == ScalarKind::kText) ThrowTypeMismatch();
  switch (type) {
    case ColumnType::kBoolean: return AddFixed(static_cast<std::uint8_t>(value.number != 0));
    case ColumnType::kByte: return AddFixed(ToWhole<std::uint8_t>(value));
    case ColumnType::kInteger: return AddFixed(ToWhole<std::int16_t>(value));
    case ColumnType::kLong: return AddFixed(ToWhole<std::int32_t>(value));
    case ColumnType::kSingle: return AddFixed(static_cast<float>(value.number));
    case ColumnType::kDouble:
    case ColumnType::kDateTime: return AddFixed(value.number);
    case ColumnType::kCurrency: return AddFixed(ToCurrency(value.number));
    default: ThrowTypeMismatch();
  }
}

void PackedRows::Add(const jet::Value& value) {
  if (const auto* const binary = std::get_if<jet::Binary>(&value)) return AddVariable(binary->bytes);
  if (const auto* const guid = std::get_if<jet::Guid>(&value)) return AddFixed(*guid);
  if (const auto* const numeric = std::get_if<jet::Numeric>(&value)) return AddFixed(*numeric);
  if (const auto* const currency = std::get_if<jet::Currency>(&value)) return AddFixed(*currency);
  std::string buffer;
  Add(ToScalar(value, buffer));
}

void PackedRows::Finish() {
  const std::size_t size = fixed_.size() + variable_.size();
  if (size > block_left_) {
    const std::size_t room = std::max(size, kBlockSize);
    blocks_.push_back(std::make_unique<char[]>(room));
    block_at_ = blocks_.back().get();
    block_left_ = room;
  }
  std::memcpy(block_at_, fixed_.data(), fixed_.size());
  if (!variable_.empty()) std::memcpy(block_at_ + fixed_.size(), variable_.data(), variable_.size());
  rows_.push_back(block_at_);
  block_at_ += size;
  block_left_ -= size;
  std::fill_n(fixed_.begin(), null_size_, '\0');
  variable_.clear();
  next_column_ = 0;
}

bool PackedRows::Row::IsNull(std::size_t column) const {
  return (static_cast<unsigned char>(bytes_[column / 8]) >> (column % 8) & 1) != 0;
}

std::string_view PackedRows::Row::Variable(std::size_t column) const {
  const char* at = bytes_ + rows_->fixed_size_;
  for (std::size_t before = rows_->places_[column].at; before > 0; --before) TakeVariable(at);
  return TakeVariable(at);
}

template <typename Number>
Number PackedRows::Row::Fixed(std::size_t column) const {
  Number number;
  std::memcpy(&number, bytes_ + rows_->places_[column].at, sizeof number);
  return number;
}

Scalar PackedRows::Row::Read(std::size_t column, std::string& buffer) const {
  if (IsNull(column)) return {};
  switch (rows_->places_[column].type) {
    case ColumnType::kText:
    case ColumnType::kMemo: return Scalar::Text(Variable(column));
    case ColumnType::kLong: return Scalar::Long(Fixed<std::int32_t>(column));
    case ColumnType::kInteger: return Scalar::Long(Fixed<std::int16_t>(column));
    case ColumnType::kByte: return Scalar::Long(Fixed<std::uint8_t>(column));
    case ColumnType::kBoolean: return Scalar::Boolean(Fixed<std::uint8_t>(column) != 0);
    case ColumnType::kDateTime: return Scalar::Date({Fixed<double>(column)});
    case ColumnType::kDouble: return Scalar::Double(Fixed<double>(column));
    case ColumnType::kSingle: return Scalar::Double(static_cast<double>(Fixed<float>(column)));
    default: return ToScalar(Get(column), buffer);
  }
}

StoredText PackedRows::Row::ReadStored(std::size_t column) const {
  if (IsNull(column)) return {};
  return {StoredText::Encoding::kWindows1251, Variable(column)};
}

jet::Value PackedRows::Row::Get(std::size_t column) const {
  if (IsNull(column)) return jet::Null();
  switch (rows_->places_[column].type) {
    case ColumnType::kText:
    case ColumnType::kMemo: return std::string(Variable(column));
    case ColumnType::kBinary:
    case ColumnType::kOle:
    case ColumnType::kLongBinary: return jet::Binary{std::string(Variable(column))};
    case ColumnType::kLong: return Fixed<std::int32_t>(column);
    case ColumnType::kInteger: return std::int32_t{Fixed<std::int16_t>(column)};
    case ColumnType::kByte: return std::int32_t{Fixed<std::uint8_t>(column)};
    case ColumnType::kBoolean: return Fixed<std::uint8_t>(column) != 0;
    case ColumnType::kDateTime: return OleDate{Fixed<double>(column)};
    case ColumnType::kDouble: return Fixed<double>(column);
    case ColumnType::kSingle: return static_cast<double>(Fixed<float>(column));
    case ColumnType::kCurrency: return Fixed<jet::Currency>(column);
    case ColumnType::kGuid: return Fixed<jet::Guid>(column);
    case ColumnType::kNumeric: return Fixed<jet::Numeric>(column);
  }
  return jet::Null();
}

}  // namespace sql
