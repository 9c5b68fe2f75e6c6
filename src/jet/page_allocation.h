#pragma once

#include <cstdint>

#include "jet/table_def.h"
#include "jet/transaction.h"

namespace jet {

/// Takes pages for new content and gives them back, through the global usage map.
class PageAllocator {
 public:
  explicit PageAllocator(Transaction& transaction) : transaction_(&transaction) {}

  /// The lowest free page, else a new one at the end of the file; all zeros. @throws Error when the
  /// file would grow beyond what its version can hold
  MutablePage Allocate();
  /// The page must be in no other usage map any more.
  void Free(std::uint32_t page);

 private:
  Transaction* transaction_;
};

/// Changes a usage map: a table's, an index's or a long-value column's set of pages. A row of bits
/// that has become too short is turned into references to pages of bits.
class UsageMapWriter {
 public:
  UsageMapWriter(Transaction& transaction, RowId where) : transaction_(&transaction), where_(where) {}

  void Add(std::uint32_t page);
  void Remove(std::uint32_t page);

 private:
  Transaction* transaction_;
  RowId where_;
};

}  // namespace jet
