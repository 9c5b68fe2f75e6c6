#include "jet/table.h"

#include <utility>

#include "base/error.h"
#include "base/ru_literal.h"
#include "jet/data_page.h"
#include "jet/index_key.h"
#include "jet/table_counters.h"

namespace jet {
namespace {

// Where a moved row's bytes are: the pointer's target lies on a page of the same table and is marked
// as reached only so; it cannot be a pointer again.
struct MovedRow {
  Page page;
  Bytes bytes;
};

MovedRow Follow(const PageFile& file, const TableDef& def, RowId from, Bytes pointer) {
  if (pointer.size() < kRowPointerSize)
    throw FormatError("Указатель на перенесённую строку повреждён"_ru, from.page, from.slot);
  const RowId to = LoadRowPointer(pointer, 0);
  MovedRow moved{file.Read(to.page), {}};
  const DataPage rows(file.layout(), moved.page, def.page);
  moved.bytes = rows.Row(to.slot);
  if (rows.Flags(to.slot) != kRowIsHidden)
    throw FormatError("Указатель на перенесённую строку ведёт не туда"_ru, from.page, from.slot);
  return moved;
}

}  // namespace

TableCursor::TableCursor(const PageFile& file, const TableDef& def)
    : file_(&file), def_(&def), owned_(file, def.owned_map) {}

bool TableCursor::NextPage() {
  const std::optional<std::uint32_t> number = owned_.NextFrom(next_page_);
  if (!number) return false;
  page_ = file_->Read(*number);
  slots_ = DataPage(file_->layout(), page_, def_->page).slot_count();
  next_page_ = *number + 1;
  slot_ = 0;
  return true;
}

bool TableCursor::Next() {
  for (;;) {
    while (slot_ == slots_)
      if (!NextPage()) return false;
    const RowId id{page_.number(), static_cast<std::uint8_t>(slot_++)};
    if (Table::ReadSlot(*file_, *def_, id, page_, row_)) return true;
  }
}

// @return false when no live row has this address
bool Table::ReadSlot(const PageFile& file, const TableDef& def, RowId id, const Page& page, Row& row) {
  const DataPage rows(file.layout(), page, def.page);
  const Bytes bytes = rows.Row(id.slot);
  switch (rows.Flags(id.slot)) {
    case 0: row.Assign(file, def, id, page, bytes); return true;
    case kRowIsPointer: {
      MovedRow moved = Follow(file, def, id, bytes);
      row.Assign(file, def, id, std::move(moved.page), moved.bytes);
      return true;
    }
    default: return false;
  }
}

std::uint32_t Table::CountRows() const {
  std::uint32_t count = 0;
  UsageMap owned(*file_, def_->owned_map);
  for (auto number = owned.NextFrom(0); number; number = owned.NextFrom(*number + 1)) {
    const Page page = file_->Read(*number);
    const DataPage rows(file_->layout(), page, def_->page);
    for (std::size_t slot = 0; slot < rows.slot_count(); ++slot)
      if (rows.Flags(slot) == 0 || rows.Flags(slot) == kRowIsPointer) ++count;
  }
  return count;
}

std::uint32_t Table::ExpectedRows() const { return RowCount(*file_, *def_); }

Row Table::Read(RowId id) const {
  Row row;
  Read(id, row);
  return row;
}

void Table::Read(RowId id, Row& row) const {
  if (!ReadSlot(*file_, *def_, id, file_->Read(id.page), row))
    throw FormatError("Индекс ведёт к строке, которой нет"_ru, id.page, id.slot);
}

bool Table::TryRead(RowId id, Row& row) const {
  if (id.page >= file_->page_count() || !UsageMap(*file_, def_->owned_map).Contains(id.page)) return false;
  const Page page = file_->Read(id.page);
  const bool has_slot = id.slot < DataPage(file_->layout(), page, def_->page).slot_count();
  return has_slot && ReadSlot(*file_, *def_, id, page, row);
}

IndexCursor Table::Walk(const RealIndex& index, Direction direction) const {
  return {*file_, def_->page, index.root, direction};
}

std::optional<std::string> Table::KeyPrefix(const RealIndex& index, std::span<const Value> values) const {
  return KeyOfValues(file_->layout().version, *def_, index, values);
}

std::optional<RowId> Table::Seek(const RealIndex& index, std::span<const Value> values) const {
  const std::optional<std::string> key = KeyPrefix(index, values);
  if (!key) throw Error(error_number::kBadArgument, "Порядок сортировки текстов в индексе неизвестен"_ru);
  IndexCursor cursor = Walk(index);
  cursor.Seek(AsBytes(*key));
  if (!cursor.Next() || !BeginsWith(cursor.key(), AsBytes(*key))) return std::nullopt;
  return cursor.id();
}

}  // namespace jet
