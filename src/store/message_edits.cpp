#include "store/message_edits.h"

#include "base/cat.h"
#include "base/ru_literal.h"
#include "sql/transaction.h"

std::string DeleteStatement(std::int32_t number) { return Cat("DELETE * FROM База WHERE Код="_ru, number); }

void DeleteMessages(sql::Connection& connection, std::span<const std::int32_t> numbers) {
  sql::Transaction transaction(connection);
  for (const std::int32_t number : numbers) connection.Execute(DeleteStatement(number));
  transaction.Commit();
}
