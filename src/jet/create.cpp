#include "jet/create.h"

#include <utility>

#include "base/cat.h"
#include "base/cp1251.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "jet/journal.h"
#include "jet/sharing.h"
#include "jet/system_tables.h"

namespace jet {
namespace {

void RequireNoFile(const FileSystem& files, const std::string& path) {
  if (files.Exists(path))
    throw FileError(error_number::kNoAccess, Cat("Файл "_ru, cp1251::FromUtf8(path), " уже есть"_ru));
}

void PutJournalAside(FileSystem& files, const std::string& base) {
  const std::string journal = JournalPath(base);
  if (files.Exists(journal)) files.Rename(journal, journal + kForeignJournal);
}

void RemoveQuietly(FileSystem& files, const std::string& name) noexcept try {
  if (files.Exists(name)) files.Remove(name);
} catch (const FileError&) {
  // A file that stays is in nobody's way: whoever makes this base again removes it.
}

}  // namespace

// A journal that a run before this one has left would pass for one of the new file: it goes first.
UnfinishedBase::UnfinishedBase(FileSystem& files, std::string path, const Header& header)
    : files_(files), path_(std::move(path)), temporary_(path_ + ".new") {
  RemoveUnused(files_, temporary_);
  RemoveUnused(files_, JournalPath(temporary_));
  const std::string image = NewFileImage(header);
  try {
    files_.Open(temporary_, OpenMode::kCreate)->WriteAt(0, AsBytes(image));
    base_ = std::make_unique<Database>(Database::Open(files_, temporary_, Access::kReadWrite));
    Transaction transaction(base_->store());
    BuildSystemTables(transaction, header);
    transaction.Commit();
  } catch (...) {
    base_.reset();
    RemoveQuietly(files_, temporary_);
    throw;
  }
}

UnfinishedBase::~UnfinishedBase() {
  base_.reset();
  RemoveQuietly(files_, temporary_);
  RemoveQuietly(files_, JournalPath(temporary_));
}

void UnfinishedBase::Publish() {
  base_.reset();
  PutJournalAside(files_, path_);
  files_.SyncFolderOf(path_);
  files_.Rename(temporary_, path_);
  files_.SyncFolderOf(path_);
}

// An empty file keeps the name until the base takes it, lest another program's file be lost.
void UnfinishedBase::PublishNew() {
  RequireNoFile(files_, path_);
  files_.Open(path_, OpenMode::kCreate);
  try {
    Publish();
  } catch (...) {
    if (files_.Exists(temporary_)) RemoveQuietly(files_, path_);
    throw;
  }
}

void CreateBase(FileSystem& files, const std::string& path, const NewBase& kind, OleDate now, const BaseDesign& fill) {
  BeginBase(files, path, kind, now, fill)->PublishNew();
}

std::unique_ptr<UnfinishedBase> BeginBase(FileSystem& files, const std::string& path, const NewBase& kind, OleDate now,
                                          const BaseDesign& fill) {
  RequireNoFile(files, path);
  const Header header = NewHeader(kind.version, kind.order);
  auto unfinished = std::make_unique<UnfinishedBase>(files, path, header);
  Transaction transaction(unfinished->base().store());
  ListSystemObjects(transaction, unfinished->base(), now);
  CatalogWriter catalog(transaction, unfinished->base(), now);
  fill(catalog, header);
  transaction.Commit();
  return unfinished;
}

}  // namespace jet
