#include "jet/usage_map.h"

#include <bit>

#include "base/error.h"
#include "base/ru_literal.h"
#include "jet/data_page.h"

namespace jet {
namespace {

// The first set bit of `bits` that is not before `from`.
std::optional<std::uint64_t> NextBit(Bytes bits, std::uint64_t from) {
  for (std::uint64_t at = from / 8; at < bits.size(); ++at) {
    unsigned byte = LoadU8(bits, static_cast<std::size_t>(at));
    if (at == from / 8) byte &= 0xFFu << (from % 8);
    if (byte != 0) return at * 8 + static_cast<unsigned>(std::countr_zero(byte));
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

std::optional<std::uint32_t> UsageMap::NextByReference(std::uint64_t from) {
  const std::uint64_t pages_each = (file_->layout().page_size - kBitmapAt) * 8;
  const std::uint64_t references = (row_.size() - kReferencesAt) / 4;
  for (std::uint64_t i = from / pages_each; i < references; ++i, from = i * pages_each) {
    const std::uint32_t reference = LoadU32(row_, static_cast<std::size_t>(kReferencesAt + 4 * i));
    if (reference == 0) continue;
    bitmap_ = file_->Read(reference);
    if (bitmap_.kind() != page_kind::kUsageMap) throw FormatError("Это не страница карты"_ru, reference);
    if (const auto bit = NextBit(bitmap_.bytes().subspan(kBitmapAt), from - i * pages_each))
      return static_cast<std::uint32_t>(i * pages_each + *bit);
  }
  return std::nullopt;
}

}  // namespace jet
