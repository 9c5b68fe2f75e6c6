#include "jet/base_check.h"

#include <map>
#include <optional>
#include <vector>

#include "base/cat.h"
#include "base/cp1251.h"
#include "base/error.h"
#include "jet/column_codec.h"
#include "jet/data_page.h"
#include "jet/index_key.h"
#include "jet/index_page.h"
#include "jet/usage_map.h"

namespace jet {
namespace {

class Checker {
 public:
  explicit Checker(Database& base) : base_(base), pages_(base.pages()) {}

  std::set<std::string> Run() {
    Own(0, "header");
    Own(1, "global map");
    for (const auto& tables : {base_.Tables(), base_.SystemTables()})
      for (const CatalogTable& listed : tables) {
        table_name_ = cp1251::ToUtf8(listed.name);
        try {
          CheckTable(base_.OpenTableAt(listed.definition));
        } catch (const Error& error) {
          Fault(cp1251::ToUtf8(error.what()));
        }
      }
    CheckGlobalMap();
    return std::move(faults_);
  }

 private:
  template <typename... Pieces>
  void Fault(const Pieces&... pieces) {
    faults_.insert(Cat(table_name_, ": ", pieces...));
  }
  void Own(std::uint32_t page, const std::string& what) {
    const auto [owner, added] = owners_.try_emplace(page, table_name_ + " " + what);
    if (!added) Fault("page ", page, " is ", what, " and ", owner->second);
  }

  std::set<std::uint32_t> PagesOf(RowId map) {
    std::set<std::uint32_t> set;
    if (map.page == 0) return set;
    UsageMap usage(pages_, map);
    for (auto page = usage.NextFrom(0); page; page = usage.NextFrom(*page + 1)) set.insert(*page);
    if (map.page != 1 && maps_.insert(map.page).second) Own(map.page, "maps");
    const Page page = pages_.Read(map.page);
    const Bytes row = DataPage(pages_.layout(), page).Row(map.slot);
    for (std::size_t at = kReferencesAt; LoadU8(row, 0) == kReferenceMap && at + 4 <= row.size(); at += 4)
      if (LoadU32(row, at) != 0 && bitmaps_.insert({map, at}).second) Own(LoadU32(row, at), "bitmap");
    return set;
  }

  // A set of pages with the subset that has room.
  std::set<std::uint32_t> OwnSet(RowId owned_map, RowId free_map, std::uint32_t owner, const std::string& what) {
    const std::set<std::uint32_t> owned = PagesOf(owned_map);
    for (const std::uint32_t number : owned) {
      Own(number, what);
      const Page page = pages_.Read(number);
      const DataPage rows(pages_.layout(), page, owner);
      if (rows.free() != page.U16(kFreeSpaceAt)) Fault("free field of page ", number);
    }
    for (const std::uint32_t page : PagesOf(free_map))
      if (!owned.contains(page)) Fault(what, ": page ", page, " has room but is not owned");
    return owned;
  }

  void CheckTable(const Table& table) {
    const TableDef& def = table.def();
    for (std::uint32_t page = def.page; page != 0; page = pages_.Read(page).U32(kNextDefinitionAt))
      Own(page, "definition");
    CheckMoves(OwnSet(def.owned_map, def.free_map, def.page, "data"), def);
    std::set<RowId> live;
    std::map<const Column*, std::set<RowId>> parts;
    for (TableCursor cursor = table.Scan(); cursor.Next();) {
      live.insert(cursor.row().id());
      for (const Column& column : def.columns) {
        cursor.row().Get(column);
        if (IsLongValue(column.type)) CollectParts(cursor.row().Stored(column), parts[&column]);
      }
    }
    for (const Column& column : def.columns)
      if (IsLongValue(column.type)) CheckLongValues(column, parts[&column]);
    for (std::size_t i = 0; i < def.real_indexes.size(); ++i) CheckIndex(table, i, live);
  }

  void CheckMoves(const std::set<std::uint32_t>& owned, const TableDef& def) {
    std::multiset<RowId> targets, hidden;
    for (const std::uint32_t number : owned) {
      const Page page = pages_.Read(number);
      const DataPage rows(pages_.layout(), page, def.page);
      for (std::size_t slot = 0; slot < rows.slots(); ++slot) {
        if (rows.Flags(slot) == kRowIsPointer) targets.insert(LoadRowPointer(rows.Row(slot), 0));
        if (rows.Flags(slot) == kRowIsHidden) hidden.insert({number, static_cast<std::uint8_t>(slot)});
      }
    }
    if (targets != hidden) Fault("pointers and moved rows differ");
  }

