#pragma once

#include <cstdint>

#include "base/bytes.h"
#include "jet/data_page.h"
#include "jet/page_file.h"

namespace jet {

/// Changes the rows of a data page. Views of them taken before a change show other bytes after it.
class DataPageWriter {
 public:
  /// @throws FormatError like DataPage, and when its rows overlap
  DataPageWriter(const Layout& layout, const MutablePage& page, std::uint32_t owner);
  /// Makes a page of zeros a data page without rows.
  static void Format(const Layout& layout, const MutablePage& page, std::uint32_t owner);

  const DataPage& rows() const { return rows_; }

  /// The page must take it. @return its slot
  std::uint8_t Add(Bytes row, unsigned flags);
  /// Gives a slot other bytes and flags; it must not grow by more than rows().free(). `row` must not be a
  /// view of this page.
  void Replace(std::size_t slot, Bytes row, unsigned flags);
  /// The slot stays, so that no other row ever has its address.
  void Delete(std::size_t slot) { Replace(slot, {}, kRowIsDeleted); }
  bool HasLiveRows() const;

 private:
  std::size_t SlotAt(std::size_t slot) const { return layout_.data_page.row_table + kRowSlotSize * slot; }
  std::size_t Start(std::size_t slot) const { return page_.U16(SlotAt(slot)) & kRowStart; }
  std::size_t LowestStart() const;
  void UpdateFree();

  const Layout& layout_;
  MutablePage page_;
  DataPage rows_;
};

/// Does a page with these rows take one more of this size?
inline bool TakesRow(const DataPage& rows, std::size_t size) {
  return rows.slot_count() < kMostSlots && size + kRowSlotSize <= rows.free();
}

/// Puts a row pointer together: u8 slot, u24 page.
inline void StoreRowPointer(MutableBytes bytes, std::size_t at, RowId row) {
  StoreU8(bytes, at, row.slot);
  StoreU24(bytes, at + 1, row.page);
}

}  // namespace jet
