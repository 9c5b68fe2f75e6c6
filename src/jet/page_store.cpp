#include "jet/page_store.h"

#include <utility>

#include "base/cat.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "jet/recovery.h"
#include "jet/sharing.h"

namespace jet {

std::unique_ptr<PageStore> PageStore::Open(FileSystem& files, const std::string& path, Access access,
                                           const StoreOptions& options) {
  const bool writes = access == Access::kReadWrite;
  std::unique_ptr<File> file = files.Open(path, writes ? OpenMode::kReadWrite : OpenMode::kRead);
  std::unique_ptr<PageStore> store(new PageStore(files, files.RealPath(path), options));
  store->header_ = ReadHeader(*file);
  if (writes)
    store->OpenForWriting(std::move(file));
  else
    store->OpenForReading(std::move(file));
  return store;
}

PageStore::PageStore(std::unique_ptr<File> file) : header_(ReadHeader(*file)) {
  pages_ = std::make_unique<PageFile>(std::move(file), LayoutOf(header_.version));
}

PageStore::PageStore(FileSystem& files, std::string path, const StoreOptions& options)
    : files_(&files), path_(std::move(path)), options_(options) {}

void PageStore::OpenForWriting(std::unique_ptr<File> file) {
  if (!BecomeWriter(*file, options_.patience)) ThrowLocked();
  // Compacting may have put another file in the place of the one just opened.
  if (!files_->Open(path_, OpenMode::kRead)->IsLocked(kWriterLock)) ThrowLocked();
  RefuseUsersOfOldEngine(*files_, path_);
  Recover(*files_, path_, *file, layout());
  file->Unlock(kGateLock);
  pages_ = std::make_unique<PageFile>(std::move(file), layout(), options_.cache_bytes);
  journal_ = std::make_unique<JournalWriter>(*files_, JournalPath(path_));
}

void PageStore::OpenForReading(std::unique_ptr<File> file) {
  EnterGate(*file);
  pages_ = std::make_unique<PageFile>(std::move(file), layout(), options_.cache_bytes);
  seen_ = ReadCommitMark();
  pages_->file().Unlock(kGateLock);
}

void PageStore::BeginReading() {
  if (is_shared_reader() && readings_ == 0) {
    File& file = pages_->file();
    EnterGate(file);
    try {
      Refresh();
    } catch (...) {
      file.Unlock(kGateLock);
      throw;
    }
  }
  ++readings_;
}

void PageStore::EndReading() noexcept {
  if (--readings_ == 0 && is_shared_reader()) pages_->file().Unlock(kGateLock);
}

void PageStore::EnterGate(File& file) const {
  for (;;) {
    if (!WaitForLock(file, kGateLock, LockKind::kShared, options_.patience)) ThrowLocked();
    try {
      if (!IsLeftHalfDone(*files_, path_, file, layout())) return;
    } catch (...) {
      file.Unlock(kGateLock);
      throw;
    }
    file.Unlock(kGateLock);
    RecoverForReader(*files_, path_, layout(), options_.patience);
  }
}

void PageStore::Refresh() {
  const CommitMark now = ReadCommitMark();
  if (now == seen_) return;
  pages_->Forget(now.pages);
  ++generation_;
  seen_ = now;
}

PageStore::CommitMark PageStore::ReadCommitMark() const {
  CommitMark mark;
  mark.pages = CountPages(pages_->file(), layout());
  pages_->file().ReadAt(layout().page_size - kCommitCountersSize, mark.counters);
  return mark;
}

void PageStore::BeginTransaction() {
  if (journal_ == nullptr) throw Error(error_number::kReadOnly, "База открыта только для чтения"_ru);
  if (in_transaction_)
    throw Error(error_number::kBadArgument, "Изменение базы уже идёт: начать внутри него ещё одно нельзя"_ru);
  pages_->Read(0);  // an Error when the store has given up
  in_transaction_ = true;
}

void PageStore::CloseGate() {
  if (gate_closed_) return;
  if (!WaitForLock(pages_->file(), kGateLock, LockKind::kExclusive, options_.patience))
    throw FileError(error_number::kLocked, "базу слишком долго читает другая программа"_ru);
  gate_closed_ = true;
}

void PageStore::OpenGate() noexcept {
  if (std::exchange(gate_closed_, false)) pages_->file().Unlock(kGateLock);
}

void PageStore::GiveUp() noexcept {
  pages_->Refuse("База осталась недописанной. Закройте её и откройте снова: она вернётся в прежнее состояние"_ru);
  pages_->Forget(pages_->page_count());
  pages_->file().Unlock(kWriterLock);  // before the gate: readers must not take us for a writer at work
}

}  // namespace jet
