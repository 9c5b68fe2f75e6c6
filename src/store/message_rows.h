#pragma once

#include <cstdint>
#include <optional>

#include "sql/connection.h"
#include "store/message_record.h"

/// The message of this number in the table База, Null texts and numbers as "" and 0.
/// @return none when there is no such row
/// @throws SqlError when the base has no such table or it lacks a field, FormatError for a damaged base
std::optional<MessageRecord> ReadMessage(sql::Connection& connection, std::int32_t number);
