#include "base/file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <utility>

#include "base/cat.h"
#include "base/checked.h"
#include "base/cp1251.h"
#include "base/error.h"
#include "base/ru_literal.h"

namespace {

struct Reason {
  int number;
  std::string_view text;
};

Reason ReasonOf(int code) {
  switch (code) {
    case ENOENT: return {error_number::kFileNotFound, "файл не найден"_ru};
    case ENOTDIR: return {error_number::kFolderNotFound, "папка не найдена"_ru};
    case EISDIR: return {error_number::kNoAccess, "это папка, а не файл"_ru};
    case EACCES:
    case EPERM: return {error_number::kNoAccess, "нет прав на доступ"_ru};
    case EROFS: return {error_number::kNoAccess, "диск доступен только для чтения"_ru};
    case EEXIST: return {error_number::kNoAccess, "такой файл уже есть"_ru};
    case ENOSPC:
    case EDQUOT: return {error_number::kNoAccess, "на диске нет места"_ru};
    case EFBIG: return {error_number::kNoAccess, "файл стал слишком большим для этого диска"_ru};
    case EMFILE:
    case ENFILE: return {error_number::kNoAccess, "открыто слишком много файлов"_ru};
    case EIO: return {error_number::kNoAccess, "ошибка чтения или записи диска"_ru};
    default: return {error_number::kNoAccess, ""};
  }
}

[[noreturn]] void ThrowFile(std::string_view what, const std::string& path, int code) {
  const Reason reason = ReasonOf(code);
  const std::string why = reason.text.empty() ? Cat("ошибка системы "_ru, code) : std::string(reason.text);
  throw FileError(reason.number, Cat(what, " "_ru, cp1251::FromUtf8(path), ": "_ru, why));
}

[[noreturn]] void ThrowShort(const std::string& path) {
  throw FileError(error_number::kNoAccess, Cat("Файл "_ru, cp1251::FromUtf8(path), " короче, чем должен быть"_ru));
}

class DiskFile : public File {
 public:
  DiskFile(int descriptor, std::string path) : descriptor_(descriptor), path_(std::move(path)) {}
  ~DiskFile() override { ::close(descriptor_); }
  DiskFile(const DiskFile&) = delete;
  DiskFile& operator=(const DiskFile&) = delete;

  std::uint64_t Size() const override {
    struct stat info {};
    if (::fstat(descriptor_, &info) != 0) ThrowFile("Не удалось прочитать"_ru, path_, errno);
    return static_cast<std::uint64_t>(info.st_size);
  }

  void ReadAt(std::uint64_t offset, MutableBytes to) const override {
    while (!to.empty()) {
      const ssize_t count = ::pread(descriptor_, to.data(), to.size(), CheckedCast<off_t>(offset));
      if (count < 0 && errno == EINTR) continue;
      if (count < 0) ThrowFile("Не удалось прочитать"_ru, path_, errno);
      if (count == 0) ThrowShort(path_);
      to = to.subspan(static_cast<std::size_t>(count));
      offset += static_cast<std::uint64_t>(count);
    }
  }

  void WriteAt(std::uint64_t offset, Bytes from) override {
    while (!from.empty()) {
      const ssize_t count = ::pwrite(descriptor_, from.data(), from.size(), CheckedCast<off_t>(offset));
      if (count < 0 && errno == EINTR) continue;
      if (count < 0) ThrowFile("Не удалось записать"_ru, path_, errno);
      from = from.subspan(static_cast<std::size_t>(count));
      offset += static_cast<std::uint64_t>(count);
    }
  }

  void Sync() override {
    if (::fdatasync(descriptor_) != 0) ThrowFile("Не удалось записать"_ru, path_, errno);
  }

  void Truncate(std::uint64_t size) override {
    if (::ftruncate(descriptor_, CheckedCast<off_t>(size)) != 0) ThrowFile("Не удалось записать"_ru, path_, errno);
  }

  // The lock belongs to this open file, not to the program as with F_SETLK: closing another
  // descriptor of the same file does not lose it.
  bool TryLock(LockRange range, LockKind kind) override {
    struct flock lock = FlockOf(range, kind == LockKind::kShared ? F_RDLCK : F_WRLCK);
    if (::fcntl(descriptor_, F_OFD_SETLK, &lock) == 0) return true;
    if (errno == EAGAIN || errno == EACCES) return false;
    // A file system without locks cannot have a writer either: reading is safe.
    if (kind == LockKind::kShared && (errno == ENOLCK || errno == EOPNOTSUPP || errno == ENOSYS)) return true;
    ThrowFile("Не удалось занять"_ru, path_, errno);
  }

  void Unlock(LockRange range) noexcept override {
    struct flock lock = FlockOf(range, F_UNLCK);
    ::fcntl(descriptor_, F_OFD_SETLK, &lock);
  }

