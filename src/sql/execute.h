#pragma once

#include <vector>

#include "base/progress.h"
#include "jet/table_def.h"
#include "sql/packed_rows.h"
#include "sql/plan.h"

namespace sql {

/// The user stopped a long statement.
inline constexpr int kCancelled = 3059;

/// All rows of a SELECT. Behind the plan's outputs the rows may have columns that only served to
/// order them. @throws SqlError kCancelled when `progress` says stop
PackedRows Execute(const Plan& plan, Progress& progress);

/// The addresses of the stored rows that a SELECT gives, in its order.
/// @param plan  row by row, over a source with a reader
std::vector<jet::RowId> ExecuteForKeys(const Plan& plan, Progress& progress);

}  // namespace sql
