#include "jet/relation_guard.h"

#include <algorithm>

#include "base/cat.h"
#include "base/error.h"
#include "base/ru_literal.h"

namespace jet {
namespace {

constexpr std::uint8_t kReferenced = 1, kRefers = 2;

[[noreturn]] void Refuse(const LogicalIndex& relation, std::string_view what) {
  throw Error(error_number::kNoAccess, Cat("Таблица связана с другой таблицей (связь "_ru, relation.name,
                                           "), а за целостностью связей программа не следит, поэтому "_ru, what));
}

}  // namespace

void RelationGuard::CheckInsert() const {
  for (const LogicalIndex& index : table_.logical_indexes)
    if (index.relation.side == kRefers) Refuse(index, "записей в неё не добавляет"_ru);
}

void RelationGuard::CheckUpdate(const RowDraft& row) const {
  for (const LogicalIndex& index : table_.logical_indexes) {
    if (index.relation.side == 0) continue;
    const auto changed = [&](const IndexColumn& part) { return row.IsChanged(*table_.ColumnByNumber(part.number)); };
    if (std::ranges::any_of(table_.real_indexes[index.real].columns, changed))
      Refuse(index, "полей этой связи не меняет"_ru);
  }
}

void RelationGuard::CheckDelete() const {
  for (const LogicalIndex& index : table_.logical_indexes)
    if (index.relation.side == kReferenced) Refuse(index, "записей из неё не удаляет"_ru);
}

}  // namespace jet
