#include "jet/usage_map.h"

#include <algorithm>

#include "base/error.h"
#include "base/ru_literal.h"
#include "jet/bit_search.h"
#include "jet/data_page.h"

namespace jet {
namespace {

bool HasBit(Bytes bits, std::uint32_t bit) {
  return bit / 8 < bits.size() && (LoadU8(bits, bit / 8) >> (bit % 8) & 1u) != 0;
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

bool UsageMap::Contains(std::uint32_t page) {
  if (row_.empty()) return false;
  if (inline_bits()) {
    const std::uint32_t start = LoadU32(row_, kInlineMapStartAt);
    return page >= start && HasBit(row_.subspan(kInlineMapBitsAt), page - start);
  }
  const std::uint32_t reference = page / pages_per_reference();
  return reference < references() && HasBit(BitsOf(reference), page % pages_per_reference());
}

std::optional<std::uint32_t> UsageMap::NextFrom(std::uint32_t from) {
  if (row_.empty()) return std::nullopt;
  return inline_bits() ? NextInline(from) : NextByReference(from);
}

std::optional<std::uint32_t> UsageMap::NextInline(std::uint64_t from) const {
  const std::uint64_t start = LoadU32(row_, kInlineMapStartAt);
  const auto bit = FirstBit(row_.subspan(kInlineMapBitsAt), from < start ? 0 : from - start);
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
    if (const auto bit = FirstBit(bits, from - i * pages_each))
      return static_cast<std::uint32_t>(i * pages_each + *bit);
  }
  return std::nullopt;
}

std::optional<std::uint32_t> UsageMap::LastUpTo(std::uint32_t to) {
  if (row_.empty()) return std::nullopt;
  return inline_bits() ? LastInline(to) : LastByReference(to);
}

std::optional<std::uint32_t> UsageMap::LastInline(std::uint32_t to) const {
  const std::uint32_t start = LoadU32(row_, kInlineMapStartAt);
  if (to < start) return std::nullopt;
  const auto bit = LastBit(row_.subspan(kInlineMapBitsAt), std::size_t{to} - start + 1);
  return bit ? std::optional(start + static_cast<std::uint32_t>(*bit)) : std::nullopt;
}

std::optional<std::uint32_t> UsageMap::LastByReference(std::uint32_t to) {
  const std::uint32_t pages_each = pages_per_reference();
  for (std::uint32_t end = std::min(to / pages_each + 1, references()); end > 0; --end) {
    const std::uint32_t first = (end - 1) * pages_each;
    if (const auto bit = LastBit(BitsOf(end - 1), std::size_t{to} - first + 1))
      return first + static_cast<std::uint32_t>(*bit);
  }
  return std::nullopt;
}

}  // namespace jet
