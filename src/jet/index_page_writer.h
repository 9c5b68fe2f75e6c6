#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "base/bytes.h"
#include "jet/page_file.h"

namespace jet {

/// All that an index page says.
struct IndexPageContent {
  unsigned level = 0;  // 0 = leaf
  std::uint32_t previous = 0, next = 0;
  std::uint32_t tail = 0;            // nodes only
  std::vector<std::string> entries;  // whole: key, row and, on nodes, child
};

/// @throws FormatError when it is no index page of the table
IndexPageContent ReadIndexPage(const PageFile& file, std::uint32_t page, std::uint32_t table);

/// Bytes for the entries of a page.
inline std::size_t IndexPageCapacity(const Layout& layout) { return layout.page_size - layout.index_page.entries; }
/// Could these stand on one page? Those of a leaf may leave a common beginning away.
bool FitsIndexPage(const Layout& layout, bool leaf, std::span<const std::string> entries);

/// Writes a page anew. @param content  its entries fit
void WriteIndexPage(const Layout& layout, const MutablePage& page, std::uint32_t table,
                    const IndexPageContent& content);

/// Changes a page's entries where they stand, for most changes are small. Places are in bytes behind
/// the page's first entry.
class IndexPageEditor {
 public:
  /// @param used  where the last entry ends
  IndexPageEditor(const Layout& layout, const MutablePage& page, std::size_t used);

  /// @param at  where an entry begins or the last one ends
  /// @return false, with nothing changed, when that needs more room or another common beginning
  bool Insert(std::size_t at, Bytes entry);
  /// Takes the entry at [begin, end) away. @return false, with nothing changed, as above
  bool Erase(std::size_t begin, std::size_t end);

 private:
  void MoveMask(std::size_t from, std::size_t to);
  void SetUsed(std::size_t used);

  const Layout& layout_;
  MutablePage page_;
  std::size_t prefix_, used_;
};

}  // namespace jet
