#include "jet/database.h"

#include <utility>

#include "base/cat.h"
#include "base/cp1251.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "jet/table_def_codec.h"

namespace jet {

namespace {

// Who only reads goes through a base once: more would leave the processor's own cache.
constexpr std::size_t kReadingCacheBytes = 8u << 20;

}  // namespace

Database Database::Open(FileSystem& files, const std::string& path, Access access) {
  try {
    StoreOptions options;
    if (access == Access::kRead) options.cache_bytes = kReadingCacheBytes;
    return Database(PageStore::Open(files, path, access, options));
  } catch (const FileError& error) {
    if (error.number() != error_number::kFileNotFound) throw;
    throw FileError(error_number::kBaseNotFound, Cat("Файл базы не найден: "_ru, cp1251::FromUtf8(path)));
  }
}

Database Database::OpenFile(std::unique_ptr<File> file) {
  return Database(std::make_unique<PageStore>(std::move(file)));
}

void Database::DropOutdated() {
  if (generation_ == store_->generation()) return;
  generation_ = store_->generation();
  ForgetCatalog();
}

void Database::ForgetCatalog() {
  catalog_.reset();
  properties_.clear();
  for (auto& [page, def] : definitions_) outdated_.push_back(std::move(def));
  definitions_.clear();
}

const Catalog& Database::catalog() {
  const PageStore::Reading reading(*store_);
  if (!catalog_) catalog_ = ReadCatalog(OpenTableAt(kCatalogPage));
  return *catalog_;
}

std::vector<QueryRow> Database::QueryRows(std::int32_t id) { return ReadQueryRows(OpenTable("MSysQueries"), id); }

Table Database::OpenTable(std::string_view name) {
  const CatalogTable* const found = catalog().FindTable(name);
  if (found == nullptr) throw SqlError(error_number::kUnknownTable, Cat("В базе нет таблицы "_ru, name));
  return OpenTableAt(found->definition);
}

Table Database::OpenTableAt(std::uint32_t page) {
  const PageStore::Reading reading(*store_);
  std::unique_ptr<TableDef>& def = definitions_[page];
  if (!def) def = std::make_unique<TableDef>(ReadTableDef(pages(), page));
  return {pages(), *def};
}

const TableProperties& Database::PropertiesOf(const Table& table) {
  const PageStore::Reading reading(*store_);
  const std::uint32_t page = table.def().page;
  const auto known = properties_.find(page);
  if (known != properties_.end()) return known->second;
  return properties_[page] = ReadProperties(version(), OpenTableAt(kCatalogPage), page);
}

}  // namespace jet
