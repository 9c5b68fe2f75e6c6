#include "jet/read_all.h"

#include <memory>
#include <set>
#include <utility>

#include "base/error.h"
#include "jet/index_key.h"
#include "jet/text_codec.h"

namespace jet {
namespace {

template <typename Action>
void Try(Seen& seen, Action action) {
  try {
    action();
  } catch (const Error&) {
    ++seen.errors;
  }
}

void ReadRow(Version version, const TableDef& def, const Row& row, Seen& seen) {
  std::string stored;
  for (const Column& column : def.columns) {
    row.ReadStored(column, stored);
    seen.bytes += stored.size();
    if (column.type == ColumnType::kText || column.type == ColumnType::kMemo)
      seen.bytes += DecodeUtf8(version, AsBytes(stored)).size();
    const Value value = row.Get(column);
    if (const Numeric* const numeric = std::get_if<Numeric>(&value)) seen.bytes += NumericText(*numeric).size();
    if (const Currency* const currency = std::get_if<Currency>(&value)) seen.bytes += CurrencyText(*currency).size();
  }
}

void ReadRows(Version version, const Table& table, Seen& seen) {
  Try(seen, [&] { seen.rows += table.CountRows(); });
  for (TableCursor cursor = table.Scan(); cursor.Next();)
    Try(seen, [&] { ReadRow(version, table.def(), cursor.row(), seen); });
}

void WalkIndex(Version version, const Table& table, const RealIndex& index, Direction direction, Seen& seen) {
  IndexCursor seeker = table.Walk(index, direction);
  for (IndexCursor cursor = table.Walk(index, direction); cursor.Next(); ++seen.entries) {
    Try(seen, [&] {
      seeker.Seek(cursor.key());
      seen.entries += seeker.Next() ? 1 : 0;
      const Row row = table.Read(cursor.id());
      seen.bytes += KeyOfRow(version, table.def(), index, row).value_or("").size();
    });
  }
}

void ReadTable(Database& base, std::uint32_t definition, Seen& seen) {
  const Table table = base.OpenTableAt(definition);
  Try(seen, [&] { ReadRows(base.version(), table, seen); });
  for (const RealIndex& index : table.def().real_indexes)
    for (const Direction direction : {Direction::kForward, Direction::kBackward})
      Try(seen, [&] { WalkIndex(base.version(), table, index, direction, seen); });
}

}  // namespace

Seen ReadAll(std::string image) {
  constexpr std::size_t kMostQueries = 8;  // each costs a scan
  Seen seen;
  Try(seen, [&] {
    Database base = Database::OpenFile(std::make_unique<MemoryFile>(std::move(image)));
    std::set<std::uint32_t> definitions;
    for (const auto* const tables : {&base.Tables(), &base.SystemTables()})
      for (const CatalogTable& table : *tables) definitions.insert(table.definition);
    for (const std::uint32_t definition : definitions) Try(seen, [&] { ReadTable(base, definition, seen); });
    for (std::size_t i = 0; i < base.Queries().size() && i < kMostQueries; ++i)
      Try(seen, [&] { seen.rows += base.QueryRows(base.Queries()[i].id).size(); });
  });
  return seen;
}

}  // namespace jet
