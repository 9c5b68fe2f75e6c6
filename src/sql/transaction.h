#pragma once

#include <map>
#include <memory>

#include "jet/database.h"
#include "jet/transaction.h"

namespace jet {
class TableWriter;
}

namespace sql {

class Connection;
class Transaction;

/// The changes that go through one connection: which transaction they belong to.
class Changes {
 public:
  explicit Changes(jet::Database& base) : base_(base) {}
  Changes(const Changes&) = delete;
  Changes& operator=(const Changes&) = delete;

  jet::Version version() const { return base_.version(); }
  const jet::TableProperties& PropertiesOf(const jet::Table& table) { return base_.PropertiesOf(table); }
  /// @throws Error 3027 when the base was opened for reading
  void RequireWritable();

  /// Calls `step(Transaction&)` in the transaction that is open, else in one of its own, which is on
  /// the medium when this returns.
  template <typename Step>
  auto Run(Step step);

 private:
  friend class Transaction;
  jet::Database& base_;
  Transaction* open_ = nullptr;
};

/// What statements and recordsets of one connection change while it lives happens all or not at all:
/// it shows at once, is on the medium when Commit returns, and undone when the object goes before that.
/// At most one at a time; it lives no longer than its connection.
class Transaction {
 public:
  /// @throws Error 3027 when the base was opened for reading, Error when another one is open
  explicit Transaction(Connection& connection);
  explicit Transaction(Changes& changes);
  ~Transaction();
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;

  /// @throws FileError when the changes cannot be written, and Error when one of them failed by halves: the
  ///         base is as it was before the transaction
  void Commit();
  /// Undoes all changes; Commit throws from now on.
  void RollBack() noexcept { transaction_.RollBack(); }

  /// One and the same for a table during the whole transaction, so that it knows where room is.
  jet::TableWriter& WriterOf(const jet::Table& table);

 private:
  Changes& changes_;
  jet::Transaction transaction_;
  std::map<const jet::TableDef*, std::unique_ptr<jet::TableWriter>> writers_;
};

template <typename Step>
auto Changes::Run(Step step) {
  if (open_ != nullptr) return step(*open_);
  Transaction own(*this);
  const auto result = step(own);
  own.Commit();
  return result;
}

}  // namespace sql
