#pragma once

#include <cstdint>
#include <optional>

#include "base/bytes.h"
#include "jet/page_file.h"
#include "jet/table_def.h"

namespace jet {

/// A set of pages, kept as a row of bits or as a row of references to pages of bits.
class UsageMap {
 public:
  /// The empty set when `where` has page 0.
  UsageMap(const PageFile& file, RowId where);

  /// The first page of the set that is not before `from`. It need not exist: whoever reads it
  /// learns that.
  std::optional<std::uint32_t> NextFrom(std::uint32_t from);
  /// The last page of the set that is not behind `to`; it need not exist either.
  std::optional<std::uint32_t> LastUpTo(std::uint32_t to);
  bool Contains(std::uint32_t page);

 private:
  bool inline_bits() const { return LoadU8(row_, 0) == kInlineMap; }
  std::optional<std::uint32_t> NextInline(std::uint64_t from) const;
  std::optional<std::uint32_t> NextByReference(std::uint64_t from);
  std::optional<std::uint32_t> LastInline(std::uint32_t to) const;
  std::optional<std::uint32_t> LastByReference(std::uint32_t to);
  std::uint32_t pages_per_reference() const;
  std::uint32_t references() const;
  /// The bits of a reference; empty when it leads nowhere.
  Bytes BitsOf(std::uint32_t reference);

  const PageFile* file_;
  Page page_;    // holds row_
  Bytes row_;    // empty = the empty set
  Page bitmap_;  // the bitmap page looked at last
};

}  // namespace jet
