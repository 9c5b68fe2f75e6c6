#include <algorithm>
#include <string>
#include <vector>

#include "base/bytes.h"
#include "base/cp1251.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "jet/column_codec.h"
#include "jet/data_page_writer.h"
#include "jet/table_def_codec.h"
#include "jet/table_design.h"

namespace jet {
namespace {

/// Appends the parts of a definition one after another.
class DefinitionWriter {
 public:
  DefinitionWriter(const Layout& layout, const TableDef& def) : layout_(layout), def_(def) {}

  std::string Write() {
    WriteHead();
    WriteColumns();
    for (const RealIndex& index : def_.real_indexes) WriteRealIndex(index);
    WriteLogicalIndexes();
    WriteLongValueEntries();
    StoreU16(Append(2), 0, kDefinitionEnd);
    StoreU32(Bytes(), kDefinitionLengthAt, static_cast<std::uint32_t>(bytes_.size()));
    return std::move(bytes_);
  }

 private:
  MutableBytes Bytes() { return std::as_writable_bytes(std::span(bytes_)); }
  /// Zeros at the end; the view lasts until the next call.
  MutableBytes Append(std::size_t size) {
    bytes_.resize(bytes_.size() + size);
    return Bytes().last(size);
  }
  void AppendName(std::string_view stored);
  void WriteHead();
  void WriteColumns();
  void WriteColumn(const Column& column);
  void WriteRealIndex(const RealIndex& index);
  void WriteLogicalIndexes();
  void WriteLogicalIndex(const LogicalIndex& index);
  void WriteLongValueEntries();

  std::vector<const Column*> ColumnsBy(bool name) const;

