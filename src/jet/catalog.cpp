#include "jet/catalog.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "base/cp1251.h"
#include "base/error.h"
#include "base/ru_literal.h"

namespace jet {
namespace {

std::string Text(const Row& row, const Column& column) {
  std::string text;
  row.AppendText(column, text);
  return text;
}

// Numbers in the catalog stand big-endian in binary columns.
std::uint32_t BigEndian(Bytes bytes) {
  std::uint32_t value = 0;
  for (std::size_t i = 0; i < std::min<std::size_t>(bytes.size(), 4); ++i) value = (value << 8) | LoadU8(bytes, i);
  return value;
}

const CatalogTable* FindIn(const std::vector<CatalogTable>& tables, std::string_view name) {
  for (const CatalogTable& table : tables)
    if (cp1251::EqualIgnoringCase(table.name, name)) return &table;
  return nullptr;
}

}  // namespace

const Column& RequireColumn(const TableDef& def, std::string_view name) {
  const Column* const column = def.FindColumn(name);
  if (column == nullptr) throw FormatError("В системной таблице нет нужного столбца"_ru, def.page);
  return *column;
}

const CatalogTable* Catalog::FindTable(std::string_view name) const {
  const CatalogTable* const own = FindIn(user_tables, name);
  return own != nullptr ? own : FindIn(system_tables, name);
}

CatalogReader::CatalogReader(const TableDef& objects)
    : id_(RequireColumn(objects, "Id")),
      name_(RequireColumn(objects, "Name")),
      type_(RequireColumn(objects, "Type")),
      flags_(RequireColumn(objects, "Flags")) {}

void CatalogReader::Take(const Row& row) {
  const int kind = row.Int(type_);
  if (kind != object_type::kTable && kind != object_type::kQuery) return;
  std::string stored_name;
  row.ReadStored(name_, stored_name);
  const auto flags = static_cast<std::uint32_t>(row.Int(flags_));
  if (kind == object_type::kQuery) {
    catalog_.queries.push_back({Text(row, name_), std::move(stored_name), row.Int(id_), flags});
    return;
  }
  const bool system = (flags & (kSystemObject | kHiddenSystemObject)) != 0;
  (system ? catalog_.system_tables : catalog_.user_tables)
      .push_back({Text(row, name_), std::move(stored_name), static_cast<std::uint32_t>(row.Int(id_)), flags, system});
}

Catalog ReadCatalog(const Table& objects) {
  CatalogReader reader(objects.def());
  for (TableCursor cursor = objects.Scan(); cursor.Next();) reader.Take(cursor.row());
  return std::move(reader).Take();
}

std::vector<QueryRow> ReadQueryRows(const Table& queries, std::int32_t id) {
  const TableDef& def = queries.def();
  const Column &object = RequireColumn(def, "ObjectId"), &attribute = RequireColumn(def, "Attribute"),
               &order = RequireColumn(def, "Order"), &flag = RequireColumn(def, "Flag"),
               &name1 = RequireColumn(def, "Name1"), &name2 = RequireColumn(def, "Name2"),
               &expression = RequireColumn(def, "Expression");
  std::vector<QueryRow> rows;
  for (TableCursor cursor = queries.Scan(); cursor.Next();) {
    const Row& row = cursor.row();
    if (row.Int(object) != id) continue;
    rows.push_back({row.Int(attribute), BigEndian(row.Stored(order)), row.Int(flag), Text(row, name1), Text(row, name2),
                    Text(row, expression)});
  }
  std::stable_sort(rows.begin(), rows.end(), [](const QueryRow& a, const QueryRow& b) {
    return std::tie(a.attribute, a.order) < std::tie(b.attribute, b.order);
  });
  return rows;
}

}  // namespace jet
