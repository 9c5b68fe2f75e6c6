#include "jet/base_copier.h"

#include <algorithm>
#include <utility>

#include "base/cat.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "jet/column_codec.h"
#include "jet/index_key.h"
#include "jet/page_allocation.h"
#include "jet/row_copier.h"
#include "jet/table_builder.h"
#include "jet/table_counters.h"
#include "jet/text_key.h"

namespace jet {
namespace {

constexpr std::uint64_t kRowsBetweenReports = 256;

/// The user stopped the operation.
struct Stopped {};

constexpr BaseCopier::SystemTable kSystemTables[] = {{"MSysObjects", kCatalogPage},
                                                     {"MSysACEs", kPermissionsPage},
                                                     {"MSysQueries", kQueriesPage},
                                                     {"MSysRelationships", kRelationshipsPage}};

/// Do rows of both tables hold the same columns in the same places?
bool HaveSameRows(const TableDef& a, const TableDef& b) {
  return a.max_columns == b.max_columns && a.variable_columns == b.variable_columns &&
         std::ranges::equal(a.columns, b.columns, [](const Column& x, const Column& y) {
           return x.stored_name == y.stored_name && x.number == y.number && x.type == y.type && x.fixed == y.fixed &&
                  (x.fixed ? x.fixed_offset == y.fixed_offset : x.variable_index == y.variable_index);
         });
}

// An index that does not list every row must not decide which of them are copied.
bool ListsAllRows(const Table& table, const RealIndex& index) try {
  std::uint64_t entries = 0;
  for (IndexCursor cursor = table.Walk(index); cursor.Next();) ++entries;
  return entries == table.CountRows();
} catch (const FormatError&) {
  return false;
}

const RealIndex* PrimaryIndex(const TableDef& table) {
  for (const LogicalIndex& index : table.logical_indexes)
    if (index.kind == IndexKind::kPrimary) return &table.real_indexes[index.real];
  return nullptr;
}

/// @param visit  called with every row, by primary key where there is a sound one
void VisitRows(const Table& table, const auto& visit) {
  const RealIndex* const index = PrimaryIndex(table.def());
  if (index == nullptr || !ListsAllRows(table, *index)) {
    for (TableCursor cursor = table.Scan(); cursor.Next();) visit(cursor.row());
    return;
  }
  Row row;
  for (IndexCursor cursor = table.Walk(*index); cursor.Next();) {
    table.Read(cursor.id(), row);
    visit(row);
  }
}

// Removes real indexes that no named one uses.
void DropUnusedIndexes(TableDef& table) {
  std::vector<RealIndex> used;
  for (std::uint32_t old = 0; old < table.real_indexes.size(); ++old) {
    const auto uses = [old](const LogicalIndex& index) { return index.real == old; };
    if (std::ranges::none_of(table.logical_indexes, uses)) continue;
    used.push_back(std::move(table.real_indexes[old]));
    const auto now = static_cast<std::uint32_t>(used.size() - 1);
    for (LogicalIndex& index : table.logical_indexes)
      if (index.real == old) index.real = now;
  }
  table.real_indexes = std::move(used);
}

}  // namespace

BaseCopier::BaseCopier(Database& from, Database& to, const CompactOptions& options, Progress& progress)
    : from_(from), to_(to), options_(options), progress_(progress), transaction_(to.store()) {}

CompactResult BaseCopier::Run() try {
  PlanTables();
  ConnectRelationships();
  for (const auto& table : tables_) BuildTable(transaction_, table->to);
  for (const SystemTable& table : kSystemTables) CopySystemRows(table);
  for (const auto& table : tables_) CopyTableRows(*table);
  transaction_.Commit();
  result_.complete = true;
  return std::move(result_);
} catch (const Stopped&) {
  transaction_.RollBack();
  return {};
}

void BaseCopier::PlanTables() {
  std::vector<CatalogTable> listed = from_.Tables();
  const std::vector<CatalogTable>& system = from_.SystemTables();
  listed.insert(listed.end(), system.begin(), system.end());
  for (const CatalogTable& entry : listed) {
    const auto known = std::ranges::find(kSystemTables, entry.name, &SystemTable::name);
    const Table from = from_.OpenTableAt(entry.definition);
    expected_rows_ += from.ExpectedRows();
    if (known != std::end(kSystemTables)) {
      new_pages_[entry.definition] = known->page;
      continue;
    }
    tables_.push_back(std::make_unique<CopiedTable>(CopiedTable{entry.name, from, from.def()}));
    LeaveUnknownIndexesOut(*tables_.back());
    tables_.back()->to.page = PageAllocator(transaction_).Allocate().number();
    new_pages_[entry.definition] = tables_.back()->to.page;
  }
}

bool BaseCopier::KnowsKeys(const Table& table, const RealIndex& index) const {
  bool has_text = false;
  for (const IndexColumn& part : index.columns) {
    const Column& column = *table.def().ColumnByNumber(part.number);
    if (!IsText(column.type)) continue;
    if (!KnowsTextKeys(from_.version(), column)) return false;
    has_text = true;
  }
  if (!has_text || from_.version() == Version::kJet3) return true;
  for (TableCursor cursor = table.Scan(); cursor.Next();)
    if (!KeyOfRow(from_.version(), table.def(), index, cursor.row())) return false;
  return true;
}

void BaseCopier::LeaveUnknownIndexesOut(CopiedTable& table) {
  for (std::uint32_t real = 0; real < table.to.real_indexes.size(); ++real) {
    if (KnowsKeys(table.from, table.to.real_indexes[real])) continue;
    for (const LogicalIndex& index : table.to.logical_indexes) {
      if (index.real != real) continue;
      const std::string what = Cat("Индекс "_ru, index.name, " таблицы "_ru, table.name);
      if (!options_.leave_unknown_indexes_out)
        throw Error(error_number::kNoAccess,
                    Cat(what, " расставляет тексты в порядке, которого программа не знает"_ru));
      result_.notes.push_back(Cat(what, " опущен: программа не знает, в каком порядке он расставляет тексты"_ru));
    }
    std::erase_if(table.to.logical_indexes, [real](const LogicalIndex& index) { return index.real == real; });
  }
  DropUnusedIndexes(table.to);
}

// Both ends of a relationship name each other's table and index. One whose other end is gone goes too.
void BaseCopier::ConnectRelationships() {
  const auto find = [&](std::uint32_t old_page) {
    return std::ranges::find_if(tables_, [&](const auto& table) { return table->from.def().page == old_page; });
  };
  for (const auto& table : tables_) {
    std::erase_if(table->to.logical_indexes, [&](const LogicalIndex& index) {
      if (index.relation.side == 0) return false;
      const auto other = find(index.relation.other_table);
      return other == tables_.end() || std::ranges::find((*other)->to.logical_indexes, index.relation.other_index,
                                                         &LogicalIndex::number) == (*other)->to.logical_indexes.end();
    });
    DropUnusedIndexes(table->to);
  }
  for (const auto& table : tables_)
    for (LogicalIndex& index : table->to.logical_indexes)
      if (index.relation.side != 0) index.relation.other_table = new_pages_.at(index.relation.other_table);
}

// Objects that are tables are known by the page of their definition, which is another one now.
void BaseCopier::CopySystemRows(const SystemTable& table) {
  const Table from = from_.OpenTable(table.name), to = to_.OpenTableAt(table.page);
  if (!HaveSameRows(from.def(), to.def()))
    throw FormatError("Системная таблица базы устроена необычно: такую базу сжать нельзя"_ru, from.def().page);
  const Column* const id = to.def().FindColumn(table.page == kCatalogPage ? "Id" : "ObjectId");
  RowCopier copier(transaction_, to.def());
  for (TableCursor cursor = from.Scan(); cursor.Next(); Advance()) {
    const Row& row = cursor.row();
    const auto moved = id == nullptr ? new_pages_.end() : new_pages_.find(static_cast<std::uint32_t>(row.Int(*id)));
    if (moved == new_pages_.end())
      copier.Copy(row);
    else
      copier.Copy(row, Assignment{id, static_cast<std::int32_t>(moved->second)});
  }
}

void BaseCopier::CopyTableRows(const CopiedTable& table) {
  RowCopier copier(transaction_, table.to);
  VisitRows(table.from, [&](const Row& row) {
    copier.Copy(row);
    Advance();
  });
  if (const std::int32_t last = LastAutonumber(from_.pages(), table.from.def()); last != 0)
    SetLastAutonumber(transaction_, table.to, last);
}

void BaseCopier::Advance() {
  if (++result_.rows % kRowsBetweenReports != 0) return;
  constexpr std::uint64_t kNearlyDone = 99;
  const std::uint64_t percent = 100 * result_.rows / std::max<std::uint64_t>(expected_rows_, 1);
  if (!progress_.Advance(static_cast<int>(std::min(percent, kNearlyDone)))) throw Stopped{};
}

}  // namespace jet
