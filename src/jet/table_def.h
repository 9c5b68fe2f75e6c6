#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "jet/layout.h"
#include "jet/value.h"

namespace jet {

/// A row's address: it never changes while the row lives; a moved row keeps the address of its pointer.
struct RowId {
  std::uint32_t page = 0;
  std::uint8_t slot = 0;
  friend auto operator<=>(const RowId&, const RowId&) = default;
};

struct Column {
  std::string name;         // Windows-1251
  std::string stored_name;  // the bytes in the file: code page text (Jet 3) or UTF-16LE (Jet 4)
  ColumnType type = ColumnType::kLong;
  std::uint16_t number = 0;          // position in null masks, key in index and long-value entries
  std::uint16_t variable_index = 0;  // place among the variable values of a row
  std::uint16_t fixed_offset = 0;    // bytes from the start of the fixed part
  std::uint16_t length = 0;          // bytes; text in Jet 4: two per character
  bool fixed = false;                // decided by a flag, not by the type
  bool autonumber = false;
  bool compress = false;                               // Jet 4: text may be stored compressed
  bool hyperlink = false;                              // a Memo that holds a link
  std::uint8_t other_flags = column_flag::kUpdatable;  // as stored: those that have no field here
  std::uint16_t ordinal = 0;                           // place for display; gaps and repetitions occur
  std::uint16_t collation = 0;                         // language of the sort order
  std::uint8_t collation_version = 0;                  // Jet 4
  std::uint16_t code_page = 0;                         // Jet 3
  std::uint8_t precision = 0, scale = 0;               // Numeric only
  RowId owned_map, free_map;                           // long-value columns: their usage maps; page 0 = none
};

struct IndexColumn {
  std::uint16_t number = 0;  // column number
  bool ascending = true;
};

/// A B-tree.
struct RealIndex {
  std::vector<IndexColumn> columns;
  RowId usage_map;
  std::uint32_t root = 0;
  bool unique = false, ignore_nulls = false, required = false;
};

enum class IndexKind : std::uint8_t { kNormal = 0, kPrimary = 1, kForeign = 2 };

/// What the index of a relationship says of the other table; as below in all other indexes.
struct Relation {
  std::uint8_t side = 0;                                  // 1 = this table is referenced, 2 = it refers to the other
  std::uint32_t other_index = 0xFFFFFFFF;                 // number of the logical index there
  std::uint32_t other_table = 0;                          // its definition page
  std::uint8_t cascade_updates = 4, cascade_deletes = 4;  // 1 = yes, 0 = no
};

/// A named index, backed by a real one.
struct LogicalIndex {
  std::string name;
  std::uint32_t number = 0;
  std::uint32_t real = 0;  // position in TableDef::real_indexes
  IndexKind kind = IndexKind::kNormal;
  Relation relation;
};

/// A table definition, assembled from all its pages: what does not change with the table's rows. For
/// what does, see table_counters.h.
struct TableDef {
  std::uint32_t page = 0;  // the table's identity
  bool system = false;
  std::uint16_t max_columns = 0;       // column numbers ever given out; new rows store it
  std::uint16_t variable_columns = 0;  // deleted ones included; new rows store so many offsets
  std::vector<Column> columns;         // in the order of display
  std::vector<RealIndex> real_indexes;
  std::vector<LogicalIndex> logical_indexes;
  RowId owned_map, free_map;

  /// By name, letter case ignored; nullptr when there is none.
  const Column* FindColumn(std::string_view name) const;
  /// By column number; nullptr when there is none.
  const Column* ColumnByNumber(std::uint16_t number) const;
  /// The real index whose first column is this one, primary key first; nullptr when there is none.
  const RealIndex* IndexOn(const Column& column) const;
};

}  // namespace jet
