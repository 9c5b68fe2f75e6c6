#include "sql/grouper.h"

#include <variant>

#include "base/checked.h"

namespace sql {
void Grouper::Add(Evaluator& row) {
  Group& group = GroupOf(row);
  for (std::size_t i = 0; i < grouping_.aggregates.size(); ++i)
    Accumulate(grouping_.aggregates[i], row, group.results[i]);
}

Grouper::Group& Grouper::GroupOf(Evaluator& row) {
  key_.clear();
  for (const BoundExpression& key : grouping_.bound_keys) AppendGroupKey(row.ValueOf(key), key_);
  const auto [place, is_new] = positions_.try_emplace(key_, groups_.size());
  if (!is_new) return groups_[place->second];
  Group& group = groups_.emplace_back();
  for (const BoundExpression& key : grouping_.bound_keys) group.keys.push_back(ToValue(row.ValueOf(key)));
  group.results = ResultsOfNoRows();
  return group;
}

std::vector<jet::Value> Grouper::ResultsOfNoRows() const {
  std::vector<jet::Value> results;
  for (const Aggregate& aggregate : grouping_.aggregates) {
    jet::Value& result = results.emplace_back();
    if (aggregate.kind <= Aggregate::Kind::kCountValues) result = 0;
  }
  return results;
}

void Grouper::Accumulate(const Aggregate& aggregate, Evaluator& row, jet::Value& result) {
  if (aggregate.kind == Aggregate::Kind::kCountRows) {
    result = CheckedAdd(std::get<std::int32_t>(result), 1);
    return;
  }
  const Scalar value = row.ValueOf(*aggregate.argument);
  if (value.IsNull()) return;
  if (aggregate.kind == Aggregate::Kind::kCountValues) {
    result = CheckedAdd(std::get<std::int32_t>(result), 1);
    return;
  }
  const Scalar best = ToScalar(result, buffer_);
  const int order = best.IsNull() ? 0 : Compare(value, best);
  if (best.IsNull() || (aggregate.kind == Aggregate::Kind::kMin ? order < 0 : order > 0)) result = ToValue(value);
}

PackedRows Grouper::Finish() {
  if (grouping_.bound_keys.empty() && groups_.empty()) groups_.push_back({{}, ResultsOfNoRows()});
  PackedRows rows(grouping_.fields);
  for (const Group& group : groups_) {
    for (const jet::Value& key : group.keys) rows.Add(key);
    for (const jet::Value& result : group.results) rows.Add(result);
    rows.Finish();
  }
  std::string a_text, b_text;
  rows.Sort([&](const PackedRows::Row& a, const PackedRows::Row& b) {
    for (std::size_t key = 0; key < grouping_.bound_keys.size(); ++key) {
      const int order = CompareForOrder(a.Read(key, a_text), b.Read(key, b_text));
      if (order != 0) return order < 0;
    }
    return false;
  });
  return rows;
}

}  // namespace sql
