#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "jet/data_page.h"
#include "jet/page_file.h"
#include "jet/row.h"
#include "jet/table_def.h"
#include "jet/usage_map.h"

namespace jet {

/// Goes through a file page by page and takes the rows of one table, whatever else is damaged. A moved row is taken
/// where it lies now; what led there may be gone.
///
///     while (cursor.NextPage())
///       while (cursor.NextRow()) Use(cursor.row());
class SalvageCursor {
 public:
  /// Both outlive the cursor.
  SalvageCursor(const PageFile& file, const TableDef& def);

  /// Goes on to the next page of the file, whoever owns it. @return false behind the last one
  bool NextPage();
  /// The page that the cursor is on.
  std::uint32_t page() const { return next_ - 1; }
  /// @return false behind the last row of this page that can be looked at
  bool NextRow();
  /// Valid until the next move. Its fields may still turn out to be damaged.
  const Row& row() const { return row_; }

  /// Rows of the table that could not be looked at.
  std::uint64_t bad_rows() const { return bad_rows_; }
  /// Pages that cannot be read, and those that are the table's but cannot be read as such. Ascending.
  const std::vector<std::uint32_t>& bad_pages() const { return bad_pages_; }

 private:
  void LookAtPage(std::uint32_t number);
  bool LookAtRow(std::size_t slot);
  bool IsClaimed(std::uint32_t number);
  void AddBadPage();

  const PageFile& file_;
  const TableDef& def_;
  std::optional<UsageMap> claimed_;  // what the table takes for its own; none when the map is damaged
  std::uint32_t next_ = 0;
  Page page_;
  std::optional<DataPage> rows_;  // of page_, when it is the table's
  std::size_t slot_ = 0;
  Row row_;
  std::uint64_t bad_rows_ = 0;
  std::vector<std::uint32_t> bad_pages_;
};

}  // namespace jet