  void CollectParts(Bytes stored, std::set<RowId>& parts) {
    if (stored.empty()) return;
    const std::uint32_t head = LoadU32(stored, 0), kind = head & ~kLongValueLength;
    if (kind == kLongValueInline) return;
    std::size_t length = head & kLongValueLength;
    for (RowId where = LoadRowPointer(stored, kLongValueRowAt); length > 0;) {
      if (!parts.insert(where).second) Fault("a long value is used twice: page ", where.page);
      if (kind == kLongValueSingle) return;
      const Page page = pages_.Read(where.page);
      const Bytes part = DataPage(pages_.layout(), page, kLongValueOwner).Row(where.slot);
      length -= part.size() - kRowPointerSize;
      where = LoadRowPointer(part, 0);
    }
  }

  void CheckLongValues(const Column& column, const std::set<RowId>& parts) {
    std::set<std::uint32_t> used;
    for (const RowId part : parts) used.insert(part.page);
    const auto owned = OwnSet(column.owned_map, column.free_map, kLongValueOwner, "long values");
    if (owned != used) Fault(cp1251::ToUtf8(column.name), ": pages of long values and those that rows name differ");
    for (const std::uint32_t number : owned) {
      const Page page = pages_.Read(number);
      const DataPage rows(pages_.layout(), page);
      for (std::size_t slot = 0; slot < rows.slots(); ++slot)
        if ((rows.Flags(slot) == 0) != parts.contains({number, static_cast<std::uint8_t>(slot)}))
          Fault("long value at ", number, "/", slot, " is lost");
    }
  }

  std::string CheckTree(const TableDef& def, std::uint32_t number, std::set<std::uint32_t>& seen) {
    seen.insert(number);
    IndexEntries entries(pages_, pages_.Read(number), def.page);
    std::string greatest;
    while (entries.Next()) {
      greatest = AsText(entries.key_and_row());
      if (!entries.leaf() && CheckTree(def, entries.child(), seen) != greatest) Fault("node ", number);
    }
    return entries.leaf() || entries.tail() == 0 ? greatest : CheckTree(def, entries.tail(), seen);
  }

  void CheckIndex(const Table& table, std::size_t i, const std::set<RowId>& live) {
    const TableDef& def = table.def();
    const RealIndex& index = def.real_indexes[i];
    std::set<std::uint32_t> reached;
    CheckTree(def, index.root, reached);
    if (PagesOf(index.usage_map) != reached) Fault("index ", i, ": map and tree differ");
    for (const std::uint32_t page : reached) Own(page, "index");

    std::set<RowId> listed;
    std::string previous;
    for (IndexCursor cursor = table.Walk(index); cursor.Next();) {
      const std::string key(AsText(cursor.key()));
      const RowId id = cursor.id();
      if (!live.contains(id) || !listed.insert(id).second) {
        Fault("index ", i, " lists a row that is not there");
        continue;
      }
      const Row row = table.Read(id);
      if (KeyOfRow(base_.version(), def, index, row).value_or(key) != key) Fault("index ", i, ": wrong key");
      if (key < previous) Fault("index ", i, ": order");
      if (index.unique && key == previous && !AllKeyColumnsNull(def, index, row)) Fault("index ", i, ": twice");
      previous = key;
    }
    for (const RowId id : live)
      if (!listed.contains(id) && !(index.ignore_nulls && AllKeyColumnsNull(def, index, table.Read(id))))
        Fault("index ", i, " lacks a row");
  }

  void CheckGlobalMap() {
    table_name_ = "file";
    const std::set<std::uint32_t> free = PagesOf({1, 0});
    for (std::uint32_t page = 0; page < pages_.page_count(); ++page) {
      if (free.contains(page) && owners_.contains(page)) Fault("page ", page, " is free and ", owners_[page]);
      if (!free.contains(page) && !owners_.contains(page)) Fault("page ", page, " is lost");
    }
  }

  Database& base_;
  const PageFile& pages_;
  std::string table_name_ = "file";
  std::map<std::uint32_t, std::string> owners_;
  std::set<std::uint32_t> maps_;
  std::set<std::pair<RowId, std::size_t>> bitmaps_;
  std::set<std::string> faults_;
};

}  // namespace

std::set<std::string> FaultsOf(Database& base) { return Checker(base).Run(); }

}  // namespace jet
