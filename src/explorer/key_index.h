#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

/// A hash table of bare ids, 5 bytes a place: the keys stay with the owner, who computes an id's hash
/// and says which id is meant. Open addressing with linear probing, at most 4/5 full. A byte of each
/// hash stands apart, so that a search rarely looks at an id that is not meant.
class KeyIndex {
 public:
  static constexpr std::uint32_t kNotFound = 0xFFFF'FFFF;

  /// @param matches  bool(std::uint32_t id)
  template <typename Matches>
  std::uint32_t Find(std::uint32_t hash, Matches matches) const {
    if (tags_.empty()) return kNotFound;
    const std::uint8_t tag = TagOf(hash);
    for (std::size_t at = Home(hash); tags_[at] != kFree; at = Next(at))
      if (tags_[at] == tag && matches(ids_[at])) return ids_[at];
    return kNotFound;
  }

  /// @param hash_of  std::uint32_t(std::uint32_t id), of any id in the table
  template <typename HashOf>
  void Insert(std::uint32_t id, HashOf hash_of) {
    if (used_ + 1 > Room(tags_.size())) Reserve(used_ + used_ / 2 + 8, hash_of);
    Place(id, hash_of(id));
    ++used_;
  }

  /// `id` is in the table, and so its hash must still be known.
  template <typename HashOf>
  void Erase(std::uint32_t id, HashOf hash_of) {
    std::size_t hole = Home(hash_of(id));
    while (ids_[hole] != id) hole = Next(hole);
    // Whatever was pushed past the hole moves up, so that no search ends at it too early.
    for (std::size_t at = Next(hole); tags_[at] != kFree; at = Next(at)) {
      const std::size_t home = Home(hash_of(ids_[at]));
      if (Distance(home, at) < Distance(hole, at)) continue;
      ids_[hole] = ids_[at];
      tags_[hole] = tags_[at];
      hole = at;
    }
    ids_[hole] = kNotFound;
    tags_[hole] = kFree;
    --used_;
  }

  /// Makes room for `count` ids in all.
  template <typename HashOf>
  void Reserve(std::size_t count, HashOf hash_of) {
    if (count <= Room(tags_.size())) return;
    const std::size_t places = count + count / 4 + 2;
    tags_.assign(places, kFree);
    const auto old = std::exchange(ids_, std::vector<std::uint32_t>(places, kNotFound));
    for (const std::uint32_t id : old)
      if (id != kNotFound) Place(id, hash_of(id));
  }

 private:
  static constexpr std::uint8_t kFree = 0;

  static std::size_t Room(std::size_t places) { return places - places / 5; }
  // The place comes from the top bits, which a multiplicative hash mixes best, the tag from others.
  std::size_t Home(std::uint32_t hash) const { return (std::uint64_t{hash} * tags_.size()) >> 32; }
  static std::uint8_t TagOf(std::uint32_t hash) { return static_cast<std::uint8_t>(hash | 1); }
  std::size_t Next(std::size_t at) const { return at + 1 < tags_.size() ? at + 1 : 0; }
  std::size_t Distance(std::size_t from, std::size_t to) const {
    return from <= to ? to - from : to + tags_.size() - from;
  }
  void Place(std::uint32_t id, std::uint32_t hash) {
    std::size_t at = Home(hash);
    while (tags_[at] != kFree) at = Next(at);
    ids_[at] = id;
    tags_[at] = TagOf(hash);
  }

  std::vector<std::uint32_t> ids_;
  std::vector<std::uint8_t> tags_;
  std::size_t used_ = 0;
};
