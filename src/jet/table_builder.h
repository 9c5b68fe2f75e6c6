#pragma once

#include <cstdint>
#include <string>

#include "jet/table_def.h"
#include "jet/transaction.h"

namespace jet {

/// Hands out rows for usage maps, all of them empty, on pages of such rows.
class MapRows {
 public:
  explicit MapRows(Transaction& transaction) : transaction_(&transaction) {}

  RowId Add();
  /// The next row goes to a page of its own.
  void StartPage() { page_ = 0; }

 private:
  Transaction* transaction_;
  std::uint32_t page_ = 0;  // 0 = none yet
};

/// Gives a table the usage maps of its rows and long values.
void PlaceTableMaps(MapRows& maps, TableDef& table);
/// Gives an index its usage map and an empty root page. The table has its definition page.
void PlaceIndex(Transaction& transaction, MapRows& maps, const TableDef& table, RealIndex& index);
/// Writes the definition on the page that the table names, and on further ones.
void StoreTableDef(Transaction& transaction, const TableDef& table);

/// Gives a table without rows all its places, its definition page too when it has none, and writes it.
/// The catalog does not list it yet.
void BuildTable(Transaction& transaction, TableDef& table);

}  // namespace jet
