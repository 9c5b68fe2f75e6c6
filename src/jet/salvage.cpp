#include "jet/salvage.h"

#include <utility>

#include "base/error.h"
#include "base/ru_literal.h"
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
              "прежнее состояние. Если это не удаётся, скопируйте файл базы без журнала и спасайте сообщения "
              "копии."_ru);
}

// An object that cannot be named cannot be asked for.
void TakeIfReadable(CatalogReader& reader, const Row& row) try { reader.Take(row); } catch (const FormatError&) {
} catch (const FileError&) {
}

}  // namespace

SalvagedBase::SalvagedBase(FileSystem& files, const std::string& path) {
  std::unique_ptr<File> file = files.Open(path, OpenMode::kRead);
  header_ = ReadHeader(*file);
  const Layout& layout = LayoutOf(header_.version);
  if (!WaitForLock(*file, kGateLock, LockKind::kShared, StoreOptions{}.patience)) ThrowLocked();
  RequireFinished(files, path, *file, layout);
  ends_within_page_ = file->Size() % layout.page_size != 0;
  pages_ =
      std::make_unique<PageFile>(std::make_unique<WholePages>(std::move(file), layout.page_size), layout, kCacheBytes);
}

Catalog SalvagedBase::ReadCatalog() const {
  const std::optional<TableDef> objects = ReadDefinition(kCatalogPage);
  if (!objects) return {};
  try {
    Catalog whole = jet::ReadCatalog({*pages_, *objects});
    if (!whole.user_tables.empty()) return whole;
  } catch (const FormatError&) {
    // The long way then.
  } catch (const FileError&) {
  }
  return ReadCatalogRows(*objects);
}

Catalog SalvagedBase::ReadCatalogRows(const TableDef& objects) const try {
  CatalogReader reader(objects);
  SalvageCursor cursor(*pages_, objects);
  while (cursor.NextPage())
    while (cursor.NextRow()) TakeIfReadable(reader, cursor.row());
  return std::move(reader.catalog());
} catch (const FormatError&) {
  return {};
}

std::optional<TableDef> SalvagedBase::ReadDefinition(std::uint32_t page) const try {
  return ReadTableDef(*pages_, page);
} catch (const FormatError&) {
  return std::nullopt;
} catch (const FileError&) {
  return std::nullopt;
}

// A page in the middle of a definition does not read as the beginning of one: it has no counts there.
std::optional<TableDef> SalvagedBase::FindDefinition(const std::function<bool(const TableDef&)>& fits) const {
  for (std::uint32_t page = kCatalogPage; page < pages_->page_count(); ++page)
    if (std::optional<TableDef> found = ReadDefinition(page); found && fits(*found)) return found;
  return std::nullopt;
}

}  // namespace jet
