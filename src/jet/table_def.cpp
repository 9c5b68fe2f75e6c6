#include "jet/table_def.h"

#include <algorithm>

#include "base/cp1251.h"

namespace jet {

const Column* TableDef::FindColumn(std::string_view name) const {
  for (const Column& column : columns)
    if (cp1251::EqualIgnoringCase(column.name, name)) return &column;
  return nullptr;
}

const Column* TableDef::ColumnByNumber(std::uint16_t number) const {
  const auto found =
      std::find_if(columns.begin(), columns.end(), [number](const Column& c) { return c.number == number; });
  return found == columns.end() ? nullptr : &*found;
}

const RealIndex* TableDef::IndexOn(const Column& column) const {
  const auto leads = [&](const RealIndex& index) {
    return !index.columns.empty() && index.columns.front().number == column.number;
  };
  for (const LogicalIndex& logical : logical_indexes)
    if (logical.kind == IndexKind::kPrimary && leads(real_indexes[logical.real])) return &real_indexes[logical.real];
  const auto found = std::find_if(real_indexes.begin(), real_indexes.end(), leads);
  return found == real_indexes.end() ? nullptr : &*found;
}

}  // namespace jet
