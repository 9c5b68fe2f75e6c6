#include "jet/check_long_values.h"

#include <utility>

#include "jet/data_page.h"

namespace jet {

LongValueCheck::LongValueCheck(CheckContext& context, MapCheck& maps, const Column& column, std::string name)
    : context_(context), name_(std::move(name)), owner_(context.NewOwner(Cat("длинные значения: "_ru, name_))) {
  if (column.owned_map.page != 0) {
    for (const std::uint32_t page : maps.PagesOf(column.owned_map, Cat(name_, ", карта страниц"_ru)))
      if (context_.Claim(page, owner_)) pages_.push_back(page);
  }
  if (column.free_map.page != 0) {
    for (const std::uint32_t page : maps.PagesOf(column.free_map, Cat(name_, ", карта страниц с местом"_ru)))
      if (context_.OwnerOf(page) != owner_)
        context_.Error(Cat(name_, ": в карте страниц с местом чужая страница "_ru, page));
  }
}

bool LongValueCheck::Fail(RowId row, std::string_view what) {
  context_.Error(Cat(PlaceOf(name_, row), ": "_ru, what));
  return false;
}

bool LongValueCheck::CheckValue(Bytes stored, RowId row) {
  if (stored.size() < kLongValueHead) return Fail(row, "длинное значение короче своего заголовка"_ru);
  const std::uint32_t head = LoadU32(stored, 0);
  const std::size_t length = head & kLongValueLength;
  const RowId first = LoadRowPointer(stored, kLongValueRowAt);
  switch (head & ~kLongValueLength) {
    case kLongValueInline:
      return length <= stored.size() - kLongValueHead || Fail(row, "длинное значение выходит за край строки"_ru);
    case kLongValueSingle: return CheckParts(first, length, false, row);
    case 0: return CheckParts(first, length, true, row);
    default: return Fail(row, "длинное значение неизвестного вида"_ru);
  }
}

// No part may be used twice, so a circle ends.
bool LongValueCheck::CheckParts(RowId first, std::size_t length, bool chained, RowId row) {
  std::size_t sum = 0;
  for (RowId part = first; part.page != 0;) {
    if (!CheckPart(part, row)) return false;
    const Page page = context_.file().Read(part.page);
    const Bytes bytes = DataPage(context_.layout(), page).Row(part.slot);
    if (chained && bytes.size() < kRowPointerSize) return Fail(row, "часть длинного значения повреждена"_ru);
    sum += bytes.size() - (chained ? kRowPointerSize : 0);
    part = chained ? LoadRowPointer(bytes, 0) : RowId();
  }
  return sum == length ||
         Fail(row, Cat("длинное значение должно занимать байтов: "_ru, length, ", а занимает "_ru, sum));
}

bool LongValueCheck::CheckPart(RowId part, RowId row) {
  const std::string place =
      Cat("часть длинного значения на странице "_ru, part.page, ", строка "_ru, part.slot, ", "_ru);
  if (context_.OwnerOf(part.page) != owner_) return Fail(row, Cat(place, "лежит не на своих страницах"_ru));
  bool whole = false;
  context_.Try(PlaceOf(name_, row), [&] {
    const Page page = context_.file().Read(part.page);
    const DataPage rows(context_.layout(), page, kLongValueOwner);
    rows.Row(part.slot);
    whole = rows.Flags(part.slot) == 0 || Fail(row, Cat(place, "удалена"_ru));
  });
  if (!whole) return false;
  return parts_.Insert(part) || Fail(row, Cat(place, "принадлежит и другому значению"_ru));
}

void LongValueCheck::CheckLeftovers() {
  for (const std::uint32_t page : pages_) {
    if (context_.stopped()) return;
    context_.Advance();
    if (!CheckRowPage(context_, page, kLongValueOwner, name_)) continue;
    const Page handle = context_.file().Read(page);
    const DataPage rows(context_.layout(), handle);
    std::size_t lost = 0;
    for (std::size_t slot = 0; slot < rows.slot_count(); ++slot)
      if (rows.Flags(slot) == 0 && !parts_.Contains({page, static_cast<std::uint8_t>(slot)})) ++lost;
    if (lost != 0 || !parts_.HasPage(page))
      context_.Warning(
          Cat(name_, ", страница "_ru, page, ": длинных значений, которые никому не принадлежат: "_ru, lost));
  }
}

}  // namespace jet
