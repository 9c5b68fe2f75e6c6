#include "store/base_recordset.h"

#include "base/cat.h"
#include "base/ru_literal.h"

BaseRecordset::BaseRecordset(MessageBase& base)
    : base_(base), writing_(base), rows_(base.connection().OpenDynaset("БазаЗапрос"_ru)) {}

// Rows added to a dynaset stand at its end whatever their number, so its last row does not tell.
std::int32_t BaseRecordset::GetFirst(std::int32_t when_empty) {
  rows_.Cancel();
  sql::Recordset falling = base_.connection().OpenDynaset("SELECT [Код] FROM [БазаЗапрос] ORDER BY [Код] DESC"_ru);
  return falling.Eof() ? when_empty : falling.Int(0);
}

bool BaseRecordset::msgExist(std::int32_t number) {
  rows_.FindFirst(Cat("[Код] = "_ru, number));
  return !rows_.NoMatch();
}
