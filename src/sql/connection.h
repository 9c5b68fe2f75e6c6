#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/clock.h"
#include "base/progress.h"
#include "jet/database.h"
#include "sql/plan.h"
#include "sql/recordset.h"
#include "sql/transaction.h"

namespace sql {

/// Statements on an open base. The base and the clock must outlive it and what it opens.
class Connection : private SourceCatalog {
 public:
  Connection(jet::Database& base, const Clock& clock) : base_(base), clock_(clock), changes_(base) {}

  /// A static copy of the rows of a table, a saved query or a SELECT, given by name or as text.
  /// @throws SqlError 3075, 3078, 3061, 93, and kCancelled when `progress` says stop
  Recordset OpenSnapshot(std::string_view source);
  Recordset OpenSnapshot(std::string_view source, Progress& progress);
  /// Rows chosen now and read live (by the one program that writes: others would read while a commit
  /// is under way); a static copy where groups or calculated sources leave no other way.
  Recordset OpenDynaset(std::string_view source);
  Recordset OpenDynaset(std::string_view source, Progress& progress);

  /// Carries out a DELETE on a table, or on a saved query that only chooses rows of one: all of it or,
  /// when it throws, nothing. On the medium when it returns, or with the Transaction that is open.
  /// @return how many rows were deleted; none is no error
  /// @throws SqlError as above, Error 3027 when the base was opened for reading, FileError
  std::int32_t Execute(std::string_view statement);

  /// Letter case ignored.
  bool HasTable(std::string_view name);
  bool HasQuery(std::string_view name);
  std::vector<std::string> QueryNames();
  /// The statement of a saved query of any kind. @throws SqlError 3078 when there is none
  std::string QueryText(std::string_view name);

 private:
  friend class Transaction;
  std::unique_ptr<RowSource> OpenTable(std::string_view name) override;
  std::optional<Select> FindQuery(std::string_view name) override;
  const jet::CatalogQuery* FindCatalogQuery(std::string_view name);
  Plan PlanFor(std::string_view source, OleDate now, Progress& progress);
  std::int32_t DeleteRows(Delete statement);
  static Recordset Snapshot(const Plan& plan, OleDate now, Progress& progress);

  jet::Database& base_;
  const Clock& clock_;
  Changes changes_;
};

}  // namespace sql
