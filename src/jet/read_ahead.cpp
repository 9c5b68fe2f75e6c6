#include "jet/read_ahead.h"

#include <algorithm>
#include <cstring>

#include "base/error.h"

namespace jet {

ReadAhead::Stretch* ReadAhead::Find(std::uint32_t number) {
  const auto found = std::ranges::find(latest_, number, &Stretch::number);
  return found == latest_.end() ? nullptr : &*found;
}

void ReadAhead::Read(std::uint32_t page, std::uint32_t count, MutableBytes to) {
  const std::uint32_t number = page / pages_each_;
  const std::size_t at = page % pages_each_ * page_size_;
  Stretch* stretch = Find(number);
  // The second page of a stretch, or the first one behind another: more of them are likely to follow.
  const bool goes_on = stretch != nullptr || (number > 0 && Find(number - 1) != nullptr);
  if (stretch == nullptr) {
    stretch = &latest_[oldest_];
    oldest_ = (oldest_ + 1) % latest_.size();
    stretch->number = number;
    stretch->bytes.clear();
  }
  const bool is_there = at + page_size_ <= stretch->bytes.size() || (goes_on && Fetch(number, count, *stretch));
  if (is_there)
    std::memcpy(to.data(), stretch->bytes.data() + at, page_size_);
  else
    file_.ReadAt(std::uint64_t{page} * page_size_, to);
}

// A neighbour that cannot be read must not stand in the way of the page that is wanted.
bool ReadAhead::Fetch(std::uint32_t number, std::uint32_t count, Stretch& to) const try {
  const std::uint32_t first = number * pages_each_;
  to.bytes.resize(std::min(pages_each_, count - first) * page_size_);
  file_.ReadAt(std::uint64_t{first} * page_size_, to.bytes);
  return true;
} catch (const FileError&) {
  to.bytes.clear();
  return false;
}

void ReadAhead::Forget() noexcept {
  for (Stretch& stretch : latest_) stretch.number = kNone;
}

}  // namespace jet
