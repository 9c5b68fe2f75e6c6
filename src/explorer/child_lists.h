#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

/// Many short lists of 32-bit ids in one block of memory: a list costs 12 bytes and 4 for each item.
/// Positions are 0-based. Views of items live until any list changes.
class ChildLists {
 public:
  using List = std::uint32_t;
  static constexpr List kNone = 0xFFFF'FFFF;

  List Create();
  /// The number of a destroyed list is used again.
  void Destroy(List list);

  std::span<const std::uint32_t> Items(List list) const {
    return {items_.data() + lists_[list].begin, lists_[list].count};
  }
  std::span<std::uint32_t> Items(List list) { return {items_.data() + lists_[list].begin, lists_[list].count}; }

  /// @param position  0 to the list's length
  void Insert(List list, std::size_t position, std::uint32_t item);
  void Erase(List list, std::size_t position);

  /// Gives back what growing lists left unused.
  void Compact();

 private:
  struct Extent {
    std::uint32_t begin, count, capacity;
  };

  std::uint32_t Allocate(std::uint32_t capacity);
  void Free(const Extent& extent);

  std::vector<Extent> lists_;
  std::vector<std::uint32_t> items_;
  std::vector<List> unused_lists_;
  // Starts of abandoned stretches of items_: those at [n] hold at least 2^n items.
  std::array<std::vector<std::uint32_t>, 32> free_;
};
