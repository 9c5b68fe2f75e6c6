#pragma once

#include <cstdint>
#include <string>

#include "base/bytes.h"
#include "base/error.h"
#include "jet/page_file.h"
#include "jet/table_def.h"

namespace jet {

/// The data of a Memo or OLE value, wherever they lie.
class LongValue {
 public:
  /// @param stored  what the row holds: a head, and the data when they are inline
  /// @param row     the row's address, for errors
  LongValue(const PageFile& file, Bytes stored, RowId row) { Fetch(file, stored, row); }
  LongValue(const LongValue&) = delete;
  LongValue& operator=(const LongValue&) = delete;

  /// Lives as long as this object and the row do.
  Bytes data() const { return data_; }

  /// A value up to the first of its parts that cannot be read.
  struct Beginning {
    std::string bytes;
    bool whole = true;
    std::int64_t damaged_page = FormatError::kNoPage;  // where it breaks off, if that is known
  };
  static Beginning ReadBeginning(const PageFile& file, Bytes stored, RowId row);

 private:
  LongValue() = default;
  void Fetch(const PageFile& file, Bytes stored, RowId row);
  Bytes Part(const PageFile& file, RowId where);
  void CollectChain(const PageFile& file, RowId first, std::size_t length);

  Page page_;              // of the part looked at last
  std::string collected_;  // the parts of a chain
  Bytes data_;
};

}  // namespace jet
