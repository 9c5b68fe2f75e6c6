#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "jet/check_context.h"
#include "jet/row.h"
#include "jet/table_def.h"

namespace jet {

/// Collects what the catalog lists, and checks that it agrees with itself.
class CatalogCheck {
 public:
  struct ListedTable {
    std::string name;
    std::uint32_t definition = 0;
  };

  explicit CatalogCheck(CheckContext& context) : context_(context) {}

  /// What to do with the rows of MSysObjects and of MSysQueries. @throws FormatError when a column is missing
  std::function<void(const Row&)> ObjectVisitor(const TableDef& def);
  std::function<void(const Row&)> PieceVisitor(const TableDef& def);
  /// After all pieces of queries.
  void CheckPieces() const;

  /// In the order of the catalog.
  const std::vector<ListedTable>& tables() const { return tables_; }

 private:
  struct Object {
    std::int32_t id = 0, parent = 0;
    int type = 0;
    std::string name, stored_name;
  };
  void Add(const Object& object);

  CheckContext& context_;
  std::vector<ListedTable> tables_;
  std::set<std::int32_t> ids_, queries_, pieces_;
  std::set<std::pair<std::int32_t, std::string>> names_;  // with the parent
};

}  // namespace jet
