#include "sql/transaction.h"

#include "jet/table_writer.h"
#include "sql/connection.h"

namespace sql {

void Changes::RequireWritable() {
  if (open_ == nullptr) const jet::Transaction attempt(base_.store());
}

Transaction::Transaction(Connection& connection) : Transaction(connection.changes_) {}

Transaction::Transaction(Changes& changes) : changes_(changes), transaction_(changes.base_.store()) {
  changes_.open_ = this;
}

Transaction::~Transaction() { changes_.open_ = nullptr; }

void Transaction::Commit() { transaction_.Commit(); }

jet::TableWriter& Transaction::WriterOf(const jet::Table& table) {
  auto& writer = writers_[&table.def()];
  if (!writer) writer = std::make_unique<jet::TableWriter>(transaction_, table, changes_.PropertiesOf(table));
  return *writer;
}

}  // namespace sql
