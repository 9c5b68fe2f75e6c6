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

/// Do the fixed columns fill their part of the row? A table that never lost a column has no gap there.
bool LeavesNoGap(const jet::TableDef& def) {
  std::size_t sum = 0, end = 0;
  for (const jet::Column& column : def.columns) {
    if (!column.fixed || column.type == ColumnType::kBoolean) continue;
    sum += jet::FixedSizeOf(column);
    end = std::max(end, column.fixed_offset + jet::FixedSizeOf(column));
  }
  return sum == end;
}

/// Can its columns be believed?
bool IsTheTable(const jet::TableDef& def, const jet::TableDef& usual) {
  if (HasUsualShape(def, usual)) return HasAllColumns(def, usual) && LeavesNoGap(def);
  return HasAllColumns(def, usual) || HoldsMessages(def);
}

/// The definition of a new base's table in the place of one that cannot be read.
jet::TableDef InPlaceOf(std::uint32_t page, jet::TableDef def) {
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

DamagedMessages::DamagedMessages(const jet::SalvagedBase& base, const jet::TableDef& to, Progress& progress)
    : version_(base.header().version) {
  const jet::Catalog catalog = base.ReadCatalog();
  def_ = FindDefinition(base, catalog, to, progress);
  if (stopped_) return;
  PlanColumns(to);
  NoteWhatStays(catalog);
  if (!base.knows_header()) notes_.emplace_back("Начало файла повреждено: вид базы определён по её страницам"_ru);
  if (base.ends_within_page()) notes_.emplace_back("Файл обрывается посреди страницы"_ru);
}

// Where the catalog leads; else what looks like the table; else its rows are taken to look as in a new base.
jet::TableDef DamagedMessages::FindDefinition(const jet::SalvagedBase& base, const jet::Catalog& catalog,
                                              const jet::TableDef& to, Progress& progress) {
  const jet::CatalogTable* const listed = catalog.FindTable(kTable);
  std::optional<jet::TableDef> own;
  if (listed != nullptr) own = base.ReadDefinition(listed->definition);
  if (own && IsTheTable(*own, to)) return *std::move(own);
  if (own && HasUsualShape(*own, to)) return WithUsualColumns(*std::move(own), to);
  if (auto other = FindElsewhere(base, catalog, progress)) return *std::move(other);
  stopped_ = !progress.Advance(0);
  if (stopped_) return to;
  if (listed == nullptr || own)
    throw Error(error_number::kNoSuchObject,
                "В файле не нашлось таблицы База: её определение повреждено, или это не база сообщений"_ru);
  knows_definition_ = false;
  return WithUsualColumns(InPlaceOf(listed->definition, to), to);
}

/// A table that the catalog calls by another name is taken only when it calls none by the right one.
std::optional<jet::TableDef> DamagedMessages::FindElsewhere(const jet::SalvagedBase& base, const jet::Catalog& catalog,
                                                            Progress& progress) {
  std::optional<jet::TableDef> misnamed;
  std::string name;
  const auto is_unlisted = [&](const jet::TableDef& def) {
    if (!HoldsMessages(def)) return false;
    const auto listed = std::ranges::find(catalog.user_tables, def.page, &jet::CatalogTable::definition);
    if (listed == catalog.user_tables.end()) return true;
    if (misnamed) return false;
    misnamed = def;
    name = listed->name;
    return false;
  };
  std::optional<jet::TableDef> found = base.FindDefinition(is_unlisted, progress);
  if (found || !misnamed || catalog.FindTable(kTable) != nullptr) return found;
  notes_.push_back(Cat("Таблицы База нет в списке таблиц: сообщения взяты из похожей на неё таблицы "_ru, name));
  return misnamed;
}

jet::TableDef DamagedMessages::WithUsualColumns(jet::TableDef def, const jet::TableDef& usual) {
  notes_.emplace_back(
      "Определение таблицы База повреждено: её строки прочитаны так, как они устроены в новых базах"_ru);
  def.columns = usual.columns;
  return def;
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
