#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <variant>
#include <vector>

#include "base/ole_date.h"
#include "store/query_recordset.h"

/// A field that the importer leaves alone: it stays Null.
using NotSet = std::monostate;

/// One field of a row as an importer sets it. A text lives as long as the message that it is of.
struct StoredField {
  std::string_view name;  // of the table База
  std::variant<NotSet, std::string_view, std::int32_t, OleDate> value;
};

/// All that one forum's importer sets of a message, in its order.
using StoredFields = std::vector<StoredField>;

/// For the fields of which some importers store no empty text.
StoredField TextUnlessEmpty(std::string_view name, std::string_view text);
StoredField DateIfAny(std::string_view name, std::optional<OleDate> date);

/// Sets the field of the row under way. @throws Error
void SetField(QueryRecordset& records, const StoredField& field);

/// Adds the row and stores it. A failure leaves it under way: whoever catches it cancels. @throws Error
void StoreRow(QueryRecordset& records, const StoredFields& fields);
