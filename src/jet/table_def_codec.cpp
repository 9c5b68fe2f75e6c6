#include "jet/table_def_codec.h"

#include <algorithm>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "base/bytes.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "jet/column_codec.h"
#include "jet/data_page.h"
#include "jet/text_codec.h"

namespace jet {
namespace {

// Far more than as many columns and indexes as a table can have take, all with the longest names.
constexpr std::size_t kLargestDefinition = 1u << 20;

/// Do both claim one place of a row? Booleans have none.
bool Overlap(const Column& a, const Column& b) {
  if (a.type == ColumnType::kBoolean || b.type == ColumnType::kBoolean || a.fixed != b.fixed) return false;
  if (!a.fixed) return a.variable_index == b.variable_index;
  return a.fixed_offset < b.fixed_offset + FixedSizeOf(b) && b.fixed_offset < a.fixed_offset + FixedSizeOf(a);
}

/// Reads a definition from its start to its end, never past it.
class DefinitionReader {
 public:
  DefinitionReader(const Layout& layout, std::uint32_t page, Bytes bytes)
      : layout_(layout), page_(page), bytes_(bytes) {}

  TableDef Read();

 private:
  [[noreturn]] void ThrowDamaged() const { throw FormatError("Определение таблицы повреждено"_ru, page_); }
  Bytes Take(std::size_t size);
  std::string TakeName();
  std::string DecodeName(const std::string& stored) const;
  void ReadHead(TableDef& def);
  void ReadColumns(TableDef& def);
  Column ReadColumn(Bytes entry) const;
  void CheckColumn(const TableDef& def, const Column& column) const;
  void ReadRealIndexes(TableDef& def);
  RealIndex ReadRealIndex(const TableDef& def, Bytes entry) const;
  void ReadLogicalIndexes(TableDef& def);
  void ReadLongValueEntries(TableDef& def);

