#include "jet/tiny_base.h"

#include <bit>
#include <initializer_list>
#include <iterator>
#include <string_view>
#include <vector>

#include "base/bytes.h"
#include "base/cp1251.h"
#include "base/ru_literal.h"
#include "jet/table_def.h"
#include "jet/value.h"
#include "jet/vectors.h"

namespace jet {
namespace {

std::string FromHex(std::string_view hex) {
  const auto digit = [](char c) { return c <= '9' ? c - '0' : c - 'A' + 10; };
  std::string bytes;
  for (std::size_t i = 0; i + 1 < hex.size(); i += 2)
    bytes += static_cast<char>(static_cast<std::uint8_t>(digit(hex[i]) * 16 + digit(hex[i + 1])));
  return bytes;
}

std::string Little(std::uint64_t value, std::size_t size) {
  std::string bytes;
  for (std::size_t i = 0; i < size; ++i) bytes += static_cast<char>(static_cast<std::uint8_t>(value >> (8 * i)));
  return bytes;
}

std::string Big(std::uint32_t value, std::size_t size) {
  const std::string bytes = Little(value, size);
  return {bytes.rbegin(), bytes.rend()};
}

std::string RowPointer(std::uint32_t page, unsigned slot) { return Little(page << 8 | slot, 4); }

struct ColumnSpec {
  std::string_view name;
  ColumnType type;
  unsigned flags;  // kFixed or 0
  std::uint16_t variable_index;
  std::uint16_t fixed_offset;
  std::uint16_t length;
};

struct IndexSpec {
  std::uint16_t column;
  std::uint32_t root;
  std::string map;  // row pointer
};

struct TableSpec {
  std::uint32_t page;
  std::uint16_t variable_columns;
  std::vector<ColumnSpec> columns;
  std::vector<IndexSpec> indexes;
  std::string owned, free;                    // row pointers
  std::vector<std::string> long_values = {};  // entries of Memo and OLE columns
};

class Builder {
 public:
  explicit Builder(Version version) : layout_(LayoutOf(version)), image_(TinyPages::kCount * layout_.page_size, '\0') {}

  std::string Build();

 private:
  bool jet3() const { return layout_.version == Version::kJet3; }
  MutableBytes PageAt(std::uint32_t page) {
    return std::as_writable_bytes(std::span(image_)).subspan(page * layout_.page_size, layout_.page_size);
  }
  void Put(std::uint32_t page, std::size_t at, std::string_view bytes) {
    image_.replace(page * layout_.page_size + at, bytes.size(), bytes);
  }
  std::string Text(std::string_view text) const { return jet3() ? std::string(text) : cp1251::ToUtf16(text); }
  std::string Name(std::string_view name) const {
    return Little(Text(name).size(), layout_.table_def.name_length_size) + Text(name);
  }

  std::string Row(unsigned columns, std::string_view fixed, std::vector<std::string> variable, std::string_view mask);
  void PutRow(std::uint32_t page, std::uint32_t owner, std::string_view row, unsigned flags = 0);
  std::string InlineMap(std::initializer_list<std::uint32_t> pages) const;
  std::string Definition(const TableSpec& spec);
  void PutIndexPage(std::uint32_t page, std::uint32_t owner, const std::vector<std::string>& entries, bool leaf);
  void PutGlobalMap();
  void PutMessages();
  void PutCatalog();
  void PutTypes();

