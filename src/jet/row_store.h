#pragma once

#include <cstdint>
#include <optional>

#include "base/bytes.h"
#include "jet/data_page_writer.h"
#include "jet/table_def.h"
#include "jet/transaction.h"

namespace jet {

/// Finds places for the rows of one owner, and keeps the usage maps of its pages: the pages that it
/// owns, and those of them that have room. Rows keep their addresses.
class RowStore {
 public:
  /// The rows of a table.
  RowStore(Transaction& transaction, const TableDef& table);
  /// The long values of a column. It may lack the map of pages with room: then there is only AddAlone.
  RowStore(Transaction& transaction, const Column& long_values);

  bool can_share_pages() const { return free_map_.page != 0; }

  /// @param row  not a view of a page of this store. @param flags  0 or kRowIsHidden
  RowId Add(Bytes row, unsigned flags = 0);
  /// On a page of its own that takes no other row.
  RowId AddAlone(Bytes row);
  /// @return false, with nothing changed, when the row's page has not enough room
  bool Replace(RowId where, Bytes row, unsigned flags);
  /// Overwrites the beginning of a row.
  void SetPointer(RowId where, RowId to);
  /// A page without live rows is given back.
  void Delete(RowId where);

 private:
  const PageFile& pages() const { return transaction_->pages(); }
  const Layout& layout() const { return pages().layout(); }
  DataPageWriter Open(std::uint32_t page) const { return {layout(), transaction_->Change(page), owner_}; }
  bool HasRoom(std::uint32_t page, std::size_t size) const;
  std::optional<std::uint32_t> FindRoom(std::size_t size);
  std::uint32_t NewPage() const;
  std::uint32_t NewSharedPage();
  void KeepFreeMap(std::uint32_t page, const DataPage& rows);
  void FreePage(std::uint32_t page);

  Transaction* transaction_;
  std::uint32_t owner_;
  RowId owned_map_, free_map_;
  std::size_t least_free_;
  std::uint32_t last_page_ = 0;             // where the last row went; 0 = nowhere yet
  std::uint32_t newest_page_ = 0;           // made for the rows of Add; 0 = none yet
  std::uint32_t untried_end_ = UINT32_MAX;  // pages from here on were found to have too little room
};

}  // namespace jet
