#pragma once

#include <cstdint>
#include <set>
#include <string_view>
#include <vector>

#include "jet/check_context.h"

namespace jet {

/// Checks usage maps and reads them.
class MapCheck {
 public:
  explicit MapCheck(CheckContext& context);

  /// The map of free pages.
  void CheckGlobal();
  /// Does that map call the page free?
  bool IsFree(std::uint32_t page) const { return page < free_.size() && free_[page]; }

  /// The pages of a map that the file has, ascending; as many as can be read. @param name  for findings
  std::vector<std::uint32_t> PagesOf(RowId where, std::string_view name);

 private:
  bool ClaimRow(RowId where, std::string_view name);
  void ClaimBitmaps(RowId where);

  CheckContext& context_;
  CheckContext::Owner rows_, bitmaps_;
  std::set<RowId> seen_;
  std::vector<bool> free_;  // by page
};

}  // namespace jet
