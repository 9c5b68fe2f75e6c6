#include "jet/salvage.h"

#include <utility>

#include "base/error.h"
#include "base/ru_literal.h"
#include "jet/new_file.h"
#include "jet/page_store.h"
#include "jet/recovery.h"
#include "jet/salvage_cursor.h"
#include "jet/sharing.h"
#include "jet/table_def_codec.h"

namespace jet {
namespace {

constexpr std::size_t kCacheBytes = 8u << 20;  // it is gone through once

/// A file as far as it has whole pages.
class WholePages : public File {
 public:
  WholePages(std::unique_ptr<File> file, std::size_t page_size) : file_(std::move(file)), page_size_(page_size) {}

  std::uint64_t Size() const override { return file_->Size() / page_size_ * page_size_; }
  void ReadAt(std::uint64_t offset, MutableBytes to) const override { file_->ReadAt(offset, to); }
  void WriteAt(std::uint64_t, Bytes) override { ThrowReadOnly(); }
  void Sync() override { ThrowReadOnly(); }
  void Truncate(std::uint64_t) override { ThrowReadOnly(); }
  bool TryLock(LockRange range, LockKind kind) override { return file_->TryLock(range, kind); }
  void Unlock(LockRange range) noexcept override { file_->Unlock(range); }
  bool IsLocked(LockRange range) const override { return file_->IsLocked(range); }

 private:
  [[noreturn]] static void ThrowReadOnly() {
    throw FileError(error_number::kReadOnly, "База открыта только для чтения"_ru);
  }

  std::unique_ptr<File> file_;
  std::size_t page_size_;
};

void RequireFinished(FileSystem& files, const std::string& path, const File& base, const Layout& layout) {
  if (!IsLeftHalfDone(files, files.RealPath(path), base, layout)) return;
  throw Error(error_number::kNoAccess,
              "Запись в эту базу была прервана сбоем, рядом с ней лежит журнал. Сначала откройте базу: она вернётся в "
              "прежнее состояние. Если это не удаётся, скопируйте файл базы без журнала и спасите сообщения "
              "из копии."_ru);
}

std::optional<TableDef> DefinitionAt(const PageFile& pages, std::uint32_t page) try {
  return ReadTableDef(pages, page);
} catch (const Error&) {
  return std::nullopt;
}

/// Are the file's pages those of this version? Then its catalog is defined where it must be.
bool HasCatalog(FileSystem& files, const std::string& path, const Layout& layout) try {
  const PageFile pages(std::make_unique<WholePages>(files.Open(path, OpenMode::kRead), layout.page_size), layout,
                       kCacheBytes);
  return DefinitionAt(pages, kCatalogPage).has_value();
} catch (const Error&) {
  return false;
}

/// What the pages tell about a base whose own header is damaged.
std::optional<Header> GuessHeader(FileSystem& files, const std::string& path) {
  for (const Version version : {Version::kJet3, Version::kJet4})
    if (HasCatalog(files, path, LayoutOf(version))) return NewHeader(version, SortOrder::kRussian);
  return std::nullopt;
}

// An object that cannot be named cannot be asked for.
void TakeIfReadable(CatalogReader& reader, const Row& row) {
  try {
    reader.Take(row);
  } catch (const Error&) {
    // The row is damaged; or the definition is, and says that a number is none.
  }
}

}  // namespace

SalvagedBase::SalvagedBase(FileSystem& files, const std::string& path) {
  std::unique_ptr<File> file = files.Open(path, OpenMode::kRead);
  FindHeader(files, path, *file);
  const Layout& layout = LayoutOf(header_.version);
  if (!WaitForLock(*file, kGateLock, LockKind::kShared, StoreOptions{}.patience)) ThrowLocked();
  RequireFinished(files, path, *file, layout);
  ends_within_page_ = file->Size() % layout.page_size != 0;
  pages_ =
      std::make_unique<PageFile>(std::make_unique<WholePages>(std::move(file), layout.page_size), layout, kCacheBytes);
}

// Nobody takes a password off by damaging the file.
void SalvagedBase::FindHeader(FileSystem& files, const std::string& path, const File& file) try {
  header_ = ReadHeader(file);
} catch (const Error&) {
  const std::optional<Header> guessed = IsUnderTypedPassword(file) ? std::nullopt : GuessHeader(files, path);
  if (!guessed) throw;
  header_ = *guessed;
  knows_header_ = false;
}

Catalog SalvagedBase::ReadCatalog() const {
  const std::optional<TableDef> objects = ReadDefinition(kCatalogPage);
  if (!objects) return {};
  try {
    Catalog whole = jet::ReadCatalog({*pages_, *objects});
    if (!whole.user_tables.empty()) return whole;
  } catch (const Error&) {
    // The long way then.
  }
  return ReadCatalogRows(*objects);
}

Catalog SalvagedBase::ReadCatalogRows(const TableDef& objects) const try {
  CatalogReader reader(objects);
  SalvageCursor cursor(*pages_, objects);
  while (cursor.NextPage())
    while (cursor.NextRow()) TakeIfReadable(reader, cursor.row());
  return std::move(reader).Take();
} catch (const Error&) {
  return {};
}

std::optional<TableDef> SalvagedBase::ReadDefinition(std::uint32_t page) const { return DefinitionAt(*pages_, page); }

// A page in the middle of a definition does not read as the beginning of one: it has no counts there.
std::optional<TableDef> SalvagedBase::FindDefinition(const std::function<bool(const TableDef&)>& fits,
                                                     Progress& progress) const {
  for (std::uint32_t page = kCatalogPage; page < pages_->page_count(); ++page) {
    if (std::optional<TableDef> found = ReadDefinition(page); found && fits(*found)) return found;
    if (!progress.Advance(0)) return std::nullopt;
  }
  return std::nullopt;
}

}  // namespace jet
