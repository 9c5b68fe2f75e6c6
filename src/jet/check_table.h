#pragma once

#include <deque>
#include <functional>
#include <string>

#include "jet/check_context.h"
#include "jet/check_long_values.h"
#include "jet/check_maps.h"
#include "jet/row_set.h"
#include "jet/table.h"

namespace jet {

/// Checks one table: its data pages and rows, its long values, its indexes.
class TableCheck {
 public:
  using Visit = std::function<void(const Row&)>;

  /// @param name  of the table
  TableCheck(CheckContext& context, MapCheck& maps, const TableDef& def, std::string_view name);

  /// @param visit  gets every row that can be read; may be empty
  void Run(const Visit& visit);

 private:
  void CheckDataMaps();
  void CheckPage(std::uint32_t page, const Visit& visit);
  void CheckRow(RowId id, const Visit& visit);
  bool CheckColumns(const Row& row);
  void CheckPointer(RowId from, Bytes pointer);
  void CheckHiddenRows() const;
  void CheckIndexes();
  void CheckRowCount() const;

  CheckContext& context_;
  MapCheck& maps_;
  const TableDef& def_;
  Table table_;
  std::string name_;  // "Таблица «База»"
  CheckContext::Owner data_;
  std::vector<std::uint32_t> pages_;
  std::deque<LongValueCheck> long_values_;  // of the long-value columns, in the order of def_.columns
  RowSet live_, unreadable_;
  RowSet hidden_, reached_;  // data of moved rows, and those that a pointer leads to
  Row row_;
};

}  // namespace jet