  bool IsLocked(LockRange range) const override {
    struct flock lock = FlockOf(range, F_WRLCK);
    return ::fcntl(descriptor_, F_OFD_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
  }

 private:
  static struct flock FlockOf(LockRange range, short type) {
    struct flock lock {};  // the process must be 0 for locks of open files
    lock.l_type = type;
    lock.l_whence = SEEK_SET;
    lock.l_start = static_cast<off_t>(range.first);
    lock.l_len = static_cast<off_t>(range.count);
    return lock;
  }

  int descriptor_;
  std::string path_;
};

int FlagsOf(OpenMode mode) {
  switch (mode) {
    case OpenMode::kRead: return O_RDONLY;
    case OpenMode::kReadWrite: return O_RDWR;
    case OpenMode::kCreate: return O_RDWR | O_CREAT | O_EXCL;
  }
  return O_RDONLY;
}

std::string FolderOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

}  // namespace

std::unique_ptr<File> DiskFileSystem::Open(const std::string& path, OpenMode mode) {
  constexpr mode_t kPermissions = 0666;
  // O_NONBLOCK: opening a pipe must not hang the program; it means nothing for plain files.
  const int descriptor = ::open(path.c_str(), FlagsOf(mode) | O_CLOEXEC | O_NONBLOCK, kPermissions);
  if (descriptor < 0) ThrowFile("Не удалось открыть"_ru, path, errno);
  auto file = std::make_unique<DiskFile>(descriptor, path);
  struct stat info {};
  if (::fstat(descriptor, &info) != 0) ThrowFile("Не удалось открыть"_ru, path, errno);
  if (S_ISDIR(info.st_mode)) ThrowFile("Не удалось открыть"_ru, path, EISDIR);
  if (!S_ISREG(info.st_mode))
    throw FileError(error_number::kNoAccess, Cat("Не удалось открыть "_ru, cp1251::FromUtf8(path), ": это не файл"_ru));
  return file;
}

bool DiskFileSystem::Exists(const std::string& path) const {
  struct stat info {};
  return ::stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode);
}

void DiskFileSystem::Remove(const std::string& path) {
  if (::unlink(path.c_str()) != 0) ThrowFile("Не удалось удалить"_ru, path, errno);
}

void DiskFileSystem::Rename(const std::string& from, const std::string& to) {
  if (::rename(from.c_str(), to.c_str()) != 0) ThrowFile("Не удалось переименовать"_ru, from, errno);
}

void DiskFileSystem::SyncFolderOf(const std::string& path) {
  const std::string folder = FolderOf(path);
  const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor < 0) ThrowFile("Не удалось открыть папку"_ru, folder, errno);
  const int result = ::fsync(descriptor);
  const int code = errno;
  ::close(descriptor);
  // Some file systems cannot sync a folder and say so; their renames are as durable as they get.
  if (result != 0 && code != EINVAL && code != EROFS) ThrowFile("Не удалось записать папку"_ru, folder, code);
}

std::string DiskFileSystem::RealPath(const std::string& path) const {
  const std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.c_str(), nullptr), &std::free);
  return real == nullptr ? path : real.get();
}

std::optional<FileStamp> FileSystem::Stamp(const std::string&) const { return std::nullopt; }

std::optional<FileStamp> DiskFileSystem::Stamp(const std::string& path) const {
  constexpr std::int64_t kSecond = 1'000'000'000, kCoarsestClock = 2 * kSecond;  // that of memory cards
  const auto nanoseconds = [](const timespec& time) { return std::int64_t{time.tv_sec} * kSecond + time.tv_nsec; };
  struct stat info {};
  timespec now{};
  if (::stat(path.c_str(), &info) != 0 || ::clock_gettime(CLOCK_REALTIME, &now) != 0) return std::nullopt;
  const FileStamp stamp = {.device = info.st_dev,
                           .file = info.st_ino,
                           .size = static_cast<std::uint64_t>(info.st_size),
                           .written = nanoseconds(info.st_mtim),
                           .changed = nanoseconds(info.st_ctim)};
  const bool settled = nanoseconds(now) - std::max(stamp.written, stamp.changed) > kCoarsestClock;
  return settled ? std::optional(stamp) : std::nullopt;
}

void MemoryFile::ReadAt(std::uint64_t offset, MutableBytes to) const {
  if (offset > content_.size() || to.size() > content_.size() - offset) ThrowShort("");
  std::memcpy(to.data(), content_.data() + offset, to.size());
}

void MemoryFile::WriteAt(std::uint64_t offset, Bytes from) {
  const std::uint64_t end = offset + from.size();
  if (end > content_.size()) content_.resize(end);
  std::copy(from.begin(), from.end(),
            std::as_writable_bytes(std::span(content_)).begin() + static_cast<std::ptrdiff_t>(offset));
}

void MemoryFile::Truncate(std::uint64_t size) { content_.resize(size); }

std::string ReadWholeFile(FileSystem& files, const std::string& path, std::uint64_t limit) {
  const std::unique_ptr<File> file = files.Open(path, OpenMode::kRead);
  const std::uint64_t size = file->Size();
  if (size > limit)
    throw FileError(error_number::kNoAccess, Cat("Файл "_ru, cp1251::FromUtf8(path), " слишком велик"_ru));
  std::string content(size, '\0');
  file->ReadAt(0, std::as_writable_bytes(std::span(content)));
  return content;
}

void ReplaceWholeFile(FileSystem& files, const std::string& path, std::string_view content) {
  const std::string temporary = path + ".new";
  if (files.Exists(temporary)) files.Remove(temporary);  // left by a run that was cut off
  try {
    const std::unique_ptr<File> file = files.Open(temporary, OpenMode::kCreate);
    file->WriteAt(0, AsBytes(content));
    file->Sync();
    files.Rename(temporary, path);
  } catch (const FileError&) {
    if (files.Exists(temporary)) files.Remove(temporary);
    throw;
  }
  files.SyncFolderOf(path);
}
