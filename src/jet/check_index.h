#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "jet/check_context.h"
#include "jet/index_page.h"
#include "jet/row.h"
#include "jet/row_set.h"
#include "jet/table.h"

namespace jet {

/// Checks one index: the tree itself, and that its entries are those of the table's rows.
class IndexCheck {
 public:
  /// @param index  position in the definition
  /// @param live, unreadable  the table's rows, and those of them that have no key
  IndexCheck(CheckContext& context, const Table& table, std::size_t index, std::string name, const RowSet& live,
             const RowSet& unreadable);

  /// @param map  the pages of the index's map
  /// @param data  the table's data pages
  void Run(const std::vector<std::uint32_t>& map, const std::vector<std::uint32_t>& data);

 private:
  int Walk(std::uint32_t page, int depth);
  int WalkNode(IndexEntries& entries, int depth);
  void WalkLeaf(IndexEntries& entries, int depth);
  void CheckHead(IndexEntries& entries);
  void CheckEntry(const IndexEntries& entries);
  void CheckRow(RowId id, Bytes key);
  void CheckMissingRows(const std::vector<std::uint32_t>& data);
  void CheckDistinctKeys() const;
  bool IsAllNull(Bytes key) const;
  void Fail(std::uint32_t page, std::string_view what);

  CheckContext& context_;
  const Table& table_;
  const RealIndex& index_;
  std::size_t position_;
  std::string name_;
  const RowSet& live_;
  const RowSet& unreadable_;
  CheckContext::Owner owner_;

  std::vector<std::uint32_t> pages_;
  bool broken_ = false;  // part of the tree could not be walked
  std::string last_;     // the entry seen last, with its row
  std::uint32_t last_leaf_ = 0, next_leaf_ = 0;
  int leaf_depth_ = -1;
  RowSet entered_;
  std::uint64_t distinct_ = 0;
  Row row_;
};

}  // namespace jet
