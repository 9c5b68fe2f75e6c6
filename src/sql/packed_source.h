#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "sql/packed_rows.h"
#include "sql/row_source.h"

namespace sql {

/// The rows of a result as a source of rows for another statement: no index, no addresses.
class PackedSource : public RowSource {
 public:
  /// @param columns  how many of the rows' columns are shown
  PackedSource(PackedRows rows, std::size_t columns);

  const std::vector<Field>& fields() const override { return fields_; }
  bool CanSeek(std::size_t) const override { return false; }
  bool CanWalk(std::size_t) const override { return false; }
  bool IsUnique(std::size_t) const override { return false; }
  std::size_t ExpectedRows() const override { return rows_.size(); }
  std::unique_ptr<RowStream> Open(const AccessPath& path) const override;
  std::unique_ptr<RowReader> OpenReader() const override { return nullptr; }

 private:
  PackedRows rows_;
  std::vector<Field> fields_;
};

}  // namespace sql
