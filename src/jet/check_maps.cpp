#include "jet/check_maps.h"

#include <optional>

#include "base/bytes.h"
#include "jet/data_page.h"
#include "jet/usage_map.h"

namespace jet {
namespace {

constexpr RowId kGlobalMap{1, 0};

}  // namespace

MapCheck::MapCheck(CheckContext& context)
    : context_(context),
      rows_(context.NewOwner("карты страниц"_ru)),
      bitmaps_(context.NewOwner("продолжение карты страниц"_ru)),
      free_(context.file().page_count()) {}

void MapCheck::CheckGlobal() {
  constexpr std::string_view name = "Карта свободных страниц"_ru;
  if (!ClaimRow(kGlobalMap, name)) return;
  const std::uint32_t count = context_.file().page_count();
  context_.Try(name, [&] {
    UsageMap map(context_.file(), kGlobalMap);
    for (auto page = map.NextFrom(0); page && *page < count; page = map.NextFrom(*page + 1)) free_[*page] = true;
    const Page handle = context_.file().Read(kGlobalMap.page);
    const Bytes row = DataPage(context_.layout(), handle).Row(kGlobalMap.slot);
    if (LoadU8(row, 0) != kInlineMap) return;
    const std::uint64_t end = std::uint64_t{LoadU32(row, kInlineMapStartAt)} + 8 * (row.size() - kInlineMapBitsAt);
    std::uint32_t missing = 0;
    for (std::uint64_t page = count; page < end; ++page)
      if (!map.Contains(static_cast<std::uint32_t>(page))) ++missing;
    if (missing != 0) context_.Warning(Cat(name, ": за концом файла числятся занятыми страниц: "_ru, missing));
  });
}

std::vector<std::uint32_t> MapCheck::PagesOf(RowId where, std::string_view name) {
  std::vector<std::uint32_t> pages;
  if (!ClaimRow(where, name)) return pages;
  const std::uint32_t count = context_.file().page_count();
  std::uint32_t missing = 0;
  context_.Try(name, [&] {
    UsageMap map(context_.file(), where);
    auto page = map.NextFrom(0);
    for (; page && *page < count; page = map.NextFrom(*page + 1)) pages.push_back(*page);
    for (; page && *page < kLargestBase; page = map.NextFrom(*page + 1)) ++missing;
  });
  if (missing != 0) context_.Error(Cat(name, ": в ней страницы, которых в файле нет: "_ru, missing));
  return pages;
}

bool MapCheck::ClaimRow(RowId where, std::string_view name) {
  if (where.page == 0) {
    context_.Error(Cat(name, ": её нет"_ru));
    return false;
  }
  if (!seen_.insert(where).second) {
    context_.Error(Cat(name, ": ею пользуются дважды (страница "_ru, where.page, ", строка "_ru, where.slot, ")"));
    return false;
  }
  if (context_.OwnerOf(where.page) != rows_) {
    if (!context_.Claim(where.page, rows_)) return false;
    context_.Advance();
    if (!CheckRowPage(context_, where.page, where.page == kGlobalMap.page ? 1 : 0, name)) return false;
  }
  ClaimBitmaps(where);
  return true;
}

// What is wrong with the row itself shows when the map is read.
void MapCheck::ClaimBitmaps(RowId where) try {
  const Page page = context_.file().Read(where.page);
  const Bytes row = DataPage(context_.layout(), page).Row(where.slot);
  if (row.empty() || LoadU8(row, 0) != kReferenceMap) return;
  for (std::size_t at = kReferencesAt; at + 4 <= row.size(); at += 4)
    if (LoadU32(row, at) != 0) context_.Claim(LoadU32(row, at), bitmaps_);
} catch (const Error&) {
}

}  // namespace jet
