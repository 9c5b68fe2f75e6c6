#include "jet/row_copier.h"

#include "base/error.h"
#include "base/ru_literal.h"
#include "jet/column_codec.h"
#include "jet/table_counters.h"

namespace jet {

RowCopier::RowCopier(Transaction& transaction, const TableDef& to)
    : transaction_(transaction),
      to_(to),
      draft_(transaction.pages().layout(), to, {}),
      encoder_(transaction.pages().layout(), to),
      indexes_(transaction, to),
      rows_(transaction, to),
      stored_(to.max_columns) {
  for (const Column& column : to.columns)
    if (IsLongValue(column.type)) long_columns_.push_back({&column, LongValueWriter(transaction, column), {}, {}});
}

void RowCopier::Copy(const Row& row, const std::optional<Assignment>& instead) {
  draft_.Start(&row);
  if (instead) draft_.Set(*instead);
  indexes_.PlanInsert(draft_);
  for (const Column& column : to_.columns)
    stored_[column.number] = {column.type == ColumnType::kBoolean ? row.Bool(column) : !row.IsNull(column),
                              row.Stored(column)};
  if (instead) stored_[instead->column->number] = draft_.Whole(*instead->column);
  for (LongColumn& column : long_columns_) CopyLongValue(column, row);
  encoder_.Encode(stored_, encoded_);
  const Layout& layout = transaction_.pages().layout();
  if (encoded_.size() + layout.data_page.row_table + kRowSlotSize > layout.page_size)
    throw FormatError("Запись не помещается на страницу"_ru, row.id().page, row.id().slot);
  indexes_.Apply(rows_.Add(AsBytes(encoded_)));
  AddToRowCount(transaction_, to_, 1);
  ++copied_;
}

// What lies in the row itself stays there.
void RowCopier::CopyLongValue(LongColumn& column, const Row& row) {
  StoredColumn& stored = stored_[column.column->number];
  if (!stored.bit) return;
  if (stored.bytes.size() < kLongValueHead)
    throw FormatError("Длинное поле повреждено"_ru, row.id().page, row.id().slot);
  if ((LoadU32(stored.bytes, 0) & kLongValueInline) != 0) return;
  row.ReadStored(*column.column, column.data);
  column.head = column.data.empty() ? LongValueWriter::Inline({}) : column.values.Store(AsBytes(column.data));
  stored.bytes = AsBytes(column.head);
}

}  // namespace jet
