#include "store/base_recordset.h"

#include "base/cat.h"
#include "base/ru_literal.h"
#include "store/message_record.h"

namespace {
constexpr std::string_view kRows = "БазаЗапрос"_ru, kNumber = "Код"_ru;
}

BaseRecordset::BaseRecordset(MessageBase& base)
    : base_(base), writing_(base), rows_(base.connection().OpenDynaset(kRows)) {}

// Rows added to a dynaset stand at its end whatever their number, so its last row does not tell.
std::int32_t BaseRecordset::GetFirst(std::int32_t when_empty) {
  rows_.Cancel();
  sql::Recordset last = base_.connection().OpenSnapshot("SELECT TOP 1 [Код] FROM [БазаЗапрос] ORDER BY [Код] DESC"_ru);
  return last.Eof() ? when_empty : last.Int(0);
}

bool BaseRecordset::msgExist(std::int32_t number) {
  rows_.FindFirst(Cat("[Код] = "_ru, number));
  return !rows_.NoMatch();
}

void BaseRecordset::SetNumber(std::string_view field, std::int32_t number) {
  if (field == kNumber && number > kLargestNumber)
    throw Error(error_number::kOverflow,
                Cat("Номер сообщения "_ru, number, " больше наибольшего, который вмещает база: "_ru, kLargestNumber));
  rows_.Set(field, number);
}

void BaseRecordset::CommitBatch() {
  batch_->Commit();
  batch_.reset();
}

void BaseRecordset::DropBatch() {
  rows_.Cancel();
  batch_.reset();
  rows_ = base_.connection().OpenDynaset(kRows);  // the old set lists rows that are no more
}
