#include "jet/catalog_writer.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "base/cat.h"
#include "base/cp1251.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "jet/new_file.h"
#include "jet/system_tables.h"
#include "jet/table_builder.h"

namespace jet {
namespace {

std::string TextOf(const Row& row, const Column& column) {
  std::string text;
  row.AppendText(column, text);
  return text;
}

std::string BytesOf(const Row& row, const Column& column) { return std::string(AsText(row.Stored(column))); }

// The engine owns the catalog itself.
UserIds ReadUserIds(const Table& objects) {
  const Column& id = RequireColumn(objects.def(), "Id");
  const Column& owner = RequireColumn(objects.def(), "Owner");
  for (TableCursor cursor = objects.Scan(); cursor.Next();)
    if (cursor.row().Int(id) == static_cast<std::int32_t>(kCatalogPage))
      return UserIdsFrom(BytesOf(cursor.row(), owner));
  throw FormatError("В системной таблице нет нужной записи"_ru, objects.def().page);
}

void RequireGoodName(std::string_view name) {
  const auto forbidden = [](char c) { return static_cast<unsigned char>(c) < ' '; };
  if (name.empty() || name.size() > kLongestName || name.front() == ' ' ||
      name.find_first_of(".!`[]") != std::string_view::npos || std::ranges::any_of(name, forbidden))
    throw Error(error_number::kBadArgument, Cat("Недопустимое имя: "_ru, name));
}

Binary BigEndian(std::uint32_t number) {
  Binary binary;
  for (int shift = 24; shift >= 0; shift -= 8)
    binary.bytes += static_cast<char>(static_cast<std::uint8_t>(number >> shift));
  return binary;
}

Value TextOrNull(std::string_view text) { return text.empty() ? Value() : Value(std::string(text)); }

}  // namespace

CatalogWriter::CatalogWriter(Transaction& transaction, Database& base, OleDate now)
    : transaction_(transaction),
      base_(base),
      now_(now),
      objects_(base.OpenTableAt(kCatalogPage)),
      permissions_(base.OpenTable("MSysACEs")),
      queries_(base.OpenTable("MSysQueries")),
      object_rows_(transaction, objects_, {}),
      permission_rows_(transaction, permissions_, {}),
      query_rows_(transaction, queries_, {}) {}

void CatalogWriter::CreateTable(std::string_view name, TableDef design, std::span<const NewProperties> properties) {
  RequireFreeName(name);
  BuildTable(transaction_, design);
  List(name, design.page, object_type::kTable, EncodeProperties(base_.version(), properties));
}

void CatalogWriter::CreateQuery(std::string_view name, std::span<const QueryPiece> pieces) {
  RequireFreeName(name);
  const std::uint32_t id = NewId();
  List(name, id, object_type::kQuery, {});
  for (const QueryPiece& piece : pieces) AddPiece(id, piece);
}

// Tables and queries share one space of names.
void CatalogWriter::RequireFreeName(std::string_view name) const {
  RequireGoodName(name);
  const Column& parent = RequireColumn(objects_.def(), "ParentId");
  const Column& column = RequireColumn(objects_.def(), "Name");
  for (TableCursor cursor = objects_.Scan(); cursor.Next();)
    if (static_cast<std::uint32_t>(cursor.row().Int(parent)) == object_id::kTables &&
        cp1251::EqualIgnoringCase(TextOf(cursor.row(), column), name))
      throw Error(error_number::kDuplicateKey, Cat("В базе уже есть таблица или запрос с именем "_ru, name));
}

std::uint32_t CatalogWriter::NewId() const {
  const Column& id = RequireColumn(objects_.def(), "Id");
  std::uint32_t next = object_id::kFirstFree;
  for (TableCursor cursor = objects_.Scan(); cursor.Next();) {
    const auto taken = static_cast<std::uint32_t>(cursor.row().Int(id));
    if (taken >= next) next = taken + 1;
  }
  return next;
}

void CatalogWriter::List(std::string_view name, std::uint32_t id, int type, std::string properties) {
  const std::string admin = ReadUserIds(objects_).admin;
  object_rows_.Insert(
      ValuesOf(objects_, CatalogEntry{name, id, object_id::kTables, type, admin, 0, std::move(properties)}, now_));
  Permit(id);
  base_.ForgetCatalog();
}

// What the container of tables lets its objects inherit; its creator stands for their owner.
void CatalogWriter::Permit(std::uint32_t id) {
  const TableDef& def = permissions_.def();
  const Column &object = RequireColumn(def, "ObjectId"), &user = RequireColumn(def, "SID"),
               &mask = RequireColumn(def, "ACM"), &inheritable = RequireColumn(def, "FInheritable");
  const UserIds users = ReadUserIds(objects_);
  std::vector<Permission> inherited;
  for (TableCursor cursor = permissions_.Scan(); cursor.Next();) {
    const Row& row = cursor.row();
    if (static_cast<std::uint32_t>(row.Int(object)) != object_id::kTables || !row.Bool(inheritable)) continue;
    const std::string who = BytesOf(row, user);
    inherited.push_back(
        {id, who == users.creator ? users.admin : who, static_cast<std::uint32_t>(row.Int(mask)), false});
  }
  for (const Permission& permission : inherited) permission_rows_.Insert(ValuesOf(permissions_, permission));
}

void CatalogWriter::AddPiece(std::uint32_t query, const QueryPiece& piece) {
  const auto column = [&](std::string_view name) { return &RequireColumn(queries_.def(), name); };
  const std::vector<Assignment> values = {{column("ObjectId"), static_cast<std::int32_t>(query)},
                                          {column("Attribute"), std::int32_t{piece.attribute}},
                                          {column("Order"), BigEndian(piece.order)},
                                          {column("Name1"), TextOrNull(piece.name1)},
                                          {column("Expression"), TextOrNull(piece.expression)},
                                          {column("Flag"), piece.flag ? Value(std::int32_t{*piece.flag}) : Value()}};
  query_rows_.Insert(values);
}

}  // namespace jet
