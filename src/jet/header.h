#pragma once

#include <array>
#include <cstdint>

#include "base/bytes.h"
#include "base/file.h"
#include "base/ole_date.h"
#include "jet/layout.h"

namespace jet {

/// What page 0 tells about a base.
struct Header {
  Version version = Version::kJet3;
  std::uint16_t code_page = 0;
  std::uint16_t collation = 0;  // language of the sort order
  std::uint8_t collation_version = 0;
  std::uint16_t build = 0;  // of the engine that made the file
  OleDate created;          // Jet 4 only
};

/// @throws Error 3343 when the file is no base, or one that this engine does not read: newer,
///         encoded, under a password, another product's
Header ReadHeader(const File& file);

/// Is the file a base under a password that somebody has typed? Damage to page 0 seldom looks like one.
bool IsUnderTypedPassword(const File& file);

/// The day of creation as a number: Jet 4 masks the password with it once more. 0 when it is none.
std::uint32_t CreationDay(OleDate created);

/// Lays the mask over the header's hidden fields, or takes it off: the same operation.
/// @param page  the file's first bytes, kHeaderSize at least
void ApplyHeaderMask(const Layout& layout, MutableBytes page);

}  // namespace jet
