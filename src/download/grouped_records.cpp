#include "download/grouped_records.h"

#include "base/error.h"
#include "base/ru_literal.h"
#include "download/stored_fields.h"

namespace {
constexpr std::string_view kNumber = "Код"_ru;
}

GroupedRecords::GroupedRecords(BatchedRecordset& records, Alarm& alarm, Told told)
    : records_(records), alarm_(alarm), told_(std::move(told)) {}

GroupedRecords::~GroupedRecords() {
  alarm_.Clear();
  Flush();
}

void GroupedRecords::AddNew() {
  if (waiting_bytes_ > kMostBytes) Flush();
  row_ = {};
  records_.AddNew();
}

void GroupedRecords::SetText(std::string_view field, std::string_view text) {
  records_.SetText(field, text);
  row_.fields.emplace_back(field, std::string(text));
  row_.bytes += text.size();
}

void GroupedRecords::SetNumber(std::string_view field, std::int32_t number) {
  records_.SetNumber(field, number);
  row_.fields.emplace_back(field, number);
  if (field == kNumber) row_.number = number;
}

void GroupedRecords::SetDate(std::string_view field, OleDate date) {
  records_.SetDate(field, date);
  row_.fields.emplace_back(field, date);
}

void GroupedRecords::Update() {
  if (resting_) return UpdateInBatch();
  records_.Update();
  Rest();
  told_({.stored = {row_.number}, .lost = {}});
}

// A row that is refused may have failed by halves and taken the whole batch along: then the others are stored
// without it, before anybody looks for them.
void GroupedRecords::UpdateInBatch() {
  if (!batch_open_) records_.BeginBatch();
  batch_open_ = true;
  try {
    records_.Update();
  } catch (const Error&) {
    Flush();
    throw;
  }
  waiting_bytes_ += row_.bytes;
  waiting_.push_back(std::exchange(row_, {}));
}

void GroupedRecords::Rest() {
  resting_ = true;
  alarm_.Set(kRest, [this] { Ring(); });
}

void GroupedRecords::Ring() {
  resting_ = false;
  if (!batch_open_) return;
  Flush();
  Rest();
}

void GroupedRecords::Flush() noexcept {
  if (!batch_open_) return;
  batch_open_ = false;
  waiting_bytes_ = 0;
  const std::vector<Row> rows = std::exchange(waiting_, {});
  SettledRows settled;
  try {
    records_.CommitBatch();
    for (const Row& row : rows) settled.stored.push_back(row.number);
  } catch (const Error&) {
    settled = StoreSingly(rows);
  }
  told_(settled);
}

SettledRows GroupedRecords::StoreSingly(const std::vector<Row>& rows) {
  SettledRows settled;
  std::string broken;  // why the base takes nothing at all
  try {
    records_.DropBatch();
  } catch (const Error& error) {
    broken = error.what();
  }
  for (const Row& row : rows) {
    try {
      if (!broken.empty()) throw Error(error_number::kNoAccess, broken);
      AddAgain(row);
      settled.stored.push_back(row.number);
    } catch (const Error& error) {
      records_.Cancel();
      settled.lost.push_back({row.number, error.what()});
      if (error.number() == error_number::kLocked) broken = error.what();  // each try waits for seconds
    }
  }
  return settled;
}

void GroupedRecords::AddAgain(const Row& row) {
  StoredFields fields;
  for (const auto& kept : row.fields)
    std::visit([&](const auto& value) { fields.push_back({kept.first, value}); }, kept.second);
  StoreRow(records_, fields);
}
