#include "explorer/base_rows.h"

#include <utility>

namespace {

// The fields of the tree statement, in its order.
enum Field : std::size_t { kКод, kВответ, kТема, kДата, kАвтор };

// A snapshot knows its count only at its end.
std::int32_t CountOf(sql::Recordset& rows) {
  if (rows.Eof()) return 0;
  rows.MoveLast();
  const std::int32_t count = rows.RecordCount();
  rows.MoveFirst();
  return count;
}

}  // namespace

BaseRows::BaseRows(sql::Connection& connection, const user_settings::TreeSettings& settings)
    : rows_(connection.OpenSnapshot(TreeStatement(settings))),
      count_(CountOf(rows_)),
      has_author_(rows_.Fields().size() > kАвтор) {}

bool BaseRows::Next() {
  if (std::exchange(started_, true)) rows_.MoveNext();
  return !rows_.Eof();
}

TreeRow BaseRows::Current() {
  return {.Код = rows_.Int(kКод),
          .Вответ = rows_.Int(kВответ),
          .Тема = rows_.Text(kТема),
          .Автор = has_author_ ? rows_.Text(kАвтор) : std::string_view(),
          .Дата = rows_.Date(kДата)};
}
