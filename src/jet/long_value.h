#pragma once

#include <string>

#include "base/bytes.h"
#include "jet/page_file.h"
#include "jet/table_def.h"

namespace jet {

/// The data of a Memo or OLE value, wherever they lie.
class LongValue {
 public:
  /// @param stored  what the row holds: a head, and the data when they are inline
  /// @param row     the row's address, for errors
  LongValue(const PageFile& file, Bytes stored, RowId row);
  LongValue(const LongValue&) = delete;
  LongValue& operator=(const LongValue&) = delete;

  /// Lives as long as this object and the row do.
  Bytes data() const { return data_; }

 private:
  Bytes Part(const PageFile& file, RowId where);
  void CollectChain(const PageFile& file, RowId first, std::size_t length);

  Page page_;              // of the part looked at last
  std::string collected_;  // the parts of a chain
  Bytes data_;
};

}  // namespace jet
