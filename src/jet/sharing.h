#pragma once

#include <chrono>
#include <string>

#include "base/file.h"

namespace jet {

/// The locks by which programs share a base; both lie behind the largest file. Whoever holds the
/// writer's lock has undone what a crashed writer left, or holds the gate exclusively.
inline constexpr LockRange kWriterLock{std::uint64_t{1} << 40, 1};      // exclusive while open for writing
inline constexpr LockRange kGateLock{(std::uint64_t{1} << 40) + 1, 1};  // shared: reads; exclusive: writes pages

/// Tries for so long. @return false when the lock stayed taken
bool WaitForLock(File& file, LockRange range, LockKind kind, std::chrono::milliseconds patience);

/// Takes the writer's lock, and the gate exclusively.
/// @return false when another program is the writer, or keeps reading
bool BecomeWriter(File& base, std::chrono::milliseconds patience);

/// The engine of the old platform leaves `name.ldb` beside a base that it has open. One that nobody
/// uses any more is removed. @throws FileError 3045 when it is in use or cannot be removed
void RefuseUsersOfOldEngine(FileSystem& files, const std::string& base);

/// Removes a file when there is one. @throws FileError 3045 when a program has it locked
void RemoveUnused(FileSystem& files, const std::string& name);

[[noreturn]] void ThrowLocked();

}  // namespace jet
