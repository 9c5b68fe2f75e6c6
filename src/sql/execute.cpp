#include "sql/execute.h"

#include <algorithm>
#include <cstdint>
#include <numeric>
#include <optional>
#include <string>
#include <unordered_set>
#include <utility>

#include "base/error.h"
#include "base/ru_literal.h"
#include "sql/evaluate.h"
#include "sql/grouper.h"

namespace sql {
namespace {

using jet::ColumnType;

constexpr std::size_t kRowsPerReport = 1024;
constexpr int kWhole = 100;  // percent

/// Values that a Scalar does not hold in full.
bool NeedsValue(ColumnType type) {
  return type == ColumnType::kCurrency || type == ColumnType::kGuid || type == ColumnType::kNumeric ||
         type == ColumnType::kBinary || type == ColumnType::kOle || type == ColumnType::kLongBinary;
}

class Reporter {
 public:
  Reporter(Progress& progress, std::size_t expected) : progress_(progress), expected_(expected) {}

  void Count() {
    if (++rows_ % kRowsPerReport != 0) return;
    const std::size_t percent = expected_ == 0 ? 0 : std::min<std::size_t>(rows_ * kWhole / expected_, kWhole);
    if (!progress_.Advance(static_cast<int>(percent))) throw SqlError(kCancelled, "Запрос прерван"_ru);
  }

 private:
  Progress& progress_;
  std::size_t expected_;
  std::size_t rows_ = 0;
};

/// Rows that come in their order need not be read behind what TOP asks for.
std::size_t RowsNeeded(const Plan& plan) {
  const bool as_they_come = plan.order.empty() && !plan.distinct && !plan.grouping;
  return plan.top && as_they_come ? static_cast<std::size_t>(*plan.top) : SIZE_MAX;
}

/// Calls `take` for each row of the source that WHERE keeps. Without WHERE rows are not read here.
template <typename Take>
void ForEachRow(const Plan& plan, Progress& progress, const Take& take) {
  const auto stream = plan.source->Open(plan.path);
  Evaluator evaluator(plan.source->fields().size());
  Reporter reporter(progress, plan.source->ExpectedRows());
  for (std::size_t needed = RowsNeeded(plan); needed > 0 && stream->Next();) {
    reporter.Count();
    if (plan.where) {
      evaluator.SetRow(stream->row());
      if (!evaluator.IsTrue(*plan.where)) continue;
    }
    take(*stream, evaluator);
    --needed;
  }
}

/// Adds what expressions give to packed rows. Plain columns do not pass through the evaluator: few of
/// them were read for WHERE, and none twice.
class ValueAdder {
 public:
  void Add(const BoundExpression& expression, const RowAccess& row, Evaluator& evaluator, PackedRows& to) {
    if (expression.kind != BoundExpression::Kind::kColumn) {
      to.Add(evaluator.ValueOf(expression));
    } else if (NeedsValue(expression.type)) {
      to.Add(row.Get(expression.column));
    } else {
      to.Add(row.Read(expression.column, buffer_));
    }
  }

 private:
  std::string buffer_;
};

/// Compares packed rows as ORDER BY says; column i of `columns` holds the i-th key.
class RowOrder {
 public:
  RowOrder(const Plan& plan, std::vector<std::size_t> columns) : plan_(plan), columns_(std::move(columns)) {}

  int Compare(const PackedRows::Row& a, const PackedRows::Row& b) {
    for (std::size_t i = 0; i < columns_.size(); ++i) {
      const int order = CompareForOrder(a.Read(columns_[i], a_text_), b.Read(columns_[i], b_text_));
      if (order != 0) return plan_.order[i].descending ? -order : order;
    }
    return 0;
  }

 private:
  const Plan& plan_;
  std::vector<std::size_t> columns_;
  std::string a_text_, b_text_;
};

/// Makes result rows out of source rows, with hidden columns for what they are ordered by.
class Collector {
 public:
  explicit Collector(const Plan& plan) : plan_(plan), rows_(Fields(plan)), order_(plan, KeyColumns(plan)) {}

  void Take(const RowAccess& row, Evaluator& evaluator) {
    if (plan_.distinct && !IsNew(evaluator)) return;
    for (const Output& output : plan_.outputs) adder_.Add(output.expression, row, evaluator, rows_);
    for (const OrderKey& key : plan_.order)
      if (!ShownAs(plan_, key)) adder_.Add(key.expression, row, evaluator, rows_);
    rows_.Finish();
  }

  PackedRows Finish() {
    if (!plan_.order.empty()) rows_.Sort([this](const auto& a, const auto& b) { return order_.Compare(a, b) < 0; });
    if (plan_.top) CutToTop(static_cast<std::size_t>(*plan_.top));
    rows_.ShrinkToFit();
    return std::move(rows_);
  }

