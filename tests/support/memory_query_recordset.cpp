#include "support/memory_query_recordset.h"

#include "base/cat.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "text/dates.h"
#include "text/numbers.h"

std::int32_t MemoryQueryRecordset::GetFirst(std::int32_t when_empty) {
  Step("GetFirst");
  return rows_.empty() ? when_empty : rows_.rbegin()->first;
}

bool MemoryQueryRecordset::msgExist(std::int32_t number) {
  Step("msgExist");
  return rows_.contains(number);
}

void MemoryQueryRecordset::AddNew() {
  Step("AddNew");
  script_.Add("new record");
  pending_ = Row();
}

void MemoryQueryRecordset::SetText(std::string_view field, std::string_view text) {
  constexpr std::size_t kWidest = 255;
  if (field != "Текст"_ru && text.size() > kWidest) throw Error(error_number::kTextTooLong, "Текст длиннее поля"_ru);
  Set(field, text.empty() && never_empty_.contains(std::string(field)) ? "Null" : Cat("'", text, "'"));
}

void MemoryQueryRecordset::SetNumber(std::string_view field, std::int32_t number) { Set(field, Cat(number)); }

void MemoryQueryRecordset::SetDate(std::string_view field, OleDate date) {
  Set(field, text::FormatDate(date, "yyyy-mm-dd"));
}

void MemoryQueryRecordset::Update() {
  Step("Update");
  if (!pending_) throw Error(error_number::kNothingToStore, "Нет добавляемой записи"_ru);
  const auto number = pending_->find(std::string("Код"_ru));
  if (number == pending_->end()) throw Error(error_number::kRequired, "Поле Код должно быть заполнено"_ru);
  if (!rows_.emplace(text::StrictLong(number->second), *pending_).second) throw DuplicateKey();
  pending_.reset();
  script_.Add("stored");
}

void MemoryQueryRecordset::Cancel() {
  if (pending_) script_.Add("record dropped");
  pending_.reset();
}

void MemoryQueryRecordset::DropBatch() {
  rows_ = before_batch_;
  pending_.reset();
}

void MemoryQueryRecordset::Step(std::string_view step) {
  const auto failure = failures_.find(std::string(step));
  if (failure == failures_.end() || failure->second == 0) return;
  --failure->second;
  throw FileError(error_number::kNoAccess, "Диск не отвечает"_ru);
}

void MemoryQueryRecordset::Set(std::string_view field, const std::string& value) {
  Step(field);
  if (!pending_) throw Error(error_number::kNothingToStore, "Нет добавляемой записи"_ru);
  script_.Add(Cat(field, " = ", value));
  (*pending_)[std::string(field)] = value;
}
