#include "jet/row_draft.h"

#include "base/cat.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "jet/long_value_writer.h"

namespace jet {

RowDraft::RowDraft(const Layout& layout, const TableDef& table, const TableProperties& properties)
    : layout_(layout), table_(table), encoder_(layout, table), cells_(table.max_columns), in_row_(table.max_columns) {
  for (const Column& column : table.columns) cells_[column.number].demands = properties.Of(column.name);
}

void RowDraft::Start(const Row* before) {
  before_ = before;
  for (const Column& column : table_.columns) {
    Cell& cell = cells_[column.number];
    cell.changed = cell.outside = false;
    cell.stored = {};
    if (before == nullptr) continue;
    cell.stored.bit = column.type == ColumnType::kBoolean ? before->Bool(column) : !before->IsNull(column);
    cell.stored.bytes = before->Stored(column);
  }
}

void RowDraft::Set(const Assignment& assignment) {
  const Column& column = *assignment.column;
  Cell& cell = cells_[column.number];
  cell.stored = {};
  cell.changed = true;
  if (IsNull(assignment.value)) return;
  if (column.type == ColumnType::kBoolean) {
    const bool* const truth = std::get_if<bool>(&assignment.value);
    if (truth == nullptr) throw ConversionError(error_number::kConversion, "Значение не подходит к полю"_ru);
    cell.stored.bit = *truth;
    return;
  }
  EncodeColumn(layout_.version, column, assignment.value, cell.buffer);
  if (IsLongValue(column.type)) CheckLongValueSize(cell.buffer.size());
  cell.stored = {true, AsBytes(cell.buffer)};
}

StoredColumn RowDraft::Whole(const Column& column) {
  Cell& cell = cells_[column.number];
  if (!IsLongValue(column.type) || cell.changed || !cell.stored.bit) return cell.stored;
  before_->ReadStored(column, cell.buffer);
  return {true, AsBytes(cell.buffer)};
}

void RowDraft::Finish() {
  for (const Column& column : table_.columns)
    if (cells_[column.number].changed || before_ == nullptr) CheckDemands(column);
  PlaceLongValues(false);
  if (FitsPage()) return;
  PlaceLongValues(true);
  if (!FitsPage())
    throw Error(error_number::kTextTooLong, "Запись слишком длинная: её поля вместе не помещаются в базе"_ru);
}

void RowDraft::CheckDemands(const Column& column) const {
  const Cell& cell = cells_[column.number];
  if (column.type == ColumnType::kBoolean) return;
  if (cell.demands.required && !cell.stored.bit)
    throw Error(error_number::kRequired, Cat("Поле "_ru, column.name, " должно быть заполнено"_ru));
  const bool empty_text = IsText(column.type) && cell.stored.bit && cell.stored.bytes.empty();
  if (empty_text && !cell.demands.allow_zero_length)
    throw Error(error_number::kZeroLength, Cat("Поле "_ru, column.name, " не может быть пустой строкой"_ru));
}

void RowDraft::PlaceLongValues(bool none_inline) {
  for (const Column& column : table_.columns) {
    Cell& cell = cells_[column.number];
    if (!IsLongValue(column.type) || !cell.changed || !cell.stored.bit) continue;
    const Bytes data = cell.stored.bytes;
    cell.outside = !data.empty() && (none_inline || data.size() > layout_.long_value.largest_inline);
    cell.head = cell.outside ? LongValueWriter::Placeholder() : LongValueWriter::Inline(data);
  }
}

Bytes RowDraft::Encode() {
  for (const Column& column : table_.columns) {
    const Cell& cell = cells_[column.number];
    const bool new_long_value = IsLongValue(column.type) && cell.changed && cell.stored.bit;
    in_row_[column.number] = {cell.stored.bit, new_long_value ? AsBytes(cell.head) : cell.stored.bytes};
  }
  encoder_.Encode(in_row_, encoded_);
  return AsBytes(encoded_);
}

}  // namespace jet
