#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>

#include "store/query_recordset.h"
#include "support/script.h"

/// БазаЗапрос of a base in memory: number → its fields as text. Rows are written down as they are built.
class MemoryQueryRecordset : public BatchedRecordset {
 public:
  using Row = std::map<std::string, std::string>;

  explicit MemoryQueryRecordset(Script& script) : script_(script) {}

  /// A row that was there before; it is no event.
  void Hold(std::int32_t number) { rows_[number] = {}; }
  /// Makes a step fail as a broken disk does: "GetFirst", "msgExist", "AddNew", "Update", "CommitBatch" or a field's
  /// name in Windows-1251. @param times  how often before it works again
  void Fail(std::string_view step, int times = 1) { failures_[std::string(step)] = times; }
  /// Takes no empty text in this field.
  void ForbidEmpty(std::string_view field) { never_empty_.emplace(field); }
  std::size_t size() const { return rows_.size(); }

  std::int32_t GetFirst(std::int32_t when_empty) override;
  bool msgExist(std::int32_t number) override;
  void AddNew() override;
  void SetText(std::string_view field, std::string_view text) override;
  void SetNumber(std::string_view field, std::int32_t number) override;
  void SetDate(std::string_view field, OleDate date) override;
  void Update() override;
  void Cancel() override;
  void BeginBatch() override { before_batch_ = rows_; }
  void CommitBatch() override { Step("CommitBatch"); }
  void DropBatch() override;

 private:
  void Step(std::string_view step);
  void Set(std::string_view field, const std::string& value);

  Script& script_;
  std::map<std::int32_t, Row> rows_, before_batch_;
  std::optional<Row> pending_;
  std::map<std::string, int> failures_;
  std::set<std::string> never_empty_;
};
