#include "sql/packed_source.h"

#include <optional>

namespace sql {
namespace {

class PackedStream final : public RowStream {
 public:
  explicit PackedStream(const PackedRows& rows) : rows_(rows) {}
  bool Next() override { return next_++ < rows_.size(); }
  jet::RowId id() const override { return {}; }
  const RowAccess& row() override { return row_.emplace(rows_, next_ - 1); }

 private:
  const PackedRows& rows_;
  std::size_t next_ = 0;
  std::optional<PackedRows::Row> row_;
};

}  // namespace

PackedSource::PackedSource(PackedRows rows, std::size_t columns) : rows_(std::move(rows)), fields_(rows_.fields()) {
  fields_.resize(columns);
}

std::unique_ptr<RowStream> PackedSource::Open(const AccessPath&) const { return std::make_unique<PackedStream>(rows_); }

}  // namespace sql
