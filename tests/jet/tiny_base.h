#pragma once

#include <string>

#include "jet/layout.h"

namespace jet {

/// A whole base in memory, put together by hand and independent of the engine's writing side: its
/// header, the definition of База, its two rows and its primary key are bytes written down once;
/// the catalog and the table Виды (every column type, a moved row, a chained value, an index of two
/// levels, a usage map by reference) are built around them.
std::string TinyBase(Version version);

/// Where things are in it.
struct TinyPages {
  std::uint32_t definition;  // of База; the pages behind it: maps, two roots, data, long values
  static constexpr std::uint32_t kTypesDefinition = 8, kTypesData = 10, kMovedData = 11, kChain = 12, kNode = 14;
  static constexpr std::uint32_t kCount = 28;

  std::uint32_t maps() const { return definition + 1; }
  std::uint32_t primary_key() const { return definition + 2; }
  std::uint32_t data() const { return definition + 4; }
  std::uint32_t long_values() const { return definition + 5; }
};

constexpr TinyPages TinyPagesOf(Version version) { return {version == Version::kJet3 ? 20u : 16u}; }

}  // namespace jet
