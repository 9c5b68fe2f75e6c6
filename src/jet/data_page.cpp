#include "jet/data_page.h"

#include "base/error.h"
#include "base/ru_literal.h"

namespace jet {

DataPage::DataPage(const Layout& layout, const Page& page)
    : bytes_(page.bytes()),
      number_(page.number()),
      table_(layout.data_page.row_table),
      slots_(LoadU16(bytes_, layout.data_page.row_count)) {
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
