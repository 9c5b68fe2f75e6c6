#include "jet/data_page.h"

#include "base/error.h"
#include "base/ru_literal.h"

namespace jet {

namespace {

/// How many entries of the row table lead to rows that lie one below the other and above the table.
std::size_t SlotsThatFit(const Layout& layout, Bytes page) {
  std::size_t slots = 0, end = page.size();
  for (std::size_t at = layout.data_page.row_table; slots < kMostSlots && at + kRowSlotSize <= end; ++slots) {
    const std::size_t begin = LoadU16(page, at) & kRowStart;
    at += kRowSlotSize;
    if (begin < at || begin > end) break;
    end = begin;
  }
  return slots;
}

}  // namespace

DataPage::DataPage(const Layout& layout, const Page& page)
    : DataPage(LoadU16(page.bytes(), layout.data_page.row_count), layout, page) {}

DataPage DataPage::Salvage(const Layout& layout, const Page& page) {
  const std::size_t stored = page.U16(layout.data_page.row_count);
  const bool possible =
      stored <= kMostSlots && layout.data_page.row_table + kRowSlotSize * stored <= page.bytes().size();
  const DataPage fitting(SlotsThatFit(layout, page.bytes()), layout, page);
  return possible && fitting.free() != page.U16(kFreeSpaceAt) ? DataPage(layout, page) : fitting;
}

DataPage::DataPage(std::size_t slots, const Layout& layout, const Page& page)
    : bytes_(page.bytes()), number_(page.number()), table_(layout.data_page.row_table), slots_(slots) {
  if (LoadU8(bytes_, kPageKindAt) != page_kind::kData) throw FormatError("Это не страница данных"_ru, number_);
  if (slots_ > kMostSlots || table_ + 2 * slots_ > bytes_.size())
    throw FormatError("На странице записано невозможное число строк"_ru, number_);
}

DataPage::DataPage(const Layout& layout, const Page& page, std::uint32_t owner) : DataPage(layout, page) {
  if (LoadU32(bytes_, kOwnerAt) != owner) throw FormatError("Страница данных принадлежит другой таблице"_ru, number_);
}

std::size_t DataPage::free() const {
  const std::size_t table_end = table_ + 2 * slots_;
  const std::size_t lowest = slots_ == 0 ? bytes_.size() : Entry(slots_ - 1) & kRowStart;
  if (lowest < table_end || lowest > bytes_.size()) throw FormatError("Строки не помещаются на странице"_ru, number_);
  return lowest - table_end;
}

Bytes DataPage::Row(std::size_t slot) const {
  if (slot >= slots_) throw FormatError("На странице нет такой строки"_ru, number_, static_cast<int>(slot));
  const std::size_t begin = Entry(slot) & kRowStart;
  const std::size_t end = slot == 0 ? bytes_.size() : Entry(slot - 1) & kRowStart;
  if (begin < table_ + 2 * slots_ || begin > end || end > bytes_.size())
    throw FormatError("Строка выходит за край страницы"_ru, number_, static_cast<int>(slot));
  return bytes_.subspan(begin, end - begin);
}

}  // namespace jet
