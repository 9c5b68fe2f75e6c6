#include "store/damaged_messages.h"

#include <algorithm>
#include <utility>

#include "base/cat.h"
#include "base/cp1251.h"
#include "base/ole_date.h"
#include "base/ru_literal.h"
#include "jet/column_codec.h"
#include "jet/table_writer.h"
#include "jet/text_codec.h"
#include "store/message_record.h"

namespace {

using jet::ColumnType;

constexpr std::string_view kTable = "База"_ru, kNumber = "Код"_ru, kBody = "Текст"_ru;
constexpr std::string_view kQueries[] = {"БазаИндекс"_ru, "БазаЗапрос"_ru};
constexpr std::string_view kMark = "[Сообщение спасено из повреждённой базы не полностью]"_ru;

bool IsWholeNumber(ColumnType type) {
  return type == ColumnType::kByte || type == ColumnType::kInteger || type == ColumnType::kLong;
}

bool CanCarry(ColumnType from, ColumnType to) {
  return from == to || (jet::IsText(from) && jet::IsText(to)) || (IsWholeNumber(from) && to == ColumnType::kLong);
}

bool HoldsMessages(const jet::TableDef& def) {
  const jet::Column *const number = def.FindColumn(kNumber), *const body = def.FindColumn(kBody);
  return number != nullptr && number->type == ColumnType::kLong && body != nullptr && jet::IsText(body->type);
}

bool HasAllColumns(const jet::TableDef& def, const jet::TableDef& usual) {
  return std::ranges::all_of(usual.columns, [&](const jet::Column& column) {
    const jet::Column* const own = def.FindColumn(column.name);
    return own != nullptr && CanCarry(own->type, column.type);
  });
}

/// Do its rows have as many columns of either kind as those of a new base? Then only the columns' entries are damaged.
bool HasUsualShape(const jet::TableDef& def, const jet::TableDef& usual) {
  return def.max_columns == usual.max_columns && def.variable_columns == usual.variable_columns;
}

/// The definition of a new base's table in the place of one that cannot be read.
jet::TableDef AsUsual(jet::TableDef def, std::uint32_t page) {
  def.page = page;
  def.owned_map = def.free_map = {};
  def.real_indexes.clear();
  def.logical_indexes.clear();
  return def;
}

void Append(std::string& list, std::string_view name) { list += Cat(list.empty() ? "" : ", ", name); }

/// Could the table hold it, and a base show it?
bool IsSound(jet::Version version, const jet::Column& column, const jet::Value& value) try {
  jet::CheckValue(version, column, value);
  const auto* const date = std::get_if<OleDate>(&value);
  return date == nullptr || ole_date::InRange(*date);
} catch (const Error&) {
  return false;
}

/// A text that may break off within a character.
std::string DecodeBeginning(jet::Version version, Bytes bytes) {
  std::string text;
  if (!jet::AppendText(version, bytes, text) && !bytes.empty())
    jet::AppendText(version, bytes.first(bytes.size() - 1), text);
  return text;
}

/// Puts the mark behind the text that the values hold.
void MarkIncomplete(std::vector<jet::Assignment>& values) {
  for (jet::Assignment& assignment : values) {
    if (!cp1251::EqualIgnoringCase(assignment.column->name, kBody)) continue;
    const auto* const text = std::get_if<std::string>(&assignment.value);
    assignment.value = text == nullptr || text->empty() ? std::string(kMark) : Cat(*text, "<br>", kMark);
  }
}

}  // namespace

std::string_view IncompleteMessageMark() { return kMark; }

DamagedMessages::DamagedMessages(const jet::SalvagedBase& base, const jet::TableDef& to)
    : version_(base.header().version) {
  const jet::Catalog catalog = base.ReadCatalog();
  def_ = FindDefinition(base, catalog, to);
  PlanColumns(to);
  NoteWhatStays(catalog);
  if (base.ends_within_page()) notes_.emplace_back("Файл обрывается посреди страницы"_ru);
}

