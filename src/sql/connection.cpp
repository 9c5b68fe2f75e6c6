#include "sql/connection.h"

#include <algorithm>
#include <utility>

#include "base/cat.h"
#include "base/checked.h"
#include "base/cp1251.h"
#include "base/ru_literal.h"
#include "sql/execute.h"
#include "sql/parser.h"
#include "sql/row_editor.h"
#include "sql/saved_query.h"
#include "sql/sql_errors.h"
#include "sql/stored_table.h"

namespace sql {
namespace {

template <typename Entry>
const Entry* FindNamed(const std::vector<Entry>& entries, std::string_view name) {
  const auto found = std::find_if(entries.begin(), entries.end(),
                                  [name](const Entry& entry) { return cp1251::EqualIgnoringCase(entry.name, name); });
  return found == entries.end() ? nullptr : &*found;
}

Select AllOf(std::string_view name) {
  Select select;
  select.items.emplace_back().star = true;
  select.from.name = name;
  return select;
}

Select ParseSelect(std::string_view text) {
  Statement statement = ParseStatement(text);
  auto* const select = std::get_if<Select>(&statement);
  if (select == nullptr) ThrowBadStatement("этот запрос не возвращает записей"_ru);
  return std::move(*select);
}

std::vector<Field> FieldsOf(const Plan& plan) {
  std::vector<Field> fields;
  for (const Output& output : plan.outputs) fields.push_back(output.field);
  return fields;
}

}  // namespace

Recordset Connection::OpenSnapshot(std::string_view source) {
  NoProgress progress;
  return OpenSnapshot(source, progress);
}

Recordset Connection::OpenSnapshot(std::string_view source, Progress& progress) {
  const jet::Database::Reading reading(base_);
  const OleDate now = clock_.Now();
  return Snapshot(PlanFor(source, now, progress), now, progress);
}

Recordset Connection::OpenDynaset(std::string_view source) {
  NoProgress progress;
  return OpenDynaset(source, progress);
}

Recordset Connection::OpenDynaset(std::string_view source, Progress& progress) {
  const jet::Database::Reading reading(base_);
  const OleDate now = clock_.Now();
  Plan plan = PlanFor(source, now, progress);
  if (!plan.IsRowByRow() || plan.source->OpenReader() == nullptr) return Snapshot(plan, now, progress);
  std::vector<jet::RowId> keys = ExecuteForKeys(plan, progress);
  std::vector<Field> fields = FieldsOf(plan);
  return {std::move(fields), MakeDynasetRows(std::move(plan), std::move(keys)), now};
}

Recordset Connection::Snapshot(const Plan& plan, OleDate now, Progress& progress) {
  return {FieldsOf(plan), MakeSnapshotRows(sql::Execute(plan, progress)), now};
}

Plan Connection::PlanFor(std::string_view source, OleDate now, Progress& progress) {
  return MakePlan(LooksLikeStatement(source) ? ParseSelect(source) : AllOf(source), *this, now, progress);
}

std::int32_t Connection::Execute(std::string_view statement) {
  Statement parsed = ParseStatement(statement);
  auto* const deletion = std::get_if<Delete>(&parsed);
  if (deletion == nullptr) ThrowBadStatement("этот запрос ничего не меняет: его открывают, а не выполняют"_ru);
  return changes_.Run([&](Transaction& transaction) {
    try {
      return DeleteRows(*std::move(deletion));
    } catch (...) {
      transaction.RollBack();  // some rows may be gone already
      throw;
    }
  });
}

std::int32_t Connection::DeleteRows(Delete statement) {
  NoProgress progress;
  Select doomed = AllOf(statement.from.name);
  doomed.from = std::move(statement.from);
  doomed.where = std::move(statement.where);
  Plan plan = MakePlan(doomed, *this, clock_.Now(), progress);
  const auto editor = plan.source->OpenEditor();
  if (editor == nullptr) ThrowBadStatement(Cat("из запроса «"_ru, doomed.from.name, "» нельзя удалять"_ru));
  plan.order.clear();
  const std::vector<jet::RowId> rows = ExecuteForKeys(plan, progress);
  for (const jet::RowId row : rows) editor->Delete(row);
  return CheckedCast<std::int32_t>(rows.size());
}

bool Connection::HasTable(std::string_view name) {
  const jet::Database::Reading reading(base_);
  return FindNamed(base_.Tables(), name) != nullptr || FindNamed(base_.SystemTables(), name) != nullptr;
}

bool Connection::HasQuery(std::string_view name) {
  const jet::Database::Reading reading(base_);
  return FindCatalogQuery(name) != nullptr;
}

std::vector<std::string> Connection::QueryNames() {
  const jet::Database::Reading reading(base_);
  std::vector<std::string> names;
  for (const jet::CatalogQuery& query : base_.Queries()) names.push_back(query.name);
  return names;
}

std::string Connection::QueryText(std::string_view name) {
  const jet::Database::Reading reading(base_);
  const jet::CatalogQuery* const query = FindCatalogQuery(name);
  if (query == nullptr) ThrowUnknownTable(name);
  return sql::QueryText(base_.QueryRows(query->id));
}

std::unique_ptr<RowSource> Connection::OpenTable(std::string_view name) {
  if (!HasTable(name)) return nullptr;
  return std::make_unique<StoredTable>(base_.OpenTable(name), changes_);
}

std::optional<Select> Connection::FindQuery(std::string_view name) {
  const jet::CatalogQuery* const query = FindCatalogQuery(name);
  if (query == nullptr) return std::nullopt;
  constexpr std::uint32_t kSelectKind = 0;
  if (query->kind() != kSelectKind)
    ThrowBadStatement(Cat("сохранённый запрос «"_ru, name, "» не возвращает записей или не поддерживается"_ru));
  return ParseSelect(sql::QueryText(base_.QueryRows(query->id)));
}

const jet::CatalogQuery* Connection::FindCatalogQuery(std::string_view name) {
  return FindNamed(base_.Queries(), name);
}

}  // namespace sql
