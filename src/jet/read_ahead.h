#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "base/bytes.h"
#include "base/file.h"

namespace jet {

/// Reads pages of a file. Where the pages asked for lie close together, as in a scan, it reads a whole
/// stretch of them in one go and keeps it for those that come next.
class ReadAhead {
 public:
  ReadAhead(const File& file, std::size_t page_size)
      : file_(file), page_size_(page_size), pages_each_(static_cast<std::uint32_t>(kStretchBytes / page_size)) {}

  /// @param count  pages that the file has; `page` is one of them
  /// @throws FileError when this page cannot be read; what its neighbours say does not matter
  void Read(std::uint32_t page, std::uint32_t count, MutableBytes to);
  /// The file has changed: what was read ahead is worth nothing.
  void Forget() noexcept;

 private:
  static constexpr std::size_t kStretchBytes = 64u << 10;
  static constexpr std::uint32_t kNone = UINT32_MAX;

  /// Neighbours whose numbers agree but for the last few bits.
  struct Stretch {
    std::uint32_t number = kNone;
    std::vector<std::byte> bytes;  // empty = a page of it was asked for, but it was not read
  };

  Stretch* Find(std::uint32_t number);
  bool Fetch(std::uint32_t number, std::uint32_t count, Stretch& to) const;

  const File& file_;
  std::size_t page_size_;
  std::uint32_t pages_each_;
  std::array<Stretch, 4> latest_;  // rows, long values and index pages may lie far apart
  std::size_t oldest_ = 0;
};

}  // namespace jet
