#include <optional>
#include <string>
#include <utility>

#include "sql/evaluate.h"
#include "sql/result_rows.h"

namespace sql {
namespace {

class SnapshotRows final : public ResultRows {
 public:
  explicit SnapshotRows(PackedRows rows) : rows_(std::move(rows)) {}

  std::size_t size() const override { return rows_.size(); }
  void GoTo(std::size_t position) override {
    position_ = position;
    row_.emplace(rows_, position);
  }
  std::size_t Position() override { return position_; }
  const RowAccess& Row() override { return *row_; }

  bool FindFirst(const BoundExpression& condition) override {
    Evaluator evaluator(rows_.fields().size());
    for (std::size_t position = 0; position < rows_.size(); ++position) {
      GoTo(position);
      evaluator.SetRow(*row_);
      if (evaluator.IsTrue(condition)) return true;
    }
    return false;
  }

 private:
  PackedRows rows_;
  std::size_t position_ = 0;
  std::optional<PackedRows::Row> row_;
};

}  // namespace

std::unique_ptr<ResultRows> MakeSnapshotRows(PackedRows rows) {
  return std::make_unique<SnapshotRows>(std::move(rows));
}

}  // namespace sql
