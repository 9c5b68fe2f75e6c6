#include "sql/result_rows.h"

#include "sql/sql_errors.h"

namespace sql {

void ResultRows::StartRow() { ThrowNotUpdatable(); }
void ResultRows::Set(std::size_t, jet::Value) { ThrowNotUpdatable(); }
void ResultRows::StoreRow() { ThrowNotUpdatable(); }
void ResultRows::Delete() { ThrowNotUpdatable(); }

}  // namespace sql
