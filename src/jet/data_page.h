#pragma once

#include <cstdint>

#include "base/bytes.h"
#include "jet/page_file.h"
#include "jet/table_def.h"

namespace jet {

/// The rows of a data page: of a table, of long values or of usage maps. Slots count from 0.
class DataPage {
 public:
  /// @throws FormatError when the page is of another kind or its row table does not fit
  DataPage(const Layout& layout, const Page& page);
  /// The same for a page that must belong to `owner`: a table's definition page or kLongValueOwner.
  DataPage(const Layout& layout, const Page& page, std::uint32_t owner);

  /// The rows of a page whose count of them may be damaged: as many as fit there when the count is impossible, or
  /// when the page's count of free bytes speaks for that. @throws FormatError when the page is of another kind
  static DataPage Salvage(const Layout& layout, const Page& page);

  std::size_t slot_count() const { return slots_; }
  /// Bytes between the row table and the lowest row. @throws FormatError when they overlap
  std::size_t free() const;
  /// kRowIsPointer, kRowIsHidden, kRowIsDeleted or 0.
  unsigned Flags(std::size_t slot) const { return Entry(slot) & kRowFlags; }
  /// The row's bytes, whatever its flags. @throws FormatError when there is no such slot
  Bytes Row(std::size_t slot) const;

 private:
  DataPage(std::size_t slots, const Layout& layout, const Page& page);
  unsigned Entry(std::size_t slot) const { return LoadU16(bytes_, table_ + 2 * slot); }

  Bytes bytes_;
  std::uint32_t number_;
  std::size_t table_;
  std::size_t slots_;
};

/// Takes a row pointer apart: u8 slot, u24 page.
inline RowId LoadRowPointer(Bytes bytes, std::size_t at) { return {LoadU24(bytes, at + 1), LoadU8(bytes, at)}; }

}  // namespace jet
