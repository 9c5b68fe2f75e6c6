#pragma once

#include <cstdint>
#include <memory>

#include "base/bytes.h"
#include "jet/page_file.h"
#include "jet/table_def.h"

namespace jet {

/// The entries of one index page, walked one by one in either direction. An entry is its key, the
/// row's address and, on nodes, the child's page.
class IndexEntries {
 public:
  IndexEntries() = default;
  /// Stands before the first entry. @throws FormatError when it is no index page of the table
  IndexEntries(const PageFile& file, Page page, std::uint32_t table);

  bool leaf() const { return leaf_; }
  std::uint32_t page() const { return page_.number(); }
  std::uint32_t previous() const;
  std::uint32_t next() const;
  /// The rightmost child of a node; 0 when its last entry leads there.
  std::uint32_t tail() const;

  /// @return false when there is none; the place is then behind the last or before the first entry
  bool Next();
  bool Previous();
  void ToEnd();
  /// Stands between the entries that are `before` and those that are not; the order of the page
  /// must be that of `before`. @param before  takes an entry's key and row
  template <typename Before>
  void SkipWhile(Before before) {
    ToEnd();
    std::size_t low = 0, high = end_;
    while (low < high) {
      const std::size_t begin = PreviousEnd((low + high) / 2 + 1);  // of the entry that holds the middle
      Take(begin, NextEnd(begin));
      if (before(key_and_row()))
        low = end_;
      else
        high = begin;
    }
    begin_ = end_ = low;
  }

  /// On a node: the child in which what stands at this place goes on, the rightmost one at the end.
  /// May move on. @throws FormatError when there is none
  std::uint32_t ChildHere();

  /// Where the current entry begins and ends, in bytes behind the page's first entry; equal between two.
  std::size_t begin() const { return begin_; }
  std::size_t end() const { return end_; }
  /// The current entry; valid until the next move.
  Bytes entry() const { return entry_; }
  /// Without the row's address and the child.
  Bytes key() const { return entry_.first(entry_.size() - tail_size()); }
  /// Without the child.
  Bytes key_and_row() const { return entry_.first(entry_.size() - (leaf_ ? 0 : kEntryChildSize)); }
  RowId row() const;
  std::uint32_t child() const;

 private:
  std::size_t tail_size() const { return kEntryRowSize + (leaf_ ? 0 : kEntryChildSize); }
  void KeepPrefix(std::size_t page_size);
  Bytes mask() const { return page_.bytes().subspan(layout_->mask, layout_->entries - layout_->mask); }
  std::size_t NextEnd(std::size_t from) const;
  std::size_t PreviousEnd(std::size_t before) const;
  void Take(std::size_t begin, std::size_t end);

  const IndexPageLayout* layout_ = nullptr;
  Page page_;
  bool leaf_ = true;
  std::size_t prefix_ = 0;
  std::size_t begin_ = 0, end_ = 0;  // of the current entry, from layout_->entries on
  Bytes entry_;
  std::unique_ptr<std::byte[]> whole_;  // the prefix, and behind it what the current entry has stored
};

}  // namespace jet
