#pragma once

#include <bitset>
#include <cstdint>
#include <unordered_map>

#include "jet/table_def.h"

namespace jet {

/// Row addresses; takes room for the pages that occur.
class RowSet {
 public:
  /// @return false when it is there already
  bool Insert(RowId row) {
    auto bit = pages_[row.page][row.slot];
    if (bit) return false;
    bit = true;
    ++size_;
    return true;
  }
  bool Contains(RowId row) const {
    const auto page = pages_.find(row.page);
    return page != pages_.end() && page->second[row.slot];
  }
  bool HasPage(std::uint32_t page) const { return pages_.contains(page); }
  std::size_t size() const { return size_; }

 private:
  std::unordered_map<std::uint32_t, std::bitset<256>> pages_;
  std::size_t size_ = 0;
};

}  // namespace jet
