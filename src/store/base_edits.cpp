#include "store/base_edits.h"

#include "sql/transaction.h"

void BaseEdits::Delete(std::span<const std::int32_t> numbers) {
  const MessageBase::Writing writing(base_);
  sql::Transaction transaction(base_.connection());
  for (const std::int32_t number : numbers) base_.connection().Execute(DeleteStatement(number));
  transaction.Commit();
}
