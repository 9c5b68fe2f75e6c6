#include "jet/bit_search.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <string>

namespace jet {
namespace {

// Every pair of set bits in maps of every size around the eight bytes that are looked at together.
TEST(BitSearch, FindsWhatLookingAtEveryBitFinds) {
  for (std::size_t size = 0; size < 20; ++size) {
    for (std::size_t low = 0; low < 8 * size; low += 3) {
      std::string map(size, '\0');
      const std::size_t high = 8 * size - 1 - low / 2;
      for (const std::size_t bit : {low, high}) map[bit / 8] = static_cast<char>(map[bit / 8] | 1 << bit % 8);
      const std::size_t first = std::min(low, high), last = std::max(low, high);
      for (std::size_t from = 0; from < 8 * size + 9; ++from) {
        const std::optional<std::size_t> next = from <= first  ? std::optional(first)
                                                : from <= last ? std::optional(last)
                                                               : std::nullopt;
        const std::optional<std::size_t> previous = from > last    ? std::optional(last)
                                                    : from > first ? std::optional(first)
                                                                   : std::nullopt;
        ASSERT_EQ(FirstBit(AsBytes(map), from), next) << size << ' ' << low << ' ' << from;
        ASSERT_EQ(LastBit(AsBytes(map), from), previous) << size << ' ' << low << ' ' << from;
      }
    }
    EXPECT_EQ(FirstBit(AsBytes(std::string(size, '\0')), 0), std::nullopt);
    EXPECT_EQ(LastBit(AsBytes(std::string(size, '\0')), 8 * size), std::nullopt);
  }
}

}  // namespace
}  // namespace jet
