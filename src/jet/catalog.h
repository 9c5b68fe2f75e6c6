#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "jet/table.h"

namespace jet {

/// A table as the catalog lists it.
struct CatalogTable {
  std::string name;              // Windows-1251
  std::string stored_name;       // the bytes in the file; DecodeUtf8 of text_codec.h reads them
  std::uint32_t definition = 0;  // page of the definition
  std::uint32_t flags = 0;
  bool system = false;  // not the user's own
};

/// A saved query as the catalog lists it.
struct CatalogQuery {
  std::string name, stored_name;
  std::int32_t id = 0;
  std::uint32_t flags = 0;

  /// 0x00 select, 0x10 crosstab, 0x20 delete, 0x30 update, 0x40 append, 0x50 make-table, 0x60 data
  /// definition, 0x70 pass-through, 0x80 union.
  std::uint32_t kind() const { return flags & 0xF0; }
};

/// One piece of a saved query; what a piece has not is empty or 0.
struct QueryRow {
  int attribute = 0;        // 0 begin, 5 source, 6 column, 8 WHERE, 11 ORDER BY ... 255 end
  std::uint32_t order = 0;  // counts from 1 within the attribute
  int flag = 0;
  std::string name1, name2, expression;
};

/// What MSysObjects lists, each in the order it is stored.
struct Catalog {
  std::vector<CatalogTable> user_tables, system_tables;
  std::vector<CatalogQuery> queries;

  /// By name, letter case ignored, system tables included; nullptr when there is none.
  const CatalogTable* FindTable(std::string_view name) const;
};

/// A column of a system table. @throws FormatError when it is not there
const Column& RequireColumn(const TableDef& def, std::string_view name);

/// Takes what MSysObjects lists row by row.
class CatalogReader {
 public:
  /// @param objects  its definition; outlives this. @throws FormatError when it lacks a column
  explicit CatalogReader(const TableDef& objects);
  /// @throws FormatError for a damaged row; those before it stay
  void Take(const Row& row);
  Catalog Take() && { return std::move(catalog_); }

 private:
  const Column &id_, &name_, &type_, &flags_;
  Catalog catalog_;
};

Catalog ReadCatalog(const Table& objects);

/// The pieces of one saved query by attribute and order. @param queries  MSysQueries
std::vector<QueryRow> ReadQueryRows(const Table& queries, std::int32_t id);

}  // namespace jet