 private:
  /// The output that shows the very column by which rows are ordered.
  static std::optional<std::size_t> ShownAs(const Plan& plan, const OrderKey& key) {
    if (key.expression.kind != BoundExpression::Kind::kColumn) return std::nullopt;
    const auto shown = std::find_if(plan.outputs.begin(), plan.outputs.end(), [&](const Output& output) {
      return output.expression.kind == BoundExpression::Kind::kColumn &&
             output.expression.column == key.expression.column;
    });
    if (shown == plan.outputs.end()) return std::nullopt;
    return static_cast<std::size_t>(shown - plan.outputs.begin());
  }

  static std::vector<Field> Fields(const Plan& plan) {
    std::vector<Field> fields;
    for (const Output& output : plan.outputs) fields.push_back(output.field);
    for (const OrderKey& key : plan.order)
      if (!ShownAs(plan, key)) fields.push_back({{}, key.expression.type});
    return fields;
  }

  static std::vector<std::size_t> KeyColumns(const Plan& plan) {
    std::vector<std::size_t> columns;
    std::size_t hidden = plan.outputs.size();
    for (const OrderKey& key : plan.order) {
      const auto shown = ShownAs(plan, key);
      columns.push_back(shown ? *shown : hidden++);
    }
    return columns;
  }

  bool IsNew(Evaluator& evaluator) {
    std::string key;
    for (const Output& output : plan_.outputs) AppendGroupKey(evaluator.ValueOf(output.expression), key);
    return seen_.insert(std::move(key)).second;
  }

  /// Rows that stand level with the last one stay, as the old engine had it.
  void CutToTop(std::size_t top) {
    std::size_t kept = std::min(top, rows_.size());
    const auto is_level = [&](std::size_t row) {
      return order_.Compare(PackedRows::Row(rows_, top - 1), PackedRows::Row(rows_, row)) == 0;
    };
    while (!plan_.order.empty() && kept < rows_.size() && is_level(kept)) ++kept;
    rows_.Truncate(kept);
  }

  const Plan& plan_;
  PackedRows rows_;
  RowOrder order_;
  ValueAdder adder_;
  std::unordered_set<std::string> seen_;
};

/// What stored rows are ordered by, and their place before that as a last column.
std::vector<Field> KeyFields(const Plan& plan) {
  std::vector<Field> fields;
  for (const OrderKey& key : plan.order) fields.push_back({{}, key.expression.type});
  fields.push_back({{}, ColumnType::kDouble});
  return fields;
}

std::vector<jet::RowId> Ordered(const std::vector<jet::RowId>& ids, const Plan& plan, PackedRows& keys) {
  std::vector<std::size_t> columns(plan.order.size());
  std::iota(columns.begin(), columns.end(), std::size_t{0});
  RowOrder order(plan, columns);
  keys.Sort([&](const auto& a, const auto& b) { return order.Compare(a, b) < 0; });
  std::vector<jet::RowId> ordered;
  ordered.reserve(ids.size());
  std::string buffer;
  for (std::size_t i = 0; i < keys.size(); ++i) {
    const double place = PackedRows::Row(keys, i).Read(columns.size(), buffer).number;
    ordered.push_back(ids[static_cast<std::size_t>(place)]);
  }
  return ordered;
}

PackedRows ExecuteGroups(const Plan& plan, Progress& progress) {
  Grouper grouper(*plan.grouping);
  ForEachRow(plan, progress, [&](RowStream& stream, Evaluator& evaluator) {
    if (!plan.where) evaluator.SetRow(stream.row());
    grouper.Add(evaluator);
  });
  const PackedRows groups = grouper.Finish();
  Collector collector(plan);
  Evaluator evaluator(plan.grouping->fields.size());
  for (std::size_t i = 0; i < groups.size(); ++i) {
    const PackedRows::Row group(groups, i);
    evaluator.SetRow(group);
    if (!plan.having || evaluator.IsTrue(*plan.having)) collector.Take(group, evaluator);
  }
  return collector.Finish();
}

}  // namespace

PackedRows Execute(const Plan& plan, Progress& progress) {
  if (plan.grouping) return ExecuteGroups(plan, progress);
  Collector collector(plan);
  ForEachRow(plan, progress, [&](RowStream& stream, Evaluator& evaluator) {
    const RowAccess& row = stream.row();
    if (!plan.where) evaluator.SetRow(row);
    collector.Take(row, evaluator);
  });
  return collector.Finish();
}

std::vector<jet::RowId> ExecuteForKeys(const Plan& plan, Progress& progress) {
  std::vector<jet::RowId> ids;
  if (plan.order.empty()) {
    ForEachRow(plan, progress, [&](RowStream& stream, Evaluator&) { ids.push_back(stream.id()); });
    ids.shrink_to_fit();
    return ids;
  }
  PackedRows keys(KeyFields(plan));
  ValueAdder adder;
  ForEachRow(plan, progress, [&](RowStream& stream, Evaluator& evaluator) {
    const RowAccess& row = stream.row();
    if (!plan.where) evaluator.SetRow(row);
    for (const OrderKey& key : plan.order) adder.Add(key.expression, row, evaluator, keys);
    keys.Add(Scalar::Double(static_cast<double>(ids.size())));
    keys.Finish();
    ids.push_back(stream.id());
  });
  return Ordered(ids, plan, keys);
}

}  // namespace sql
