#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "sql/recordset.h"
#include "sql/transaction.h"
#include "store/message_base.h"
#include "store/query_recordset.h"

/// The rows of БазаЗапрос in the open base. While it lives the base is open for writing, and no other
/// program can write to it.
class BaseRecordset : public BatchedRecordset {
 public:
  /// @param base  outlives this, and opens no other file meanwhile
  /// @throws Error 91, 3027, 3045, like MessageBase::Writing; SqlError when the query cannot be carried out
  explicit BaseRecordset(MessageBase& base);

  std::int32_t GetFirst(std::int32_t when_empty) override;
  bool msgExist(std::int32_t number) override;

  void AddNew() override { rows_.AddNew(); }
  void SetText(std::string_view field, std::string_view text) override { rows_.Set(field, std::string(text)); }
  /// @throws Error 6 for a Код above kLargestNumber
  void SetNumber(std::string_view field, std::int32_t number) override;
  void SetDate(std::string_view field, OleDate date) override { rows_.Set(field, date); }
  void Update() override { rows_.Update(); }
  void Cancel() override { rows_.Cancel(); }

  void BeginBatch() override { batch_.emplace(base_.connection()); }
  void CommitBatch() override;
  void DropBatch() override;

 private:
  MessageBase& base_;
  MessageBase::Writing writing_;
  sql::Recordset rows_;
  std::optional<sql::Transaction> batch_;
};
