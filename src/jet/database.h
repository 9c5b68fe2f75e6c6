#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/file.h"
#include "jet/catalog.h"
#include "jet/layout.h"
#include "jet/page_file.h"
#include "jet/page_store.h"
#include "jet/table.h"
#include "jet/table_properties.h"

namespace jet {

/// An open base. Tables, cursors and rows live no longer than it does. Not for several threads.
class Database {
 public:
  /// For writing it must be the only one; others may go on reading. What a crashed writer left half
  /// done is undone first, also for reading.
  /// @param files  outlives the base
  /// @throws FileError 3024 when there is no such file, 3045 when another program writes, FileError
  ///         when it cannot be opened, Error 3343 when it is no base of a kind that the engine reads
  static Database Open(FileSystem& files, const std::string& path, Access access);
  /// For reading a base that nobody else can see.
  static Database OpenFile(std::unique_ptr<File> file);

  Database(Database&&) = default;
  Database& operator=(Database&&) = default;

  /// Lives as long as a statement reads: nobody changes the base meanwhile, and what other programs
  /// changed before shows. Tables and catalog entries taken before may be out of date then: take them
  /// again. May be nested. @throws FileError 3045 when a commit of another program does not end
  class Reading {
   public:
    explicit Reading(Database& base) : reading_(*base.store_) { base.DropOutdated(); }

   private:
    PageStore::Reading reading_;
  };

  Version version() const { return store_->header().version; }
  std::uint16_t code_page() const { return store_->header().code_page; }  // as the header names it
  std::uint16_t collation() const { return store_->header().collation; }
  std::uint32_t page_count() const { return pages().page_count(); }

  /// The user's own tables in the order of the catalog.
  const std::vector<CatalogTable>& Tables() { return catalog().user_tables; }
  const std::vector<CatalogTable>& SystemTables() { return catalog().system_tables; }
  const std::vector<CatalogQuery>& Queries() { return catalog().queries; }
  /// The pieces of a saved query by attribute and order; none for an unknown id.
  std::vector<QueryRow> QueryRows(std::int32_t id);

  /// Letter case is ignored; system tables can be opened too. @throws Error 3078 when it is absent
  Table OpenTable(std::string_view name);
  /// @param page  where the table's definition begins. @throws FormatError when none does
  Table OpenTableAt(std::uint32_t page);

  /// To be called by whoever has changed the catalog, or undone such a change: what was read from it is
  /// out of date then, as with a Reading.
  void ForgetCatalog();

  /// What the base demands of the table's values. Lives like the base's Tables().
  const TableProperties& PropertiesOf(const Table& table);

  const PageFile& pages() const { return store_->pages(); }
  /// Where a Transaction begins.
  PageStore& store() { return *store_; }

 private:
  explicit Database(std::unique_ptr<PageStore> store) : store_(std::move(store)) {}
  const Catalog& catalog();
  void DropOutdated();

  std::unique_ptr<PageStore> store_;
  std::uint64_t generation_ = 0;                                    // of the store, when what follows was read
  std::map<std::uint32_t, std::unique_ptr<TableDef>> definitions_;  // by page, as far as read
  std::vector<std::unique_ptr<TableDef>> outdated_;                 // tables may still look at them
  std::map<std::uint32_t, TableProperties> properties_;             // likewise
  std::optional<Catalog> catalog_;
};

}  // namespace jet
