#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <vector>

#include "sql/bind.h"
#include "sql/row_source.h"
#include "sql/scalar.h"

namespace sql {

/// Three-valued logic: a comparison with Null is neither true nor false.
enum class Truth : std::uint8_t { kFalse, kTrue, kUnknown };

/// Evaluates bound expressions on one row after another. A column is read when it is first needed
/// and once a row at most; buffers are kept from row to row. Not for several threads.
class Evaluator {
 public:
  /// @param columns  of the rows to come
  explicit Evaluator(std::size_t columns) : slots_(columns) {}

  /// The row must outlive the calls up to the next SetRow.
  void SetRow(const RowAccess& row);

  /// Texts live until the next SetRow. @throws SqlError 13, Error 6
  Scalar ValueOf(const BoundExpression& expression);
  Truth Test(const BoundExpression& condition);
  /// WHERE and HAVING keep a row only then.
  bool IsTrue(const BoundExpression& condition) { return Test(condition) == Truth::kTrue; }
  Scalar Column(std::size_t column);

 private:
  struct Slot {
    std::uint64_t row = 0;  // for which the value was read
    Scalar value;
    std::string buffer;
  };

  Truth TestOperation(const BoundExpression& operation);
  Truth TestAnd(const BoundExpression& operation);
  Truth TestOr(const BoundExpression& operation);
  Truth TestComparison(const BoundExpression& operation);
  Truth TestLike(const BoundExpression& operation);
  Truth TestIn(const BoundExpression& operation);
  Truth TestBetween(const BoundExpression& operation);
  bool IsNull(const BoundExpression& expression);
  Scalar Calculate(const BoundExpression& operation);
  Scalar Joined(const Scalar& a, const Scalar& b);

  const RowAccess* row_ = nullptr;
  std::uint64_t row_number_ = 0;
  std::vector<Slot> slots_;
  std::deque<std::string> results_;  // calculated texts of this row
};

}  // namespace sql
