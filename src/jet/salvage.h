#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "base/file.h"
#include "base/progress.h"
#include "jet/catalog.h"
#include "jet/header.h"
#include "jet/page_file.h"
#include "jet/table_def.h"

namespace jet {

/// A damaged base, open for reading what is left of it. Nothing is ever written, beside it neither; while it
/// lives no other program changes the base. Usage maps and indexes are not believed: whatever belongs to a table
/// says so itself.
class SalvagedBase {
 public:
  /// What the file holds of a page behind the last whole one is left out.
  /// @throws FileError, 3045 when a commit of another program does not end; Error 3343 like ReadHeader, when the
  ///         pages do not tell either what kind of base it is, or it is under a password; Error 75 when a transaction
  ///         by halves waits for its journal: whoever opens the base undoes it
  SalvagedBase(FileSystem& files, const std::string& path);

  const Header& header() const { return header_; }
  /// Otherwise it is damaged; only the version is true then, and a Russian code page is taken for granted.
  bool knows_header() const { return knows_header_; }
  const PageFile& pages() const { return *pages_; }
  /// Does the file end within a page?
  bool ends_within_page() const { return ends_within_page_; }

  /// What can be read of it: perhaps nothing.
  Catalog ReadCatalog() const;
  /// None when no definition begins there that can be read.
  std::optional<TableDef> ReadDefinition(std::uint32_t page) const;
  /// The first one in the file that fits, whether the catalog knows it or not; none when the user stops the search.
  std::optional<TableDef> FindDefinition(const std::function<bool(const TableDef&)>& fits, Progress& progress) const;

 private:
  void FindHeader(FileSystem& files, const std::string& path, const File& file);
  Catalog ReadCatalogRows(const TableDef& objects) const;

  Header header_;
  bool knows_header_ = true;
  bool ends_within_page_ = false;
  std::unique_ptr<PageFile> pages_;
};

}  // namespace jet
