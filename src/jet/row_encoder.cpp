#include "jet/row_encoder.h"

#include <algorithm>
#include <array>

#include "base/cat.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "jet/text_codec.h"

namespace jet {
namespace {

constexpr std::size_t kLongestCompressedMemo = 1024;  // characters

void AppendNumber(std::size_t number, std::size_t width, std::string& to) {
  for (std::size_t i = 0; i < width; ++i) to += static_cast<char>(static_cast<std::uint8_t>(number >> (8 * i)));
}

// Blanks behind text, zeros behind bytes.
void FillUp(Version version, const Column& column, std::string& stored) {
  const std::string blank = !IsText(column.type)        ? std::string(1, '\0')
                            : version == Version::kJet4 ? std::string(" \0", 2)
                                                        : " ";
  while (stored.size() + blank.size() <= column.length) stored += blank;
}

// Jet 3 keeps the lower byte of each offset. A jump byte for every 256 bytes of the row names the
// first offset behind them; the row's length counts the jump bytes too.
void AppendOffsetsJet3(std::span<const std::size_t> offsets, std::size_t mask_size, std::string& to) {
  for (std::size_t i = offsets.size(); i > 0; --i) AppendNumber(offsets[i - 1], 1, to);
  const std::size_t rest = 1 + mask_size;
  std::size_t jumps = 0;
  while ((to.size() + jumps + rest - 1) / 256 > jumps) ++jumps;
  constexpr unsigned kNoOffset = 0xFF;
  for (; jumps > 0; --jumps) {
    const auto behind = std::find_if(offsets.begin(), offsets.end(), [=](std::size_t at) { return at >= 256 * jumps; });
    AppendNumber(behind == offsets.end() ? kNoOffset : static_cast<std::size_t>(behind - offsets.begin()), 1, to);
  }
}

}  // namespace

void CheckLength(const Column& column, std::size_t size) {
  const bool bounded = column.type == ColumnType::kText || column.type == ColumnType::kBinary;
  if (bounded && size > column.length)
    throw Error(error_number::kTextTooLong, Cat("Текст длиннее поля "_ru, column.name));
}

void EncodeColumn(Version version, const Column& column, const Value& value, std::string& to) {
  EncodeValue(version, column, value, to);
  CheckLength(column, to.size());
  if (column.fixed && SizeOf(column.type) == 0) return FillUp(version, column, to);
  const bool compress = version == Version::kJet4 && column.compress && IsText(column.type) &&
                        (column.type == ColumnType::kText || to.size() <= 2 * kLongestCompressedMemo);
  if (compress) CompressText(to);
}

RowEncoder::RowEncoder(const Layout& layout, const TableDef& table)
    : layout_(layout), table_(table), variable_(table.variable_columns, nullptr) {
  for (const Column& column : table.columns) {
    if (column.type == ColumnType::kBoolean) continue;
    if (column.fixed)
      fixed_size_ = std::max(fixed_size_, column.fixed_offset + FixedSizeOf(column));
    else
      variable_[column.variable_index] = &column;
  }
}

void RowEncoder::Encode(std::span<const StoredColumn> columns, std::string& to) const {
  to.clear();
  AppendNumber(table_.max_columns, layout_.row_number_size, to);
  AppendFixedPart(columns, to);
  if (table_.variable_columns != 0) AppendVariablePart(columns, to);
  AppendMask(columns, to);
}

void RowEncoder::AppendFixedPart(std::span<const StoredColumn> columns, std::string& to) const {
  const std::size_t begin = to.size();
  to.append(fixed_size_, '\0');
  for (const Column& column : table_.columns) {
    const StoredColumn& stored = columns[column.number];
    if (column.fixed && column.type != ColumnType::kBoolean && stored.bit)
      to.replace(begin + column.fixed_offset, stored.bytes.size(), AsText(stored.bytes));
  }
}

void RowEncoder::AppendVariablePart(std::span<const StoredColumn> columns, std::string& to) const {
  std::array<std::size_t, kMostColumns + 1> offsets;
  for (std::size_t i = 0; i < variable_.size(); ++i) {
    offsets[i] = to.size();
    if (variable_[i] != nullptr && columns[variable_[i]->number].bit)
      to.append(AsText(columns[variable_[i]->number].bytes));
  }
  offsets[variable_.size()] = to.size();
  AppendOffsets(std::span(offsets).first(variable_.size() + 1), to);
  AppendNumber(variable_.size(), layout_.row_number_size, to);
}

void RowEncoder::AppendOffsets(std::span<const std::size_t> offsets, std::string& to) const {
  if (layout_.version == Version::kJet3) return AppendOffsetsJet3(offsets, mask_size(), to);
  for (std::size_t i = offsets.size(); i > 0; --i) AppendNumber(offsets[i - 1], layout_.row_number_size, to);
}

void RowEncoder::AppendMask(std::span<const StoredColumn> columns, std::string& to) const {
  const std::size_t begin = to.size();
  to.append(mask_size(), '\0');
  for (const Column& column : table_.columns)
    if (columns[column.number].bit)
      to[begin + column.number / 8] = static_cast<char>(to[begin + column.number / 8] | 1 << (column.number % 8));
}

}  // namespace jet
