#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "sql/connection.h"

/// Changes to the messages of a base.
class MessageEdits {
 public:
  virtual ~MessageEdits() = default;
  /// Deletes rows of the table База by number, one after another: all of them, or none when it throws.
  /// A number without a row is passed over.
  /// @throws Error 3027, FileError, FormatError
  virtual void Delete(std::span<const std::int32_t> numbers) = 0;
};

/// The statement that deletes one message.
std::string DeleteStatement(std::int32_t number);

/// What MessageEdits::Delete promises, through a connection to a base that is open for writing.
void DeleteMessages(sql::Connection& connection, std::span<const std::int32_t> numbers);
