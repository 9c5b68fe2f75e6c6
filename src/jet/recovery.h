#pragma once

#include <chrono>
#include <string>

#include "base/file.h"
#include "jet/layout.h"

namespace jet {

/// Does the base hold a transaction by halves, its writer gone? The caller holds the gate.
bool IsLeftHalfDone(FileSystem& files, const std::string& path, const File& base, const Layout& layout);

/// Undoes such a transaction and clears away the journal; one that belongs to another base is put
/// aside under the name `-journal.foreign`. The caller is the writer and has the gate to itself.
void Recover(FileSystem& files, const std::string& path, File& base, const Layout& layout);

/// The same by a reader, which becomes the writer for a moment; does nothing when another program
/// is faster. @throws FileError when the base cannot be written
void RecoverForReader(FileSystem& files, const std::string& path, const Layout& layout,
                      std::chrono::milliseconds patience);

}  // namespace jet
