#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

#include "sql/bind.h"
#include "sql/evaluate.h"
#include "sql/packed_rows.h"

namespace sql {

/// Collects rows into groups: equal keys as "=" sees them, Null a group of its own. A group shows
/// its keys as the first of its rows spells them.
class Grouper {
 public:
  explicit Grouper(const Grouping& grouping) : grouping_(grouping) {}

  /// Takes the row that the evaluator stands on.
  void Add(Evaluator& row);
  /// Ordered by the keys. Without keys there is one group, even of no rows.
  PackedRows Finish();

 private:
  struct Group {
    std::vector<jet::Value> keys;
    std::vector<jet::Value> results;  // per aggregate: a count, the value so far, or Null
  };

  Group& GroupOf(Evaluator& row);
  std::vector<jet::Value> ResultsOfNoRows() const;
  void Accumulate(const Aggregate& aggregate, Evaluator& row, jet::Value& result);

  const Grouping& grouping_;
  std::unordered_map<std::string, std::size_t> positions_;  // by AppendGroupKey
  std::vector<Group> groups_;
  std::string key_, buffer_;
};

}  // namespace sql
