#pragma once

#include <string>

#include "base/bytes.h"
#include "jet/row_store.h"
#include "jet/table_def.h"
#include "jet/transaction.h"

namespace jet {

/// Stores the data of a Memo or OLE column outside of the rows, and takes them away.
class LongValueWriter {
 public:
  LongValueWriter(Transaction& transaction, const Column& column)
      : transaction_(&transaction), store_(transaction, column) {}

  /// What the row stores of a value whose data stand behind it there: a head, and the data.
  static std::string Inline(Bytes data);
  /// What the row stores of other values. It has the same size for all data.
  static std::string Placeholder() { return std::string(kLongValueHead, '\0'); }

  /// @return what the row stores
  std::string Store(Bytes data);
  /// @param stored  what the row holds. @throws FormatError when it leads nowhere
  void Free(Bytes stored);

 private:
  RowId StoreChain(Bytes data);
  void FreeChain(RowId first, std::size_t length);
  /// Valid until the next call or change.
  Bytes LivePart(RowId where);

  Transaction* transaction_;
  RowStore store_;
  Page part_page_;
};

/// @throws Error when no long value can be so large
void CheckLongValueSize(std::size_t size);

}  // namespace jet
