#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "sql/ast.h"

namespace sql {

/// Does a saved query only choose and rename columns, filter and order?
bool IsProjection(const Select& query);

/// `outer`, which reads from the saved query `query` (a projection), as a statement that reads from
/// what the query reads: names replaced, conditions joined, the query's order kept unless `outer`
/// orders. @throws SqlError 3061 for a name that the query does not show
Select Melt(Select outer, const Select& query);

/// A table has no more columns, and neither has a result.
inline constexpr std::size_t kMostColumns = 255;
/// @throws SqlError 3075 when there are more than kMostColumns
void CheckColumnCount(std::size_t columns);

/// Is `table` what the statement calls its source, or empty?
bool NamesSource(std::string_view table, const SourceName& source);
/// The name under which an entry of the list is seen; empty for a calculation without AS.
const std::string& ShownName(const SelectItem& item);

}  // namespace sql
