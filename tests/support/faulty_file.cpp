#include "support/faulty_file.h"

#include <algorithm>
#include <random>
#include <utility>

#include "base/error.h"
#include "base/ru_literal.h"

namespace {

constexpr std::size_t kSector = 512;

void Apply(const FaultyInode::Change& change, std::string& content) {
  if (change.bytes.empty()) return content.resize(change.offset);
  if (content.size() < change.offset + change.bytes.size()) content.resize(change.offset + change.bytes.size());
  content.replace(change.offset, change.bytes.size(), change.bytes);
}

// A write as the sectors that it touches: a power cut tears writes there.
std::vector<FaultyInode::Change> Sectors(const FaultyInode::Change& change) {
  if (change.bytes.empty()) return {change};
  std::vector<FaultyInode::Change> sectors;
  for (std::size_t at = 0; at < change.bytes.size();) {
    const std::size_t size = std::min<std::size_t>(kSector - (change.offset + at) % kSector, change.bytes.size() - at);
    sectors.push_back({change.offset + at, change.bytes.substr(at, size), change.state});
    at += size;
  }
  return sectors;
}

bool Overlap(LockRange a, LockRange b) {
  const auto end = [](LockRange range) { return range.count == 0 ? ~std::uint64_t{0} : range.first + range.count; };
  return a.first < end(b) && b.first < end(a);
}

}  // namespace

// One open file: what it does goes through the file system's faults.
class FaultyFile : public File {
 public:
  FaultyFile(FaultyFileSystem& files, std::string name, std::shared_ptr<FaultyInode> inode, bool writable)
      : files_(files), name_(std::move(name)), inode_(std::move(inode)), writable_(writable) {}
  ~FaultyFile() override { Unlock({}); }
  FaultyFile(const FaultyFile&) = delete;
  FaultyFile& operator=(const FaultyFile&) = delete;

  std::uint64_t Size() const override { return inode_->now.size(); }

  void ReadAt(std::uint64_t offset, MutableBytes to) const override {
    if (files_.dead_) files_.Throw();
    const Bytes now = AsBytes(inode_->now);
    if (offset > now.size() || to.size() > now.size() - offset)
      throw FileError(error_number::kNoAccess, "файл короче, чем должен быть"_ru);
    std::ranges::copy(now.subspan(offset, to.size()), to.begin());
  }

  void WriteAt(std::uint64_t offset, Bytes from) override {
    const std::string bytes(AsText(from));
    if (bytes.empty()) return;
    Change("write " + name_, {offset, bytes}, bytes.substr(0, bytes.size() / 2));
  }

  void Truncate(std::uint64_t size) override { Change("truncate " + name_, {size, ""}, ""); }

  void Sync() override {
    const auto fault = files_.Step("sync " + name_);
    if (fault == FaultyFileSystem::Fault::kPowerCut) files_.Throw();
    for (FaultyInode::Change& change : inode_->changes)
      if (change.state == FaultyInode::Change::kPending)
        change.state = fault ? FaultyInode::Change::kLost : FaultyInode::Change::kDurable;
    if (fault) files_.Throw();
    Settle();
  }

  bool TryLock(LockRange range, LockKind kind) override {
    for (const auto& lock : inode_->locks) {
      const bool in_the_way = kind == LockKind::kExclusive || lock.kind == LockKind::kExclusive;
      if (lock.owner != this && in_the_way && Overlap(lock.range, range)) return false;
    }
    Unlock(range);
    inode_->locks.push_back({this, range, kind});
    return true;
  }
  void Unlock(LockRange range) noexcept override {
    std::erase_if(inode_->locks, [&](const auto& lock) { return lock.owner == this && Overlap(lock.range, range); });
  }
  bool IsLocked(LockRange range) const override {
    return std::ranges::any_of(inode_->locks,
                               [&](const auto& lock) { return lock.owner != this && Overlap(lock.range, range); });
  }

 private:
  void Change(std::string operation, const FaultyInode::Change& whole, const std::string& half) {
    if (!writable_ || files_.read_only_) files_.Throw();
    const auto fault = files_.Step(std::move(operation));
    if (!fault || fault == FaultyFileSystem::Fault::kPowerCut) Store(whole);
    if (fault == FaultyFileSystem::Fault::kTear && !half.empty()) Store({whole.offset, half});
    if (fault) files_.Throw();
  }

  void Store(const FaultyInode::Change& change) {
    Apply(change, inode_->now);
    inode_->changes.push_back(change);
  }

  // What is durable and stands before all that is not goes into one image.
  void Settle() {
    auto& changes = inode_->changes;
    const auto first =
        std::ranges::find_if(changes, [](const auto& c) { return c.state != FaultyInode::Change::kDurable; });
    for (auto at = changes.begin(); at != first; ++at) Apply(*at, inode_->durable);
    changes.erase(changes.begin(), first);
  }

