#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/progress.h"
#include "jet/compact.h"
#include "jet/database.h"
#include "jet/transaction.h"

namespace jet {

/// Copies all that a base holds into a new one that has system tables without rows.
class BaseCopier {
 public:
  /// All outlive this; nobody changes `from` meanwhile.
  BaseCopier(Database& from, Database& to, const CompactOptions& options, Progress& progress);

  /// Copies and commits. @return what there is to tell; not complete, with nothing committed, when stopped
  CompactResult Run();

  struct SystemTable {
    std::string_view name;
    std::uint32_t page;  // of its definition in a new base
  };

 private:
  struct CopiedTable {
    std::string name;
    Table from;
    TableDef to;
  };

  void PlanTables();
  void LeaveUnknownIndexesOut(CopiedTable& table);
  bool KnowsKeys(const Table& table, const RealIndex& index) const;
  void ConnectRelationships();
  void CopyTableRows(const CopiedTable& table);
  void CopySystemRows(const SystemTable& table);
  void Advance();

  Database& from_;
  Database& to_;
  const CompactOptions& options_;
  Progress& progress_;
  Transaction transaction_;
  std::vector<std::unique_ptr<CopiedTable>> tables_;
  std::map<std::uint32_t, std::uint32_t> new_pages_;  // of definitions, by those of the old base
  std::uint64_t expected_rows_ = 0;
  CompactResult result_;
};

}  // namespace jet
