#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/bytes.h"
#include "jet/check_context.h"
#include "jet/check_maps.h"
#include "jet/row_set.h"
#include "jet/table_def.h"

namespace jet {

/// Checks the long values of one column.
class LongValueCheck {
 public:
  /// @param name  of the column, for findings: "Таблица «База», поле «Текст»"
  LongValueCheck(CheckContext& context, MapCheck& maps, const Column& column, std::string name);

  /// The value of one row. @param stored  head and inline data
  /// @return false, with a finding, when it cannot be read whole
  bool CheckValue(Bytes stored, RowId row);
  /// After all rows: pages and parts that belong to no value.
  void CheckLeftovers();

 private:
  bool CheckParts(RowId first, std::size_t length, bool chained, RowId row);
  bool CheckPart(RowId part, RowId row);
  bool Fail(RowId row, std::string_view what);

  CheckContext& context_;
  std::string name_;
  CheckContext::Owner owner_;
  std::vector<std::uint32_t> pages_;
  RowSet parts_;
};

}  // namespace jet
