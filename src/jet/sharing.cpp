#include "jet/sharing.h"

#include <algorithm>
#include <thread>

#include "base/cat.h"
#include "base/cp1251.h"
#include "base/error.h"
#include "base/ru_literal.h"

namespace jet {
namespace {

std::string WithoutExtension(const std::string& path) {
  const std::size_t slash = path.rfind('/'), dot = path.rfind('.');
  const bool has_one = dot != std::string::npos && (slash == std::string::npos || dot > slash + 1);
  return has_one ? path.substr(0, dot) : path;
}

}  // namespace

bool WaitForLock(File& file, LockRange range, LockKind kind, std::chrono::milliseconds patience) {
  using namespace std::chrono_literals;
  const auto deadline = std::chrono::steady_clock::now() + patience;
  for (auto pause = 1ms; !file.TryLock(range, kind); pause = std::min(2 * pause, 16ms)) {
    if (std::chrono::steady_clock::now() >= deadline) return false;
    std::this_thread::sleep_for(pause);
  }
  return true;
}

bool BecomeWriter(File& base, std::chrono::milliseconds patience) {
  if (base.IsLocked(kWriterLock)) return false;  // at once: a writer may hold the gate for long
  if (!WaitForLock(base, kGateLock, LockKind::kExclusive, patience)) return false;
  if (base.TryLock(kWriterLock, LockKind::kExclusive)) return true;
  base.Unlock(kGateLock);
  return false;
}

void RefuseUsersOfOldEngine(FileSystem& files, const std::string& base) {
  try {
    for (const char* const extension : {".ldb", ".LDB"}) RemoveUnused(files, WithoutExtension(base) + extension);
  } catch (const FileError& error) {
    if (error.number() == error_number::kLocked) throw;
    throw FileError(error_number::kLocked,
                    Cat("База, похоже, открыта в другой программе, изменять её нельзя. "_ru, error.what()));
  }
}

void RemoveUnused(FileSystem& files, const std::string& name) {
  if (!files.Exists(name)) return;
  if (files.Open(name, OpenMode::kReadWrite)->IsLocked({})) ThrowLocked();
  files.Remove(name);
}

void ThrowLocked() { throw FileError(error_number::kLocked, "Файл базы занят другой программой"_ru); }

}  // namespace jet
