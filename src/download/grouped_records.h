#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "download/alarm.h"
#include "store/query_recordset.h"

/// A row that its Update had taken and that the base has refused after all.
struct LostRow {
  std::int32_t number = 0;
  std::string reason;  // Windows-1251
};

/// What became of rows: now it is certain. Numbers are those of the field Код.
struct SettledRows {
  std::vector<std::int32_t> stored;
  std::vector<LostRow> lost;
};

/// The rows of a download. A row that comes a while after the last one is on the disk when its Update returns, as
/// on any forum that answers slower than kRest. On a faster one the rows wait together, at most so long: a disk
/// syncs hundreds of times a second, and a forum nearby sends thousands of pages. Look-ups see them at once. Rows
/// that the base does not take together have another try each, unless another program keeps it locked.
///
/// Events must not run between AddNew and Update.
class GroupedRecords : public QueryRecordset {
 public:
  static constexpr std::chrono::milliseconds kRest{100};
  /// Of texts that wait.
  static constexpr std::size_t kMostBytes = std::size_t{4} << 20;

  using Told = std::function<void(const SettledRows&)>;

  /// All outlive this object. @param told  called whenever it is certain what became of rows: by Update, AddNew and
  ///        Flush, by the alarm and by the end of the object; throws nothing
  GroupedRecords(BatchedRecordset& records, Alarm& alarm, Told told);
  /// Stores what waits.
  ~GroupedRecords() override;
  GroupedRecords(const GroupedRecords&) = delete;
  GroupedRecords& operator=(const GroupedRecords&) = delete;

  std::int32_t GetFirst(std::int32_t when_empty) override { return records_.GetFirst(when_empty); }
  bool msgExist(std::int32_t number) override { return records_.msgExist(number); }
  void AddNew() override;
  void SetText(std::string_view field, std::string_view text) override;
  void SetNumber(std::string_view field, std::int32_t number) override;
  void SetDate(std::string_view field, OleDate date) override;
  void Update() override;
  void Cancel() override { records_.Cancel(); }
  void Flush() noexcept override;

 private:
  /// What is needed to add the row once more.
  struct Row {
    std::int32_t number = 0;
    std::size_t bytes = 0;
    std::vector<std::pair<std::string, std::variant<std::string, std::int32_t, OleDate>>> fields;
  };

  void UpdateInBatch();
  void Rest();
  void Ring();
  SettledRows StoreSingly(const std::vector<Row>& rows);
  void AddAgain(const Row& row);

  BatchedRecordset& records_;
  Alarm& alarm_;
  const Told told_;
  Row row_;  // under way
  std::vector<Row> waiting_;
  std::size_t waiting_bytes_ = 0;
  bool batch_open_ = false;  // of records_
  bool resting_ = false;     // a row was stored less than kRest ago
};