  FaultyFileSystem& files_;
  std::string name_;
  std::shared_ptr<FaultyInode> inode_;
  bool writable_;
};

FaultyFileSystem::FaultyFileSystem(const std::string& path, std::string content) {
  SetContent(path, std::move(content));
}

void FaultyFileSystem::FailAt(std::uint64_t operation, Fault fault, Lasting lasting) {
  failing_ = Failing{operations() + operation, fault, lasting};
}

std::optional<FaultyFileSystem::Fault> FaultyFileSystem::Step(std::string name) {
  if (dead_) Throw();
  log_.push_back(std::move(name));
  if (!failing_ || log_.size() < failing_->operation) return std::nullopt;
  if (log_.size() > failing_->operation && failing_->lasting == Lasting::kOnce) return std::nullopt;
  dead_ = failing_->fault == Fault::kPowerCut;
  return failing_->fault;
}

void FaultyFileSystem::Throw() const { throw FileError(error_number::kNoAccess, "диск отказал"_ru); }

std::unique_ptr<FaultyFileSystem> FaultyFileSystem::AfterPowerCut(Unsynced unsynced, std::uint64_t seed) const {
  std::mt19937_64 random(seed);
  const auto survives = [&] {
    return unsynced == Unsynced::kKept || (unsynced == Unsynced::kMixed && random() % 2 == 0);
  };
  Folder folder = durable_;
  for (const FolderChange& change : changes_)
    if (survives()) Apply(change, folder);
  auto after = std::make_unique<FaultyFileSystem>();
  for (const auto& [path, inode] : folder) {
    std::string content = inode->durable;
    for (const FaultyInode::Change& change : inode->changes)
      for (const FaultyInode::Change& sector : Sectors(change))
        if (change.state == FaultyInode::Change::kDurable || survives()) ::Apply(sector, content);
    after->SetContent(path, std::move(content));
  }
  return after;
}

std::string FaultyFileSystem::Content(const std::string& path) const {
  const auto found = now_.find(path);
  return found == now_.end() ? std::string() : found->second->now;
}

void FaultyFileSystem::SetContent(const std::string& path, std::string content) {
  auto inode = std::make_shared<FaultyInode>();
  inode->now = inode->durable = std::move(content);
  now_[path] = durable_[path] = std::move(inode);
}

std::unique_ptr<File> FaultyFileSystem::Open(const std::string& path, OpenMode mode) {
  if (dead_) Throw();
  const auto found = now_.find(path);
  if (mode == OpenMode::kCreate) {
    if (found != now_.end() || read_only_) Throw();
    const auto fault = Step("create " + path);
    if (fault && fault != Fault::kPowerCut) Throw();
    Record({"", path, std::make_shared<FaultyInode>()});
    if (fault) Throw();
    return std::make_unique<FaultyFile>(*this, path, now_.at(path), true);
  }
  if (found == now_.end()) throw FileError(error_number::kFileNotFound, "файл не найден"_ru);
  if (read_only_ && mode == OpenMode::kReadWrite) Throw();
  return std::make_unique<FaultyFile>(*this, path, found->second, mode == OpenMode::kReadWrite);
}

bool FaultyFileSystem::Exists(const std::string& path) const { return now_.contains(path); }

void FaultyFileSystem::Remove(const std::string& path) {
  const auto fault = Step("remove " + path);
  if (fault && fault != Fault::kPowerCut) Throw();
  if (read_only_) Throw();
  if (!now_.contains(path)) throw FileError(error_number::kFileNotFound, "файл не найден"_ru);
  Record({path, "", now_.at(path)});
  if (fault) Throw();
}

void FaultyFileSystem::Rename(const std::string& from, const std::string& to) {
  const auto fault = Step("rename " + from);
  if (fault && fault != Fault::kPowerCut) Throw();
  if (read_only_) Throw();
  if (!now_.contains(from)) throw FileError(error_number::kFileNotFound, "файл не найден"_ru);
  Record({from, to, now_.at(from)});
  if (fault) Throw();
}

void FaultyFileSystem::SyncFolderOf(const std::string&) {
  if (Step("sync folder")) Throw();
  durable_ = now_;
  changes_.clear();
}

// A change whose file never came to be is lost with it.
void FaultyFileSystem::Apply(const FolderChange& change, Folder& folder) {
  if (!change.from.empty()) {
    const auto found = folder.find(change.from);
    if (found == folder.end() || found->second != change.inode) return;
    folder.erase(found);
  }
  if (!change.to.empty()) folder[change.to] = change.inode;
}

void FaultyFileSystem::Record(FolderChange change) {
  Apply(change, now_);
  changes_.push_back(std::move(change));
}