  const Layout& layout_;
  std::string image_;
};

// Rows of less than 256 bytes, so without jump bytes.
std::string Builder::Row(unsigned columns, std::string_view fixed, std::vector<std::string> variable,
                         std::string_view mask) {
  const std::size_t width = layout_.row_number_size;
  std::string row = Little(columns, width);
  row += fixed;
  std::string offsets;
  for (const std::string& value : variable) {
    offsets.insert(0, Little(row.size(), width));
    row += value;
  }
  offsets.insert(0, Little(row.size(), width));
  return row + offsets + Little(variable.size(), width) + std::string(mask);
}

void Builder::PutRow(std::uint32_t page, std::uint32_t owner, std::string_view row, unsigned flags) {
  const MutableBytes bytes = PageAt(page);
  const DataPageLayout& at = layout_.data_page;
  const unsigned slot = LoadU16(bytes, at.row_count);
  const std::size_t end = slot == 0 ? layout_.page_size : LoadU16(bytes, at.row_table + 2 * (slot - 1)) & kRowStart;
  const std::size_t begin = end - row.size();
  Put(page, 0, "\x01\x01");
  Put(page, kOwnerAt, Little(owner, 4));
  Put(page, at.row_count, Little(slot + 1, 2));
  Put(page, at.row_table + 2 * slot, Little(begin | flags, 2));
  Put(page, kFreeSpaceAt, Little(begin - (at.row_table + 2 * (slot + 1)), 2));
  Put(page, begin, row);
}

std::string Builder::InlineMap(std::initializer_list<std::uint32_t> pages) const {
  std::string map(jet3() ? 133 : 69, '\0');
  for (const std::uint32_t page : pages) {
    char& byte = map[kInlineMapBitsAt + page / 8];
    byte = static_cast<char>(byte | 1 << (page % 8));
  }
  return map;
}

std::string Builder::Definition(const TableSpec& spec) {
  const TableDefLayout& at = layout_.table_def;
  std::string def(at.size, '\0');
  const auto put = [&def](std::size_t where, const std::string& bytes) { def.replace(where, bytes.size(), bytes); };
  put(0, "\x02\x01");
  put(at.kind, "\x4E");
  put(at.max_columns, Little(spec.columns.size(), 2));
  put(at.variable_columns, Little(spec.variable_columns, 2));
  put(at.columns, Little(spec.columns.size(), 2));
  put(at.logical_indexes, Little(spec.indexes.size(), 4));
  put(at.real_indexes, Little(spec.indexes.size(), 4));
  put(at.owned_map, spec.owned);
  put(at.free_map, spec.free);
  def.append(spec.indexes.size() * at.index_counter_size, '\0');
  for (std::size_t i = 0; i < spec.columns.size(); ++i) {
    const ColumnSpec& column = spec.columns[i];
    const ColumnEntryLayout& field = layout_.column;
    const std::size_t entry = def.size();
    def.append(field.size, '\0');
    put(entry + field.type, Little(static_cast<unsigned>(column.type), 1));
    put(entry + field.number, Little(i, 2));
    put(entry + field.ordinal, Little(i, 2));
    put(entry + field.variable_index, Little(column.variable_index, 2));
    put(entry + field.fixed_offset, Little(column.fixed_offset, 2));
    put(entry + field.length, Little(column.length, 2));
    put(entry + field.flags, Little(column.flags, 1));
    if (column.type == ColumnType::kNumeric) put(entry + field.scale, Little(3, 1));
  }
  for (const ColumnSpec& column : spec.columns) def += Name(column.name);
  for (const IndexSpec& index : spec.indexes) {
    const std::size_t entry = def.size();
    def.append(layout_.real_index.size, '\0');
    for (std::size_t slot = 0; slot < kIndexColumnSlots; ++slot)
      put(entry + layout_.real_index.columns + slot * kIndexColumnSlotSize,
          slot == 0 ? Little(index.column, 2) + '\x01' : Little(kNoIndexColumn, 2));
    put(entry + layout_.real_index.usage_map, index.map);
    put(entry + layout_.real_index.root, Little(index.root, 4));
  }
  for (std::size_t i = 0; i < spec.indexes.size(); ++i) {
    const std::size_t entry = def.size();
    def.append(layout_.logical_index.size, '\0');
    put(entry + layout_.logical_index.real, Little(i, 4));
    put(entry + layout_.logical_index.kind, "\x01");
  }
  for (std::size_t i = 0; i < spec.indexes.size(); ++i) def += Name("Id");
  for (const std::string& entry : spec.long_values) def += entry;
  def += Little(kDefinitionEnd, 2);
  put(kDefinitionLengthAt, Little(def.size(), 4));
  return def;
}

// Leaves with a prefix of one byte, nodes without.
void Builder::PutIndexPage(std::uint32_t page, std::uint32_t owner, const std::vector<std::string>& entries,
                           bool leaf) {
  const IndexPageLayout& at = layout_.index_page;
  const std::size_t prefix = leaf && !entries.empty() ? 1 : 0;
  std::size_t used = 0;
  for (const std::string& entry : entries) {
    const std::string_view stored = std::string_view(entry).substr(used == 0 ? 0 : prefix);
    Put(page, at.entries + used, stored);
    used += stored.size();
    const std::size_t mask_byte = page * layout_.page_size + at.mask + used / 8;
    image_[mask_byte] = static_cast<char>(image_[mask_byte] | 1 << (used % 8));
  }
  Put(page, 0, leaf ? "\x04\x01" : "\x03\x01");
  Put(page, kFreeSpaceAt, Little(layout_.page_size - at.entries - used, 2));
  Put(page, kOwnerAt, Little(owner, 4));
  Put(page, at.prefix, Little(prefix, at.prefix_size));
  Put(page, at.level, Little(leaf ? 0 : 1, 1));
}

// All pages are in use; those behind the end count as free.
void Builder::PutGlobalMap() {
  std::string free = InlineMap({});
  for (std::size_t bit = TinyPages::kCount; bit < (free.size() - kInlineMapBitsAt) * 8; ++bit) {
    char& byte = free[kInlineMapBitsAt + bit / 8];
    byte = static_cast<char>(byte | 1 << (bit % 8));
  }
  PutRow(1, 1, free);
  PutRow(1, 1, InlineMap({}));
}

void Builder::PutMessages() {
  const TinyPages pages = TinyPagesOf(layout_.version);
  Put(0, 0, FromHex(jet3() ? vectors::kHeader3 : vectors::kHeader4));
  Put(pages.definition, 0, FromHex(jet3() ? vectors::kDefinition3 : vectors::kDefinition4));
  PutRow(pages.maps(), 0, InlineMap({pages.data()}));
  PutRow(pages.maps(), 0, InlineMap({pages.data()}));
  PutRow(pages.maps(), 0, InlineMap({pages.long_values()}));
  PutRow(pages.maps(), 0, InlineMap({pages.long_values()}));
  PutRow(pages.maps(), 0, InlineMap({pages.primary_key()}));
  PutRow(pages.maps(), 0, InlineMap({pages.primary_key() + 1}));
  PutRow(pages.data(), pages.definition, FromHex(jet3() ? vectors::kFirstRow3 : vectors::kFirstRow4));
  PutRow(pages.data(), pages.definition, FromHex(jet3() ? vectors::kSecondRow3 : vectors::kSecondRow4));
  PutRow(pages.long_values(), kLongValueOwner, Text(std::string(40, "Я"_ru[0])));
  Put(pages.primary_key(), 0, FromHex(jet3() ? vectors::kLeafHead3 : vectors::kLeafHead4));
  Put(pages.primary_key(), layout_.index_page.entries,
      FromHex(jet3() ? vectors::kLeafEntries3 : vectors::kLeafEntries4));
  const std::string row_address = Big(pages.data(), 3);
  PutIndexPage(pages.primary_key() + 1, pages.definition,
               {FromHex("7F80000000") + row_address + '\0', FromHex("7F80000001") + row_address + '\x01'}, true);
}

void Builder::PutCatalog() {
  constexpr std::uint32_t kQueries = 3, kMaps = 4, kIdIndex = 5, kObjectRows = 6, kQueryRows = 7;
  constexpr unsigned kFixed = column_flag::kFixed;
  const std::vector<ColumnSpec> object_columns = {{"Id", ColumnType::kLong, kFixed, 0, 0, 4},
                                                  {"Name", ColumnType::kText, 0, 0, 0, 255},
                                                  {"Type", ColumnType::kInteger, kFixed, 0, 4, 2},
                                                  {"Flags", ColumnType::kLong, kFixed, 0, 6, 4}};
  const std::vector<ColumnSpec> query_columns = {
      {"ObjectId", ColumnType::kLong, kFixed, 0, 0, 4}, {"Attribute", ColumnType::kByte, kFixed, 0, 4, 1},
      {"Order", ColumnType::kBinary, 0, 0, 0, 255},     {"Name1", ColumnType::kText, 0, 1, 0, 255},
      {"Name2", ColumnType::kText, 0, 2, 0, 255},       {"Expression", ColumnType::kMemo, 0, 3, 0, 0},
      {"Flag", ColumnType::kInteger, kFixed, 0, 5, 2}};
  Put(kCatalogPage, 0,
      Definition({kCatalogPage,
                  1,
                  object_columns,
                  {{0, kIdIndex, RowPointer(kMaps, 2)}},
                  RowPointer(kMaps, 0),
                  RowPointer(kMaps, 1)}));
  Put(kQueries, 0, Definition({kQueries, 4, query_columns, {}, RowPointer(kMaps, 3), RowPointer(kMaps, 1)}));
  for (const auto& pages : {InlineMap({kObjectRows}), InlineMap({}), InlineMap({kIdIndex}), InlineMap({kQueryRows})})
    PutRow(kMaps, 0, pages);
  PutIndexPage(kIdIndex, kCatalogPage, {}, true);

  const auto put_object = [&](std::uint32_t id, std::string_view name, unsigned type, std::uint32_t flags) {
    PutRow(kObjectRows, kCatalogPage, Row(4, Little(id, 4) + Little(type, 2) + Little(flags, 4), {Text(name)}, "\x0F"));
  };
  put_object(kCatalogPage, "MSysObjects", 1, kSystemObject);
  put_object(kQueries, "MSysQueries", 1, kSystemObject);
  put_object(TinyPagesOf(layout_.version).definition, "База"_ru, 1, 0);
  put_object(TinyPages::kTypesDefinition, "Виды"_ru, 1, 0);
  put_object(0x80000000, "Все"_ru, 5, 0);

  const auto put_piece = [&](unsigned attribute, std::string_view name, std::string_view expression) {
    const std::string value = Text(expression);
    const std::string memo = Little(kLongValueInline | value.size(), 4) + std::string(8, '\0') + value;
    PutRow(
        kQueryRows, kQueries,
        Row(7, Little(0x80000000, 4) + Little(attribute, 1) + Little(0, 2), {Big(1, 4), Text(name), "", memo}, "\x6F"));
  };
  put_piece(255, "", "");
  put_piece(11, "D", "[Код]"_ru);
  put_piece(5, "База"_ru, "");
  put_piece(0, "", "");
}

void Builder::PutTypes() {
  constexpr std::uint32_t kDef = TinyPages::kTypesDefinition, kMaps = 9, kLeaves[] = {15, 26}, kBitmap = 27;
  constexpr unsigned kFixed = column_flag::kFixed;
  constexpr ColumnSpec kColumns[] = {{"Код"_ru, ColumnType::kLong, kFixed, 0, 0, 4},
                                     {"Да"_ru, ColumnType::kBoolean, kFixed, 0, 0, 1},
                                     {"Байт"_ru, ColumnType::kByte, kFixed, 0, 4, 1},
                                     {"Целое"_ru, ColumnType::kInteger, kFixed, 0, 5, 2},
                                     {"Деньги"_ru, ColumnType::kCurrency, kFixed, 0, 7, 8},
                                     {"Одинарное"_ru, ColumnType::kSingle, kFixed, 0, 15, 4},
                                     {"Двойное"_ru, ColumnType::kDouble, kFixed, 0, 19, 8},
                                     {"Дата"_ru, ColumnType::kDateTime, kFixed, 0, 27, 8},
                                     {"Guid", ColumnType::kGuid, kFixed, 0, 35, 16},
                                     {"Текст"_ru, ColumnType::kText, 0, 0, 0, 100},
                                     {"Двоичное"_ru, ColumnType::kBinary, 0, 1, 0, 100},
                                     {"Memo", ColumnType::kMemo, 0, 2, 0, 0},
                                     {"Ole", ColumnType::kOle, 0, 3, 0, 0},
                                     {"Число"_ru, ColumnType::kNumeric, kFixed, 0, 51, 17}};
  const std::vector<ColumnSpec> columns(std::begin(kColumns), std::end(kColumns) - (jet3() ? 1 : 0));  // no Numeric
  const auto count = static_cast<unsigned>(columns.size());
  Put(kDef, 0,
      Definition({kDef,
                  4,
                  columns,
                  {{0, TinyPages::kNode, RowPointer(kMaps, 2)}},
                  RowPointer(kMaps, 0),
                  RowPointer(kMaps, 1),
                  {Little(11, 2) + RowPointer(kMaps, 3) + RowPointer(kMaps, 4),
                   Little(12, 2) + RowPointer(kMaps, 5) + RowPointer(kMaps, 6)}}));

  PutRow(kMaps, 0, '\x01' + Little(kBitmap, 4) + Little(0, 4));
  PutRow(kMaps, 0, InlineMap({}));
  PutRow(kMaps, 0, InlineMap({TinyPages::kNode, kLeaves[0], kLeaves[1]}));
  PutRow(kMaps, 0, InlineMap({}));
  PutRow(kMaps, 0, InlineMap({}));
  PutRow(kMaps, 0, InlineMap({TinyPages::kChain, TinyPages::kChain + 1}));
  PutRow(kMaps, 0, InlineMap({}));
  Put(kBitmap, 0, "\x05\x01");
  Put(kBitmap, kBitmapAt + TinyPages::kTypesData / 8,
      Little(1 << (TinyPages::kTypesData % 8) | 1 << (TinyPages::kMovedData % 8), 1));

  std::string fixed = Little(0xFFFFFFFB, 4) + '\xC8' + Little(0xFFFE, 2) + Little(123456, 8) +
                      Little(std::bit_cast<std::uint32_t>(0.5f), 4) + Little(std::bit_cast<std::uint64_t>(-2.25), 8) +
                      Little(std::bit_cast<std::uint64_t>(36892.5), 8) + FromHex("33221100554477668899AABBCCDDEEFF");
  if (!jet3()) fixed += '\x80' + std::string(12, '\0') + Little(12500, 4);
  const std::string chained = Little(9, 4) + RowPointer(TinyPages::kChain, 0) + Little(0, 4);
  const std::string text = jet3() ? std::string("ё"_ru) : FromHex("FFFE61005104006263");  // a, ё in two bytes, b, c
  const std::string whole = Row(count, fixed, {text, FromHex("00FF"), "", chained}, "\xFF\x37");
  PutRow(TinyPages::kTypesData, kDef, RowPointer(TinyPages::kMovedData, 0), kRowIsPointer);
  PutRow(TinyPages::kTypesData, kDef, "", kRowIsDeleted);
  PutRow(TinyPages::kTypesData, kDef,
         Row(count, std::string(fixed.size(), '\0'), {"", "", "", ""}, std::string(2, '\0')));
  PutRow(TinyPages::kMovedData, kDef, whole, kRowIsHidden);
  PutRow(TinyPages::kChain, kLongValueOwner, RowPointer(TinyPages::kChain + 1, 0) + "four!");
  PutRow(TinyPages::kChain + 1, kLongValueOwner, Little(0, 4) + "more");

  const std::string null_entry = '\0' + Big(TinyPages::kTypesData, 3) + '\x02';
  const std::string entry = FromHex("7F7FFFFFFB") + Big(TinyPages::kTypesData, 3) + '\0';
  PutIndexPage(kLeaves[0], kDef, {null_entry}, true);
  PutIndexPage(kLeaves[1], kDef, {entry}, true);
  Put(kLeaves[0], layout_.index_page.next, Little(kLeaves[1], 4));
  Put(kLeaves[1], layout_.index_page.previous, Little(kLeaves[0], 4));
  PutIndexPage(TinyPages::kNode, kDef, {null_entry + Big(kLeaves[0], 4)}, false);
  Put(TinyPages::kNode, layout_.index_page.tail, Little(kLeaves[1], 4));
}

std::string Builder::Build() {
  PutGlobalMap();
  PutMessages();
  PutCatalog();
  PutTypes();
  return image_;
}

}  // namespace

std::string TinyBase(Version version) { return Builder(version).Build(); }

}  // namespace jet
