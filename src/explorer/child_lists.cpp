#include "explorer/child_lists.h"

#include <algorithm>
#include <bit>

#include "base/checked.h"

ChildLists::List ChildLists::Create() {
  if (!unused_lists_.empty()) {
    const List list = unused_lists_.back();
    unused_lists_.pop_back();
    return list;
  }
  lists_.push_back({0, 0, 0});
  return CheckedCast<List>(lists_.size() - 1);
}

void ChildLists::Destroy(List list) {
  Free(lists_[list]);
  lists_[list] = {0, 0, 0};
  unused_lists_.push_back(list);
}

void ChildLists::Insert(List list, std::size_t position, std::uint32_t item) {
  Extent& extent = lists_[list];
  if (extent.count == extent.capacity) {
    const std::uint32_t capacity = std::bit_ceil(extent.count + 1);
    const std::uint32_t begin = Allocate(capacity);
    std::copy_n(items_.begin() + extent.begin, extent.count, items_.begin() + begin);
    Free(extent);
    extent = {begin, extent.count, capacity};
  }
  ++extent.count;
  const auto items = Items(list);
  std::copy_backward(items.begin() + static_cast<std::ptrdiff_t>(position), items.end() - 1, items.end());
  items[position] = item;
}

void ChildLists::Erase(List list, std::size_t position) {
  const auto items = Items(list);
  const auto at = items.begin() + static_cast<std::ptrdiff_t>(position);
  std::copy(at + 1, items.end(), at);
  --lists_[list].count;
}

void ChildLists::Compact() {
  std::size_t used = 0;
  for (const Extent& extent : lists_) used += extent.count;
  std::vector<std::uint32_t> items;
  items.reserve(used);
  for (Extent& extent : lists_) {
    const auto begin = items_.begin() + extent.begin;
    extent = {static_cast<std::uint32_t>(items.size()), extent.count, extent.count};
    items.insert(items.end(), begin, begin + extent.count);
  }
  items_ = std::move(items);
  lists_.shrink_to_fit();
  for (auto& starts : free_) starts = {};
}

std::uint32_t ChildLists::Allocate(std::uint32_t capacity) {
  auto& starts = free_[static_cast<std::size_t>(std::countr_zero(capacity))];
  if (!starts.empty()) {
    const std::uint32_t begin = starts.back();
    starts.pop_back();
    return begin;
  }
  const auto begin = CheckedCast<std::uint32_t>(items_.size());
  items_.resize(items_.size() + capacity);
  return begin;
}

void ChildLists::Free(const Extent& extent) {
  if (extent.capacity == 0) return;
  free_[static_cast<std::size_t>(std::bit_width(extent.capacity) - 1)].push_back(extent.begin);
}
