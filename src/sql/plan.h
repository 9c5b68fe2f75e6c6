#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "base/ole_date.h"
#include "base/progress.h"
#include "sql/ast.h"
#include "sql/bind.h"
#include "sql/row_source.h"

namespace sql {

/// Where the names behind FROM are looked up.
class SourceCatalog {
 public:
  virtual ~SourceCatalog() = default;
  /// Letter case ignored; nullptr when there is no such table.
  virtual std::unique_ptr<RowSource> OpenTable(std::string_view name) = 0;
  /// None when there is no such saved query. @throws SqlError 3075 when it is no plain SELECT
  virtual std::optional<Select> FindQuery(std::string_view name) = 0;
};

struct Output {
  Field field;
  BoundExpression expression;  // on the source's rows, or on those of the groups
};

struct OrderKey {
  BoundExpression expression;
  bool descending = false;
};

/// A SELECT decided upon: where its rows come from, which are kept, what is made of them.
struct Plan {
  std::unique_ptr<RowSource> source;
  AccessPath path;
  std::optional<BoundExpression> where;
  std::optional<Grouping> grouping;
  std::optional<BoundExpression> having;  // on groups
  std::vector<Output> outputs;
  std::vector<OrderKey> order;  // empty when `path` gives the order
  bool distinct = false;
  std::optional<std::int32_t> top;

  /// Does each row of the result stand for one stored row?
  bool IsRowByRow() const { return !grouping && !distinct && !top; }
};

/// A saved query that only chooses and renames columns, filters and orders melts into the statement
/// that reads it; of any other the rows are made first.
/// @throws SqlError 3078 for an unknown table or query, 3061 for an unknown name, 3075
Plan MakePlan(const Select& select, SourceCatalog& catalog, OleDate now, Progress& progress);

/// When `condition` holds only for rows with one value in a column that an index can find: how.
std::optional<AccessPath> FindSeek(const BoundExpression& condition, const RowSource& source);

}  // namespace sql
