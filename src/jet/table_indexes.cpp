#include "jet/table_indexes.h"

#include <algorithm>

#include "base/cat.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "jet/index_key.h"
#include "jet/table_counters.h"

namespace jet {

TableIndexes::TableIndexes(Transaction& transaction, const TableDef& table)
    : transaction_(transaction), table_(table), changes_(table.real_indexes.size()) {
  for (const RealIndex& index : table.real_indexes) writers_.emplace_back(transaction, table, index);
}

void TableIndexes::PlanInsert(RowDraft& row) {
  for (std::size_t i = 0; i < writers_.size(); ++i) {
    Plan(i);
    PlanNew(i, row);
  }
}

void TableIndexes::PlanUpdate(const Row& before, RowDraft& after) {
  for (std::size_t i = 0; i < writers_.size(); ++i) {
    Change& change = Plan(i);
    const RealIndex& index = table_.real_indexes[i];
    const auto changed = [&](const IndexColumn& part) { return after.IsChanged(ColumnOf(part)); };
    if (std::none_of(index.columns.begin(), index.columns.end(), changed)) continue;
    PlanOld(i, before);
    PlanNew(i, after);
    if (change.erase == change.insert) change = {};
  }
}

void TableIndexes::PlanDelete(const Row& before) {
  for (std::size_t i = 0; i < writers_.size(); ++i) {
    Plan(i);
    PlanOld(i, before);
  }
}

void TableIndexes::Apply(RowId id) {
  for (std::size_t i = 0; i < writers_.size(); ++i) {
    const Change& change = changes_[i];
    if (change.erase) writers_[i].Delete(*change.erase, id);
    if (change.insert) writers_[i].Insert(*change.insert, id);
    if (change.counts) CountDistinctKey(transaction_, table_, i);
  }
}

void TableIndexes::PlanOld(std::size_t index, const Row& row) {
  const RealIndex& real = table_.real_indexes[index];
  if (real.ignore_nulls && AllKeyColumnsNull(table_, real, row)) return;
  const Version version = transaction_.pages().layout().version;
  changes_[index].erase = KeyOfRow(version, table_, real, row).value_or("");
}

void TableIndexes::PlanNew(std::size_t index, RowDraft& row) {
  const RealIndex& real = table_.real_indexes[index];
  bool all_null = true;
  for (const IndexColumn& part : real.columns) {
    const Column& column = ColumnOf(part);
    const bool null = column.type != ColumnType::kBoolean && !row.Whole(column).bit;
    if (null && real.required)
      throw Error(error_number::kRequired, Cat("Поле "_ru, column.name, " должно быть заполнено"_ru));
    all_null = all_null && null;
  }
  if (all_null && real.ignore_nulls) return;
  Change& change = changes_[index];
  change.insert = KeyOf(real, row);
  if (change.insert == change.erase) return;
  change.counts = !writers_[index].HasKey(*change.insert);
  if (real.unique && !all_null && !change.counts) throw DuplicateKey();
}

std::string TableIndexes::KeyOf(const RealIndex& index, RowDraft& row) const {
  std::vector<StoredColumn> columns;
  for (const IndexColumn& part : index.columns) columns.push_back(row.Whole(ColumnOf(part)));
  std::optional<std::string> key = KeyOfStored(transaction_.pages().layout().version, table_, index, columns);
  if (!key)
    throw Error(error_number::kNoAccess,
                Cat("Запись нельзя сохранить: программа не знает, в каком порядке индекс по полю "_ru,
                    ColumnOf(index.columns.front()).name,
                    " расставляет такие тексты. Сожмите базу: в новой копии этот индекс строится заново"_ru));
  return *std::move(key);
}

}  // namespace jet
