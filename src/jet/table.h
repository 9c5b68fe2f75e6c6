#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "jet/index.h"
#include "jet/page_file.h"
#include "jet/row.h"
#include "jet/table_def.h"
#include "jet/usage_map.h"
#include "jet/value.h"

namespace jet {

/// Goes through the live rows in storage order: data pages ascending, slots ascending.
class TableCursor {
 public:
  TableCursor(const PageFile& file, const TableDef& def);

  /// @return false behind the last row; row() then means nothing
  bool Next();
  /// Valid until the next Next().
  const Row& row() const { return row_; }

 private:
  bool NextPage();

  const PageFile* file_;
  const TableDef* def_;
  UsageMap owned_;
  std::uint32_t next_page_ = 0;
  Page page_;
  std::size_t slot_ = 0, slots_ = 0;
  Row row_;
};

/// A table of an open base: a light handle that lives as long as its Database.
class Table {
 public:
  Table(const PageFile& file, const TableDef& def) : file_(&file), def_(&def) {}

  const TableDef& def() const { return *def_; }

  TableCursor Scan() const { return {*file_, *def_}; }
  /// Counts the live rows.
  std::uint32_t CountRows() const;
  /// What the definition says of their number: a hint, crashed sessions leave it wrong.
  std::uint32_t ExpectedRows() const;

  /// @throws FormatError when no live row has this address
  Row Read(RowId id) const;
  /// The same into a row that is used again and again.
  void Read(RowId id, Row& row) const;
  /// Likewise for an address that may be out of date.
  /// @return false when the row has been deleted since
  bool TryRead(RowId id, Row& row) const;

  /// All entries of one of the table's indexes, in its order or against it.
  IndexCursor Walk(const RealIndex& index, Direction direction = Direction::kForward) const;
  /// What the keys of rows with these values in the index's first columns begin with, for
  /// IndexCursor::Seek; none when the index sorts text in a way that the engine does not know.
  std::optional<std::string> KeyPrefix(const RealIndex& index, std::span<const Value> values) const;
  /// The first row with these values in the index's first columns; none when there is no such row.
  /// @throws Error when KeyPrefix gives none
  std::optional<RowId> Seek(const RealIndex& index, std::span<const Value> values) const;

 private:
  friend class TableCursor;
  static bool ReadSlot(const PageFile& file, const TableDef& def, RowId id, const Page& page, Row& row);

  const PageFile* file_;
  const TableDef* def_;
};

}  // namespace jet
