#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "store/query_recordset.h"

/// Passes all on to another recordset and remembers the numbers of the rows that were stored through it.
class StoredNumbers : public QueryRecordset {
 public:
  /// @param records  outlives this
  explicit StoredNumbers(QueryRecordset& records) : records_(records) {}

  /// In the order of storing.
  const std::vector<std::int32_t>& numbers() const { return numbers_; }

  std::int32_t GetFirst(std::int32_t when_empty) override { return records_.GetFirst(when_empty); }
  bool msgExist(std::int32_t number) override { return records_.msgExist(number); }
  void AddNew() override { records_.AddNew(); }
  void SetText(std::string_view field, std::string_view text) override { records_.SetText(field, text); }
  void SetNumber(std::string_view field, std::int32_t number) override;
  void SetDate(std::string_view field, OleDate date) override { records_.SetDate(field, date); }
  void Update() override;
  void Cancel() override { records_.Cancel(); }

 private:
  QueryRecordset& records_;
  std::int32_t number_ = 0;  // of the row under way
  std::vector<std::int32_t> numbers_;
};