  const Layout& layout_;
  std::uint32_t page_;
  Bytes bytes_;
  std::size_t at_ = 0;
  std::size_t column_count_ = 0, real_count_ = 0, logical_count_ = 0;
};

Bytes DefinitionReader::Take(std::size_t size) {
  if (size > bytes_.size() - at_) ThrowDamaged();
  at_ += size;
  return bytes_.subspan(at_ - size, size);
}

std::string DefinitionReader::TakeName() {
  const std::size_t width = layout_.table_def.name_length_size;
  const Bytes length = Take(width);
  return std::string(AsText(Take(width == 1 ? LoadU8(length, 0) : LoadU16(length, 0))));
}

std::string DefinitionReader::DecodeName(const std::string& stored) const {
  std::string name;
  if (!AppendText(layout_.version, AsBytes(stored), name)) ThrowDamaged();
  return name;
}

TableDef DefinitionReader::Read() {
  TableDef def;
  def.page = page_;
  ReadHead(def);
  ReadColumns(def);
  ReadRealIndexes(def);
  ReadLogicalIndexes(def);
  ReadLongValueEntries(def);
  return def;
}

void DefinitionReader::ReadHead(TableDef& def) {
  const TableDefLayout& at = layout_.table_def;
  const Bytes head = Take(at.size);
  def.system = LoadU8(head, at.kind) == kSystemTable;
  def.max_columns = LoadU16(head, at.max_columns);
  def.variable_columns = LoadU16(head, at.variable_columns);
  def.owned_map = LoadRowPointer(head, at.owned_map);
  def.free_map = LoadRowPointer(head, at.free_map);
  column_count_ = LoadU16(head, at.columns);
  real_count_ = LoadU32(head, at.real_indexes);
  logical_count_ = LoadU32(head, at.logical_indexes);
  // Every entry takes more than a byte, so greater counts cannot be true; the products below fit.
  if (real_count_ > bytes_.size() || logical_count_ > bytes_.size()) ThrowDamaged();
  if (def.max_columns > kMostColumns || def.variable_columns > kMostColumns) ThrowDamaged();
  Take(real_count_ * at.index_counter_size);
}

void DefinitionReader::ReadColumns(TableDef& def) {
  const Bytes entries = Take(column_count_ * layout_.column.size);
  def.columns.reserve(column_count_);
  for (std::size_t i = 0; i < column_count_; ++i) {
    Column column = ReadColumn(entries.subspan(i * layout_.column.size, layout_.column.size));
    CheckColumn(def, column);
    for (const Column& other : def.columns)
      if (other.number == column.number || Overlap(other, column)) ThrowDamaged();
    column.stored_name = TakeName();
    column.name = DecodeName(column.stored_name);
    def.columns.push_back(std::move(column));
  }
  std::sort(def.columns.begin(), def.columns.end(), [](const Column& a, const Column& b) {
    return std::tie(a.ordinal, a.number) < std::tie(b.ordinal, b.number);
  });
}

Column DefinitionReader::ReadColumn(Bytes entry) const {
  const ColumnEntryLayout& at = layout_.column;
  const unsigned flags = LoadU8(entry, at.flags);
  Column column;
  column.type = static_cast<ColumnType>(LoadU8(entry, at.type));
  column.number = LoadU16(entry, at.number);
  column.variable_index = LoadU16(entry, at.variable_index);
  column.ordinal = LoadU16(entry, at.ordinal);
  column.fixed_offset = LoadU16(entry, at.fixed_offset);
  column.length = LoadU16(entry, at.length);
  column.fixed = (flags & column_flag::kFixed) != 0;
  column.autonumber = (flags & column_flag::kAutonumber) != 0;
  column.hyperlink = column.type == ColumnType::kMemo && (flags & column_flag::kHyperlink) != 0;
  column.other_flags = static_cast<std::uint8_t>(flags & ~FlagsOfFields(column));
  if (column.type == ColumnType::kNumeric && at.precision != 0) {
    column.precision = LoadU8(entry, at.precision);
    column.scale = LoadU8(entry, at.scale);
  } else {
    column.collation = LoadU16(entry, at.collation);
    if (at.collation_version != 0) column.collation_version = LoadU8(entry, at.collation_version);
  }
  if (at.code_page != 0) column.code_page = LoadU16(entry, at.code_page);
  if (at.more_flags != 0) column.compress = (LoadU8(entry, at.more_flags) & column_flag::kCompress) != 0;
  return column;
}

void DefinitionReader::CheckColumn(const TableDef& def, const Column& column) const {
  const bool known = IsKnownType(layout_.version, column.type);
  const bool placed =
      column.type == ColumnType::kBoolean || (column.fixed ? FixedSizeOf(column) > 0 && !IsLongValue(column.type)
                                                           : column.variable_index < def.variable_columns);
  const bool scaled = column.scale <= kLargestScale;
  if (!known || !placed || !scaled || column.number >= def.max_columns) ThrowDamaged();
}

void DefinitionReader::ReadRealIndexes(TableDef& def) {
  const Bytes entries = Take(real_count_ * layout_.real_index.size);
  for (std::size_t i = 0; i < real_count_; ++i)
    def.real_indexes.push_back(
        ReadRealIndex(def, entries.subspan(i * layout_.real_index.size, layout_.real_index.size)));
}

RealIndex DefinitionReader::ReadRealIndex(const TableDef& def, Bytes entry) const {
  const RealIndexLayout& at = layout_.real_index;
  RealIndex index;
  for (std::size_t i = 0; i < kIndexColumnSlots; ++i) {
    const Bytes slot = entry.subspan(at.columns + i * kIndexColumnSlotSize, kIndexColumnSlotSize);
    const std::uint16_t number = LoadU16(slot, 0);
    if (number == kNoIndexColumn) continue;
    if (def.ColumnByNumber(number) == nullptr) ThrowDamaged();
    index.columns.push_back({number, LoadU8(slot, 2) != 0});
  }
  const unsigned flags = LoadU8(entry, at.flags);
  index.usage_map = LoadRowPointer(entry, at.usage_map);
  index.root = LoadU32(entry, at.root);
  index.unique = (flags & index_flag::kUnique) != 0;
  index.ignore_nulls = (flags & index_flag::kIgnoreNulls) != 0;
  index.required = (flags & index_flag::kRequired) != 0;
  return index;
}

void DefinitionReader::ReadLogicalIndexes(TableDef& def) {
  const LogicalIndexLayout& at = layout_.logical_index;
  const Bytes entries = Take(logical_count_ * at.size);
  for (std::size_t i = 0; i < logical_count_; ++i) {
    const Bytes entry = entries.subspan(i * at.size, at.size);
    LogicalIndex index;
    index.number = LoadU32(entry, at.number);
    index.real = LoadU32(entry, at.real);
    const unsigned kind = LoadU8(entry, at.kind);
    if (index.real >= real_count_ || kind > static_cast<unsigned>(IndexKind::kForeign)) ThrowDamaged();
    index.kind = static_cast<IndexKind>(kind);
    index.relation = {.side = LoadU8(entry, at.relation),
                      .other_index = LoadU32(entry, at.other_index),
                      .other_table = LoadU32(entry, at.other_table),
                      .cascade_updates = LoadU8(entry, at.cascade_updates),
                      .cascade_deletes = LoadU8(entry, at.cascade_deletes)};
    index.name = DecodeName(TakeName());
    def.logical_indexes.push_back(std::move(index));
  }
}

void DefinitionReader::ReadLongValueEntries(TableDef& def) {
  for (;;) {
    const std::uint16_t number = LoadU16(Take(2), 0);
    if (number == kDefinitionEnd) break;
    const Bytes maps = Take(kLongValueEntrySize - 2);
    const auto column =
        std::find_if(def.columns.begin(), def.columns.end(), [number](const Column& c) { return c.number == number; });
    if (column == def.columns.end() || !IsLongValue(column->type)) ThrowDamaged();
    column->owned_map = LoadRowPointer(maps, 0);
    column->free_map = LoadRowPointer(maps, kRowPointerSize);
  }
  if (at_ != bytes_.size()) ThrowDamaged();
}

// The first page whole, of every further one what follows its head.
std::vector<std::byte> Assemble(const PageFile& file, std::uint32_t first) {
  std::vector<std::byte> bytes;
  std::vector<std::uint32_t> seen;
  std::size_t length = 0, skip = 0;
  for (std::uint32_t number = first; bytes.empty() || bytes.size() < length;) {
    const Page page = file.Read(number);
    if (page.kind() != page_kind::kTableDef) throw FormatError("Это не страница определения таблицы"_ru, number);
    if (skip == 0) length = page.U32(kDefinitionLengthAt);
    if (length > kLargestDefinition || std::ranges::find(seen, number) != seen.end())
      throw FormatError("Определение таблицы повреждено"_ru, first);
    seen.push_back(number);
    const Bytes part = page.bytes().subspan(skip);
    bytes.insert(bytes.end(), part.begin(), part.end());
    skip = kContinuationHead;
    number = page.U32(kNextDefinitionAt);
    if (number == 0) break;
  }
  if (length > bytes.size()) throw FormatError("Определение таблицы обрывается"_ru, first);
  bytes.resize(length);
  return bytes;
}

}  // namespace

TableDef ReadTableDef(const PageFile& file, std::uint32_t page) {
  const std::vector<std::byte> bytes = Assemble(file, page);
  return DefinitionReader(file.layout(), page, bytes).Read();
}

}  // namespace jet