// Where the catalog leads; else what looks like the table, unless the catalog calls that by another name.
jet::TableDef DamagedMessages::FindDefinition(const jet::SalvagedBase& base, const jet::Catalog& catalog,
                                              const jet::TableDef& to) {
  const jet::CatalogTable* const listed = catalog.FindTable(kTable);
  std::optional<jet::TableDef> own;
  if (listed != nullptr) own = base.ReadDefinition(listed->definition);
  const bool usual = own && HasUsualShape(*own, to);
  if (own && (HasAllColumns(*own, to) || (HoldsMessages(*own) && !usual))) return *std::move(own);

  const auto fits = [&](const jet::TableDef& def) {
    return HoldsMessages(def) && std::ranges::find(catalog.user_tables, def.page, &jet::CatalogTable::definition) ==
                                     catalog.user_tables.end();
  };
  if (!usual)
    if (auto def = base.FindDefinition(fits)) return *std::move(def);
  if (listed == nullptr || (own && !usual))
    throw Error(error_number::kNoSuchObject,
                "В файле не нашлась таблица База: её определение повреждено, или это не база сообщений"_ru);
  notes_.emplace_back(
      "Определение таблицы База повреждено: её строки прочитаны так, как они устроены в новых базах"_ru);
  knows_definition_ = usual;
  if (!usual) return AsUsual(to, listed->definition);
  own->columns = to.columns;
  return *std::move(own);
}

void DamagedMessages::PlanColumns(const jet::TableDef& to) {
  std::string left_out;
  for (const jet::Column& column : def_.columns) {
    const jet::Column* const target = to.FindColumn(column.name);
    if (target != nullptr && CanCarry(column.type, target->type))
      columns_.push_back({&column, target});
    else
      Append(left_out, column.name);
  }
  const jet::Column* const number = def_.FindColumn(kNumber);
  number_at_ = static_cast<std::size_t>(std::ranges::find(columns_, number, &Carried::from) - columns_.begin());
  if (!left_out.empty()) notes_.push_back(Cat("Столбцы таблицы База, которые не перенесены: "_ru, left_out));
}

void DamagedMessages::NoteWhatStays(const jet::Catalog& catalog) {
  std::string tables, queries;
  for (const jet::CatalogTable& table : catalog.user_tables)
    if (table.definition != def_.page) Append(tables, table.name);
  for (const jet::CatalogQuery& query : catalog.queries)
    if (std::ranges::find(kQueries, query.name) == std::end(kQueries)) Append(queries, query.name);
  if (!tables.empty()) notes_.push_back(Cat("Другие таблицы базы, которые не перенесены: "_ru, tables));
  if (!queries.empty()) notes_.push_back(Cat("Другие запросы базы, которые не перенесены: "_ru, queries));
  if (catalog.user_tables.empty() && catalog.queries.empty())
    notes_.emplace_back("Список таблиц и запросов базы повреждён: что в ней было ещё, неизвестно"_ru);
}

std::optional<DamagedMessages::Message> DamagedMessages::Read(const jet::Row& row) const {
  Message message;
  for (const Carried& column : columns_) message.values.push_back({column.to, ReadValue(row, column, message)});
  const auto* const value = std::get_if<std::int32_t>(&message.values[number_at_].value);
  if (value == nullptr || *value < 1 || *value > kLargestNumber) return std::nullopt;
  message.number = *value;
  if (!message.whole) MarkIncomplete(message.values);
  return message;
}

jet::Value DamagedMessages::ReadValue(const jet::Row& row, const Carried& column, Message& message) const {
  if (row.IsNull(*column.from)) return {};
  jet::Value value;
  try {
    value = column.from->type == ColumnType::kMemo ? ReadMemo(row, *column.from, message) : row.Get(*column.from);
  } catch (const FormatError& error) {
    message.whole = false;
    message.damaged_page = error.page();
    return {};
  }
  if (IsSound(version_, *column.to, value)) return value;
  message.whole = false;
  message.damaged_page = row.id().page;
  return {};
}

jet::Value DamagedMessages::ReadMemo(const jet::Row& row, const jet::Column& column, Message& message) const {
  const jet::LongValue::Beginning stored = row.FetchBeginning(column);
  std::string text;
  if (stored.whole && jet::AppendText(version_, AsBytes(stored.bytes), text)) return text;
  message.whole = false;
  message.damaged_page = stored.whole ? std::int64_t{row.id().page} : stored.damaged_page;
  return DecodeBeginning(version_, AsBytes(stored.bytes));
}
