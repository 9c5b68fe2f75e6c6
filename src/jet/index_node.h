#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "jet/index_page_writer.h"
#include "jet/layout.h"

namespace jet {

/// An inner page of an index, as the children below it.
struct IndexNode {
  struct Child {
    std::string greatest;  // the last entry below the child; empty when the node does not tell it
    std::uint32_t page = 0;
  };

  std::uint32_t page = 0;
  unsigned level = 1;
  std::uint32_t previous = 0, next = 0;
  std::vector<Child> children;

  /// Position of a child. @throws FormatError when there is none on this page
  std::size_t Find(std::uint32_t child) const;
};

/// @throws FormatError when it is no node of the table
IndexNode ReadIndexNode(const PageFile& file, std::uint32_t page, std::uint32_t table);

/// The node as a page says it: the last of several children is the tail and has no entry. Of a single
/// child `greatest` must be known.
IndexPageContent ContentOf(const IndexNode& node);

}  // namespace jet