  const Layout& layout_;
  const TableDef& def_;
  std::string bytes_;
};

void DefinitionWriter::AppendName(std::string_view stored) {
  constexpr std::size_t kLongest[] = {0, 0xFF, 0xFFFF};
  const std::size_t width = layout_.table_def.name_length_size;
  if (stored.size() > kLongest[width]) throw Error(error_number::kBadArgument, "Слишком длинное имя"_ru);
  const MutableBytes length = Append(width);
  StoreU8(length, 0, static_cast<unsigned>(stored.size()));
  if (width == 2) StoreU16(length, 0, static_cast<unsigned>(stored.size()));
  bytes_ += stored;
}

void DefinitionWriter::WriteHead() {
  const TableDefLayout& at = layout_.table_def;
  const MutableBytes head = Append(at.size + def_.real_indexes.size() * at.index_counter_size);
  StoreU8(head, kPageKindAt, page_kind::kTableDef);
  StoreU8(head, kPageKindAt + 1, 1);
  if (at.mark != 0) StoreU32(head, at.mark, kDefinitionMark);
  if (at.one != 0) StoreU32(head, at.one, 1);
  StoreU8(head, at.kind, def_.system ? kSystemTable : kUserTable);
  StoreU16(head, at.max_columns, def_.max_columns);
  StoreU16(head, at.variable_columns, def_.variable_columns);
  StoreU16(head, at.columns, static_cast<unsigned>(def_.columns.size()));
  StoreU32(head, at.logical_indexes, static_cast<std::uint32_t>(def_.logical_indexes.size()));
  StoreU32(head, at.real_indexes, static_cast<std::uint32_t>(def_.real_indexes.size()));
  StoreRowPointer(head, at.owned_map, def_.owned_map);
  StoreRowPointer(head, at.free_map, def_.free_map);
}

std::vector<const Column*> DefinitionWriter::ColumnsBy(bool name) const {
  std::vector<const Column*> columns;
  for (const Column& column : def_.columns) columns.push_back(&column);
  std::ranges::sort(columns, [name](const Column* a, const Column* b) {
    return name ? cp1251::Folded(a->name) < cp1251::Folded(b->name) : a->number < b->number;
  });
  return columns;
}

void DefinitionWriter::WriteColumns() {
  const bool by_name = def_.system && layout_.version == Version::kJet4;
  for (const Column* const column : ColumnsBy(by_name)) WriteColumn(*column);
  for (const Column* const column : ColumnsBy(by_name)) AppendName(column->stored_name);
}

void DefinitionWriter::WriteColumn(const Column& column) {
  const ColumnEntryLayout& at = layout_.column;
  const MutableBytes entry = Append(at.size);
  StoreU8(entry, at.type, static_cast<unsigned>(column.type));
  if (at.mark != 0) StoreU32(entry, at.mark, kDefinitionMark);
  StoreU16(entry, at.number, column.number);
  StoreU16(entry, at.variable_index, column.variable_index);
  StoreU16(entry, at.ordinal, column.ordinal);
  if (column.type == ColumnType::kNumeric && at.precision != 0) {
    StoreU8(entry, at.precision, column.precision);
    StoreU8(entry, at.scale, column.scale);
  } else {
    StoreU16(entry, at.collation, column.collation);
    if (at.collation_version != 0) StoreU8(entry, at.collation_version, column.collation_version);
  }
  if (at.code_page != 0) StoreU16(entry, at.code_page, column.code_page);
  StoreU8(entry, at.flags, column.other_flags | FlagsOfFields(column));
  if (at.more_flags != 0) StoreU8(entry, at.more_flags, column.compress ? column_flag::kCompress : 0);
  if (column.fixed) StoreU16(entry, at.fixed_offset, column.fixed_offset);
  StoreU16(entry, at.length, column.length);
}

void DefinitionWriter::WriteRealIndex(const RealIndex& index) {
  const RealIndexLayout& at = layout_.real_index;
  const MutableBytes entry = Append(at.size);
  if (at.mark_size != 0) StoreU32(entry, 0, kRealIndexMark);
  for (std::size_t i = 0; i < kIndexColumnSlots; ++i) {
    const std::size_t slot = at.columns + i * kIndexColumnSlotSize;
    const bool used = i < index.columns.size();
    StoreU16(entry, slot, used ? index.columns[i].number : kNoIndexColumn);
    StoreU8(entry, slot + 2, used && index.columns[i].ascending ? 1 : 0);
  }
  StoreRowPointer(entry, at.usage_map, index.usage_map);
  StoreU32(entry, at.root, index.root);
  StoreU8(entry, at.flags,
          (index.unique ? index_flag::kUnique : 0) | (index.ignore_nulls ? index_flag::kIgnoreNulls : 0) |
              (index.required ? index_flag::kRequired : 0) |
              (layout_.version == Version::kJet4 ? index_flag::kJet4 : 0));
}

void DefinitionWriter::WriteLogicalIndexes() {
  std::vector<const LogicalIndex*> indexes;
  for (const LogicalIndex& index : def_.logical_indexes) indexes.push_back(&index);
  std::ranges::sort(indexes, {}, [](const LogicalIndex* index) { return cp1251::Folded(index->name); });
  for (const LogicalIndex* const index : indexes) WriteLogicalIndex(*index);
  for (const LogicalIndex* const index : indexes) AppendName(StoredName(layout_.version, index->name));
}

void DefinitionWriter::WriteLogicalIndex(const LogicalIndex& index) {
  const LogicalIndexLayout& at = layout_.logical_index;
  const MutableBytes entry = Append(at.size);
  if (at.mark_size != 0) StoreU32(entry, 0, kDefinitionMark);
  StoreU32(entry, at.number, index.number);
  StoreU32(entry, at.real, index.real);
  StoreU8(entry, at.relation, index.relation.side);
  StoreU32(entry, at.other_index, index.relation.other_index);
  StoreU32(entry, at.other_table, index.relation.other_table);
  StoreU8(entry, at.cascade_updates, index.relation.cascade_updates);
  StoreU8(entry, at.cascade_deletes, index.relation.cascade_deletes);
  StoreU8(entry, at.kind, static_cast<unsigned>(index.kind));
}

void DefinitionWriter::WriteLongValueEntries() {
  for (const Column* const column : ColumnsBy(def_.system)) {
    if (!IsLongValue(column->type)) continue;
    const MutableBytes entry = Append(kLongValueEntrySize);
    StoreU16(entry, 0, column->number);
    StoreRowPointer(entry, 2, column->owned_map);
    StoreRowPointer(entry, 2 + kRowPointerSize, column->free_map);
  }
}

}  // namespace

std::string EncodeTableDef(const Layout& layout, const TableDef& def) { return DefinitionWriter(layout, def).Write(); }

}  // namespace jet
