#include "jet/usage_map.h"

#include <algorithm>
#include <bit>

#include "base/error.h"
#include "base/ru_literal.h"
#include "jet/data_page.h"

namespace jet {
namespace {

// The first set bit of `bits` that is not before `from`.
std::optional<std::uint64_t> NextBit(Bytes bits, std::uint64_t from) {
  for (std::uint64_t at = from / 8; at < bits.size(); ++at) {
    while (at > from / 8 && at + 8 < bits.size() && LoadU64(bits, static_cast<std::size_t>(at)) == 0) at += 8;
    unsigned byte = LoadU8(bits, static_cast<std::size_t>(at));
    if (at == from / 8) byte &= 0xFFu << (from % 8);
    if (byte != 0) return at * 8 + static_cast<unsigned>(std::countr_zero(byte));
  }
  return std::nullopt;
}

// The last set bit of `bits` that is not behind `to`.
std::optional<std::uint32_t> LastBit(Bytes bits, std::uint32_t to) {
  for (std::size_t end = std::min<std::size_t>(to / 8 + 1, bits.size()); end > 0; --end) {
    while (end > 8 && end <= to / 8 && LoadU64(bits, end - 8) == 0) end -= 8;
    unsigned byte = LoadU8(bits, end - 1);
    if (end - 1 == to / 8) byte &= 0xFFu >> (7 - to % 8);
    if (byte != 0)
      return static_cast<std::uint32_t>((end - 1) * 8) + static_cast<std::uint32_t>(std::bit_width(byte)) - 1;
  }
  return std::nullopt;
}

}  // namespace

UsageMap::UsageMap(const PageFile& file, RowId where) : file_(&file) {
  if (where.page == 0) return;
  page_ = file.Read(where.page);
  row_ = DataPage(file.layout(), page_).Row(where.slot);
  const bool whole = !row_.empty() && ((LoadU8(row_, 0) == kInlineMap && row_.size() >= kInlineMapBitsAt) ||
                                       LoadU8(row_, 0) == kReferenceMap);
  if (!whole) throw FormatError("Карта страниц повреждена"_ru, where.page, where.slot);
}

std::optional<std::uint32_t> UsageMap::NextFrom(std::uint32_t from) {
  if (row_.empty()) return std::nullopt;
  return LoadU8(row_, 0) == kInlineMap ? NextInline(from) : NextByReference(from);
}

std::optional<std::uint32_t> UsageMap::NextInline(std::uint64_t from) const {
  const std::uint64_t start = LoadU32(row_, kInlineMapStartAt);
  const auto bit = NextBit(row_.subspan(kInlineMapBitsAt), from < start ? 0 : from - start);
  if (!bit) return std::nullopt;
  if (start + *bit > UINT32_MAX) throw FormatError("Карта страниц повреждена"_ru, page_.number());
  return static_cast<std::uint32_t>(start + *bit);
}

std::uint32_t UsageMap::pages_per_reference() const {
  return static_cast<std::uint32_t>((file_->layout().page_size - kBitmapAt) * 8);
}

std::uint32_t UsageMap::references() const { return static_cast<std::uint32_t>((row_.size() - kReferencesAt) / 4); }

Bytes UsageMap::BitsOf(std::uint32_t reference) {
  const std::uint32_t page = LoadU32(row_, kReferencesAt + 4 * std::size_t{reference});
  if (page == 0) return {};
  bitmap_ = file_->Read(page);
  if (bitmap_.kind() != page_kind::kUsageMap) throw FormatError("Это не страница карты"_ru, page);
  return bitmap_.bytes().subspan(kBitmapAt);
}

std::optional<std::uint32_t> UsageMap::NextByReference(std::uint64_t from) {
  const std::uint64_t pages_each = pages_per_reference();
  for (std::uint64_t i = from / pages_each; i < references(); ++i, from = i * pages_each) {
    const Bytes bits = BitsOf(static_cast<std::uint32_t>(i));
    if (const auto bit = NextBit(bits, from - i * pages_each)) return static_cast<std::uint32_t>(i * pages_each + *bit);
  }
  return std::nullopt;
}

std::optional<std::uint32_t> UsageMap::LastUpTo(std::uint32_t to) {
  if (row_.empty()) return std::nullopt;
  return LoadU8(row_, 0) == kInlineMap ? LastInline(to) : LastByReference(to);
}

std::optional<std::uint32_t> UsageMap::LastInline(std::uint32_t to) const {
  const std::uint32_t start = LoadU32(row_, kInlineMapStartAt);
  if (to < start) return std::nullopt;
  const auto bit = LastBit(row_.subspan(kInlineMapBitsAt), to - start);
  return bit ? std::optional(start + *bit) : std::nullopt;
}

std::optional<std::uint32_t> UsageMap::LastByReference(std::uint32_t to) {
  const std::uint32_t pages_each = pages_per_reference();
  for (std::uint32_t end = std::min(to / pages_each + 1, references()); end > 0; --end) {
    const std::uint32_t first = (end - 1) * pages_each;
    if (const auto bit = LastBit(BitsOf(end - 1), std::min(to - first, pages_each - 1))) return first + *bit;
  }
  return std::nullopt;
}

}  // namespace jet
