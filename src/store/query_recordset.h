#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "base/ole_date.h"

/// The updatable recordset over the saved query БазаЗапрос that a download keeps open: look-ups see
/// the rows that it added. A row under way is dropped by Cancel, a second AddNew or the end of the
/// object, and nothing of it is stored before Update.
class QueryRecordset {
 public:
  virtual ~QueryRecordset() = default;

  /// The highest Код in the base; `when_empty` when there is no row.
  virtual std::int32_t GetFirst(std::int32_t when_empty) = 0;
  /// Is there a row of this number?
  virtual bool msgExist(std::int32_t number) = 0;

  /// Begins a row; every field is Null until set.
  virtual void AddNew() = 0;
  /// Field names are those of the table База, e.g. "Тема"_ru. An empty text becomes Null in a field
  /// that takes no empty texts. @throws Error 3163 when a text is longer than the field, 3020 when
  /// no row is under way
  virtual void SetText(std::string_view field, std::string_view text) = 0;
  virtual void SetNumber(std::string_view field, std::int32_t number) = 0;
  virtual void SetDate(std::string_view field, OleDate date) = 0;
  /// Stores the row; when it returns the row is on the disk, unless the recordset says otherwise.
  /// @throws DuplicateKey, FileError, Error 3314 for a required field; the base is then as it was
  virtual void Update() = 0;
  virtual void Cancel() = 0;
  /// When it returns, all rows that Update took are on the disk, or whoever made the recordset knows which are not.
  virtual void Flush() noexcept {}
};

/// A recordset whose rows can go on the disk together: a disk that writes a hundred separate rows a second
/// writes thousands so. At most one batch at a time; the end of the object drops one that is under way.
class BatchedRecordset : public QueryRecordset {
 public:
  /// From now on Update adds rows that look-ups see, but that are on the disk when CommitBatch returns.
  virtual void BeginBatch() = 0;
  /// @throws FileError, and Error when a row failed by halves: DropBatch must follow
  virtual void CommitBatch() = 0;
  /// Undoes all that was added since BeginBatch, the row under way too.
  /// @throws Error when the base cannot be read any more
  virtual void DropBatch() = 0;
};
