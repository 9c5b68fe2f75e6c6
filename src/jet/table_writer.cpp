#include "jet/table_writer.h"

#include <algorithm>
#include <limits>

#include "base/cat.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "jet/column_codec.h"
#include "jet/data_page.h"
#include "jet/row_encoder.h"
#include "jet/table_counters.h"

namespace jet {
namespace {

// What is done by halves must not be committed.
template <typename Step>
auto AllOrNothing(Transaction& transaction, Step step) try {
  return step();
} catch (...) {
  transaction.RollBack();
  throw;
}

/// A row's slot: its flags, and where they lead when the row has moved.
struct Slot {
  unsigned flags;
  RowId target;
};

Slot SlotOf(const PageFile& file, const TableDef& table, RowId id) {
  const Page page = file.Read(id.page);
  const DataPage rows(file.layout(), page, table.page);
  const Bytes row = rows.Row(id.slot);
  if (rows.Flags(id.slot) != kRowIsPointer) return {rows.Flags(id.slot), {}};
  return {kRowIsPointer, LoadRowPointer(row, 0)};
}

std::string PointerTo(RowId row) {
  std::string pointer(kRowPointerSize, '\0');
  StoreRowPointer(std::as_writable_bytes(std::span(pointer)), 0, row);
  return pointer;
}

}  // namespace

void CheckValue(Version version, const Column& column, const Value& value) {
  if (IsNull(value)) return;
  if (const auto* const text = std::get_if<std::string>(&value); text != nullptr && IsText(column.type))
    return CheckLength(column, text->size() * (version == Version::kJet4 ? 2 : 1));
  std::string stored;
  if (column.type != ColumnType::kBoolean) return EncodeColumn(version, column, value, stored);
  if (!std::holds_alternative<bool>(value))
    throw ConversionError(error_number::kConversion, "Значение не подходит к полю"_ru);
}

TableWriter::TableWriter(Transaction& transaction, const Table& table, const TableProperties& properties)
    : transaction_(transaction),
      pages_(transaction.pages()),
      table_(table),
      relations_(table.def()),
      draft_(pages_.layout(), table.def(), properties),
      indexes_(transaction, table.def()),
      rows_(transaction, table.def()) {
  for (const Column& column : table.def().columns) {
    if (IsLongValue(column.type)) long_columns_.push_back({&column, LongValueWriter(transaction, column)});
    if (column.autonumber && column.type == ColumnType::kLong) autonumbers_.push_back(&column);
    if (column.type == ColumnType::kGuid && (column.other_flags & column_flag::kAutonumberGuid) != 0)
      guids_.push_back(&column);
  }
}

RowId TableWriter::Insert(std::span<const Assignment> values) {
  relations_.CheckInsert();
  draft_.Start();
  SetAll(values);
  FillAutonumbers();
  RequireGuids();
  draft_.Finish();
  indexes_.PlanInsert(draft_);
  return AllOrNothing(transaction_, [&] {
    StoreLongValues();
    const RowId id = rows_.Add(draft_.Encode());
    indexes_.Apply(id);
    CountAutonumbers();
    AddToRowCount(transaction_, table_.def(), 1);
    return id;
  });
}

void TableWriter::Update(RowId id, std::span<const Assignment> values) {
  const Row before = table_.Read(id);
  draft_.Start(&before);
  SetAll(values);
  relations_.CheckUpdate(draft_);
  draft_.Finish();
  indexes_.PlanUpdate(before, draft_);
  AllOrNothing(transaction_, [&] {
    for (LongColumn& column : long_columns_)
      if (draft_.IsChanged(*column.column)) FreeLongValue(column, before);
    StoreLongValues();
    Put(id, draft_.Encode());
    indexes_.Apply(id);
    CountAutonumbers();
  });
}

void TableWriter::Delete(RowId id) {
  relations_.CheckDelete();
  const Row row = table_.Read(id);
  indexes_.PlanDelete(row);
  AllOrNothing(transaction_, [&] {
    for (LongColumn& column : long_columns_) FreeLongValue(column, row);
    Erase(id);
    indexes_.Apply(id);
    AddToRowCount(transaction_, table_.def(), -1);
  });
}

void TableWriter::SetAll(std::span<const Assignment> values) {
  for (const Assignment& assignment : values) draft_.Set(assignment);
}

void TableWriter::FillAutonumbers() {
  for (const Column* const column : autonumbers_) {
    if (draft_.Whole(*column).bit) continue;
    const std::int32_t last = LastAutonumber(pages_, table_.def());
    if (last == std::numeric_limits<std::int32_t>::max())
      throw Error(error_number::kOverflow, "Номера записей таблицы кончились"_ru);
    draft_.Set({column, last + 1});
  }
}

void TableWriter::RequireGuids() {
  for (const Column* const column : guids_)
    if (!draft_.Whole(*column).bit)
      throw Error(error_number::kNoAccess, Cat("Запись не добавлена: код репликации для поля "_ru, column->name,
                                               " программа придумать не может"_ru));
}

void TableWriter::CountAutonumbers() {
  for (const Column* const column : autonumbers_) {
    if (!draft_.IsChanged(*column) || !draft_.Whole(*column).bit) continue;
    const auto number = static_cast<std::int32_t>(LoadU32(draft_.Whole(*column).bytes, 0));
    if (number > LastAutonumber(pages_, table_.def())) SetLastAutonumber(transaction_, table_.def(), number);
  }
}

void TableWriter::StoreLongValues() {
  for (LongColumn& column : long_columns_)
    if (draft_.GoesOutside(*column.column))
      draft_.SetHead(*column.column, column.values.Store(draft_.Whole(*column.column).bytes));
}

void TableWriter::FreeLongValue(LongColumn& column, const Row& row) {
  if (!row.IsNull(*column.column)) column.values.Free(row.Stored(*column.column));
}

// A row that has outgrown its page goes to another one and leaves a pointer; one that has moved
// before comes home where it can.
void TableWriter::Put(RowId id, Bytes row) {
  const Slot slot = SlotOf(pages_, table_.def(), id);
  const bool moved = slot.flags == kRowIsPointer;
  if (moved && rows_.Replace(slot.target, row, kRowIsHidden)) return;
  if (!rows_.Replace(id, row, 0)) {
    const std::string pointer = PointerTo(rows_.Add(row, kRowIsHidden));
    if (!rows_.Replace(id, AsBytes(pointer), kRowIsPointer))
      throw FormatError("На странице нет места для указателя на строку"_ru, id.page, id.slot);
  }
  if (moved) rows_.Delete(slot.target);
}

void TableWriter::Erase(RowId id) {
  const Slot slot = SlotOf(pages_, table_.def(), id);
  if (slot.flags == kRowIsPointer) rows_.Delete(slot.target);
  rows_.Delete(id);
}

}  // namespace jet
