#pragma once

#include <cstdint>

#include "base/bytes.h"
#include "jet/index_page.h"
#include "jet/page_file.h"
#include "jet/table_def.h"

namespace jet {

/// Levels above the leaves that no honest index has: two children a node and the most pages of a file make 24.
inline constexpr int kDeepestIndex = 32;

/// The order of index entries: <0, 0, >0 by plain bytes, a beginning before what it begins.
int CompareBytes(Bytes a, Bytes b);
bool BeginsWith(Bytes text, Bytes beginning);

enum class Direction { kForward, kBackward };

/// Goes through the entries of an index in key order or against it. It starts before the first
/// entry of its direction. Changing the table makes it invalid.
class IndexCursor {
 public:
  IndexCursor(const PageFile& file, std::uint32_t table, std::uint32_t root, Direction direction);

  /// The next Next() gives the first entry in the cursor's direction whose key begins with `key`
  /// or lies behind it.
  void Seek(Bytes key);
  /// @return false behind the last entry; id() and key() then mean nothing
  bool Next();

  /// The row's address.
  RowId id() const;
  /// The columns' keys without the row's address; valid until the next move.
  Bytes key() const;

 private:
  bool LiesBefore(Bytes entry, Bytes key) const;
  std::uint32_t ChildFor(IndexEntries& node, Bytes key) const;
  bool StepToNeighbour();

  const PageFile* file_;
  std::uint32_t table_, root_;
  Direction direction_;
  bool started_ = false;
  std::uint32_t leaves_seen_ = 0;  // more than the file has pages: a circle
  IndexEntries entries_;
};

}  // namespace jet
