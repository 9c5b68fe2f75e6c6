#include "jet/row.h"

#include <utility>

#include "base/error.h"
#include "base/ru_literal.h"
#include "jet/column_codec.h"
#include "jet/text_codec.h"

namespace jet {
namespace {

[[noreturn]] void ThrowWrongType() { throw Error(error_number::kTypeMismatch, "Значение не того типа"_ru); }

}  // namespace

void Row::ThrowDamaged(std::string_view what) const { throw FormatError(what, id_.page, id_.slot); }

void Row::Assign(const PageFile& file, const TableDef& def, RowId id, Page page, Bytes bytes) {
  file_ = &file;
  id_ = id;
  page_ = std::move(page);
  bytes_ = bytes;
  const std::size_t count_size = file.layout().row_number_size;
  if (bytes.size() < count_size) ThrowDamaged("Строка короче, чем бывают строки"_ru);
  stored_columns_ = count_size == 1 ? LoadU8(bytes, 0) : LoadU16(bytes, 0);
  const std::size_t mask_size = (stored_columns_ + 7) / 8;
  if (mask_size > bytes.size() - count_size) ThrowDamaged("Строка короче, чем бывают строки"_ru);
  const std::size_t mask_at = bytes.size() - mask_size;
  mask_ = bytes.subspan(mask_at);
  variable_count_ = 0;
  fixed_end_ = mask_at;
  if (def.variable_columns == 0) return;
  if (file.layout().version == Version::kJet3)
    FindVariablePartJet3(mask_at);
  else
    FindVariablePartJet4(mask_at);
}

// From the mask backwards: the count, jump bytes, the offsets' low bytes, first column first. A
// jump byte names the first offset that lies in the next 256 bytes.
void Row::FindVariablePartJet3(std::size_t mask_at) {
  std::size_t jumps = (bytes_.size() - 1) / 256;
  if (mask_at < 3 + jumps) ThrowDamaged("Строка короче, чем бывают строки"_ru);
  const std::size_t count = LoadU8(bytes_, mask_at - 1);
  const std::size_t first_at = mask_at - 2 - jumps;
  if (count > first_at - 1) ThrowDamaged("Число полей строки неверно"_ru);
  const std::size_t end_at = first_at - count;
  if (jumps > 0 && end_at / 256 < jumps) --jumps;  // the last one is a dummy
  for (std::size_t i = 0, jump = 0; i <= count; ++i) {
    while (jump < jumps && LoadU8(bytes_, mask_at - 2 - jump) == i) ++jump;
    offsets_[i] = static_cast<std::uint16_t>(LoadU8(bytes_, first_at - i) + 256 * jump);
  }
  SetVariablePart(count, 1, end_at);
}

// From the mask backwards: the count, the offsets, first column first.
void Row::FindVariablePartJet4(std::size_t mask_at) {
  if (mask_at < 6) ThrowDamaged("Строка короче, чем бывают строки"_ru);
  const std::size_t count = LoadU16(bytes_, mask_at - 2);
  if (count > kMostColumns || 6 + 2 * count > mask_at) ThrowDamaged("Число полей строки неверно"_ru);
  const std::size_t first_at = mask_at - 4;
  for (std::size_t i = 0; i <= count; ++i) offsets_[i] = LoadU16(bytes_, first_at - 2 * i);
  SetVariablePart(count, 2, first_at - 2 * count);
}

void Row::SetVariablePart(std::size_t count, std::size_t least, std::size_t most) {
  std::size_t previous = least;
  for (std::size_t i = 0; i <= count; ++i) {
    if (offsets_[i] < previous) ThrowDamaged("Поля строки перекрываются"_ru);
    previous = offsets_[i];
  }
  if (previous > most) ThrowDamaged("Поле выходит за край строки"_ru);
  variable_count_ = count;
  fixed_end_ = offsets_[0];
}

bool Row::MaskBit(const Column& column) const {
  return column.number < stored_columns_ && ((LoadU8(mask_, column.number / 8) >> (column.number % 8)) & 1) != 0;
}

bool Row::IsNull(const Column& column) const {
  if (column.type == ColumnType::kBoolean) return false;
  return !MaskBit(column) || (!column.fixed && column.variable_index >= variable_count_);
}

Bytes Row::Stored(const Column& column) const {
  if (column.type == ColumnType::kBoolean || IsNull(column)) return {};
  if (!column.fixed) {
    const std::size_t begin = offsets_[column.variable_index];
    return bytes_.subspan(begin, offsets_[column.variable_index + std::size_t{1}] - begin);
  }
  const std::size_t begin = file_->layout().row_number_size + column.fixed_offset;
  const std::size_t size = FixedSizeOf(column);
  if (begin + size > fixed_end_) ThrowDamaged("Поле выходит за край строки"_ru);
  return bytes_.subspan(begin, size);
}

Bytes Row::StoredNumber(const Column& column) const {
  const Bytes stored = Stored(column);
  if (stored.size() != SizeOf(column.type)) ThrowDamaged("Поле не той длины"_ru);
  return stored;
}

bool Row::Bool(const Column& column) const {
  if (column.type != ColumnType::kBoolean) ThrowWrongType();
  return MaskBit(column);
}

std::int32_t Row::Int(const Column& column) const {
  const bool null = IsNull(column);
  switch (column.type) {
    case ColumnType::kByte: return null ? 0 : LoadU8(StoredNumber(column), 0);
    case ColumnType::kInteger: return null ? 0 : static_cast<std::int16_t>(LoadU16(StoredNumber(column), 0));
    case ColumnType::kLong: return null ? 0 : static_cast<std::int32_t>(LoadU32(StoredNumber(column), 0));
    default: ThrowWrongType();
  }
}

std::optional<OleDate> Row::Date(const Column& column) const {
  if (column.type != ColumnType::kDateTime) ThrowWrongType();
  if (IsNull(column)) return std::nullopt;
  return OleDate{LoadF64(StoredNumber(column), 0)};
}

void Row::AppendText(const Column& column, std::string& to) const {
  if (!IsText(column.type)) ThrowWrongType();
  if (IsNull(column)) return;
  const Version version = file_->layout().version;
  const Bytes stored = Stored(column);
  const bool whole = column.type == ColumnType::kMemo
                         ? jet::AppendText(version, LongValue(*file_, stored, id_).data(), to)
                         : jet::AppendText(version, stored, to);
  if (!whole) ThrowDamaged("Текст повреждён"_ru);
}

Value Row::Get(const Column& column) const {
  if (column.type == ColumnType::kBoolean) return MaskBit(column);
  if (IsNull(column)) return Null{};
  const Version version = file_->layout().version;
  const Bytes stored = Stored(column);
  std::optional<Value> value = IsLongValue(column.type)
                                   ? DecodeValue(version, column, LongValue(*file_, stored, id_).data())
                                   : DecodeValue(version, column, stored);
  if (!value) ThrowDamaged("Значение поля повреждено"_ru);
  return *std::move(value);
}

void Row::ReadStored(const Column& column, std::string& to) const {
  if (!IsLongValue(column.type) || IsNull(column))
    to.assign(AsText(Stored(column)));
  else
    to.assign(AsText(LongValue(*file_, Stored(column), id_).data()));
}

}  // namespace jet
