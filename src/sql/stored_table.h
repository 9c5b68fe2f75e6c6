#pragma once

#include <memory>
#include <string>
#include <vector>

#include "jet/layout.h"
#include "jet/table.h"
#include "sql/row_source.h"
#include "sql/transaction.h"

namespace sql {

/// A table of a base as a source of rows. It lives no longer than its Database.
class StoredTable : public RowSource {
 public:
  /// @param changes  outlives the source and what it opens
  StoredTable(const jet::Table& table, Changes& changes);

  const std::vector<Field>& fields() const override { return fields_; }
  bool CanSeek(std::size_t column) const override;
  bool CanWalk(std::size_t column) const override;
  bool IsUnique(std::size_t column) const override;
  std::size_t ExpectedRows() const override { return table_.ExpectedRows(); }
  std::unique_ptr<RowStream> Open(const AccessPath& path) const override;
  std::unique_ptr<RowReader> OpenReader() const override;
  std::unique_ptr<RowEditor> OpenEditor() const override;

 private:
  const jet::RealIndex* IndexOn(std::size_t column) const;
  std::unique_ptr<RowStream> OpenNatural() const;

  jet::Table table_;
  Changes& changes_;
  jet::Version version_;
  std::vector<Field> fields_;
};

}  // namespace sql
