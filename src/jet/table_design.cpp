#include "jet/table_design.h"

#include "base/checked.h"
#include "base/cp1251.h"
#include "base/error.h"
#include "jet/column_codec.h"
#include "jet/layout.h"

namespace jet {
namespace {

bool IsVariable(ColumnType type) { return SizeOf(type) == 0 && type != ColumnType::kBoolean; }

std::uint16_t LengthOf(Version version, const NewColumn& column) {
  constexpr std::uint16_t kUtf16Unit = 2;
  if (column.type == ColumnType::kBoolean) return 1;
  if (column.type == ColumnType::kText && version == Version::kJet4) return CheckedMul(column.length, kUtf16Unit);
  return IsVariable(column.type) ? column.length : static_cast<std::uint16_t>(SizeOf(column.type));
}

/// Gives columns their places in the rows, in the order of their numbers.
class RowDesigner {
 public:
  explicit RowDesigner(const Header& header) : header_(header) {}

  Column Place(const NewColumn& wanted) {
    Column column;
    column.name = wanted.name;
    column.stored_name = StoredName(header_.version, wanted.name);
    column.type = wanted.type;
    column.number = column.ordinal = columns_++;
    column.length = LengthOf(header_.version, wanted);
    column.fixed = !IsVariable(wanted.type);
    column.autonumber = wanted.autonumber;
    column.compress = header_.version == Version::kJet4 && IsText(wanted.type);
    column.collation = header_.collation;
    column.collation_version = header_.collation_version;
    column.code_page = header_.version == Version::kJet3 ? header_.code_page : std::uint16_t{0};
    column.variable_index = variable_columns_;
    if (IsVariable(wanted.type)) {
      ++variable_columns_;
    } else if (wanted.type != ColumnType::kBoolean) {
      column.fixed_offset = fixed_size_;
      fixed_size_ = CheckedAdd(fixed_size_, column.length);
    }
    return column;
  }
  std::uint16_t variable_columns() const { return variable_columns_; }

 private:
  const Header& header_;
  std::uint16_t columns_ = 0, variable_columns_ = 0, fixed_size_ = 0;
};

RealIndex MakeRealIndex(const TableDef& def, const NewIndex& wanted) {
  RealIndex index;
  for (const std::string_view name : wanted.columns) {
    const Column* const column = def.FindColumn(name);
    if (column == nullptr) ThrowBadArgument();
    index.columns.push_back({column->number, true});
  }
  index.unique = wanted.unique;
  index.ignore_nulls = wanted.ignore_nulls;
  index.required = wanted.required;
  return index;
}

}  // namespace

std::string StoredName(Version version, std::string_view name) {
  return version == Version::kJet4 ? cp1251::ToUtf16(name) : std::string(name);
}

TableDef DesignTable(const Header& header, std::span<const NewColumn> columns, std::span<const NewIndex> indexes) {
  if (columns.size() > kMostColumns || indexes.size() > kMostIndexes) ThrowBadArgument();
  TableDef def;
  RowDesigner rows(header);
  for (const NewColumn& column : columns) def.columns.push_back(rows.Place(column));
  def.max_columns = static_cast<std::uint16_t>(columns.size());
  def.variable_columns = rows.variable_columns();
  for (const NewIndex& index : indexes) {
    if (index.columns.size() > kIndexColumnSlots) ThrowBadArgument();
    const auto number = static_cast<std::uint32_t>(def.real_indexes.size());
    def.real_indexes.push_back(MakeRealIndex(def, index));
    LogicalIndex logical;
    logical.name = index.name;
    logical.number = logical.real = number;
    logical.kind = index.kind;
    def.logical_indexes.push_back(std::move(logical));
  }
  return def;
}

}  // namespace jet
