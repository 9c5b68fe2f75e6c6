#include "jet/data_page_writer.h"

#include <cstring>

#include "base/error.h"
#include "base/ru_literal.h"

namespace jet {

DataPageWriter::DataPageWriter(const Layout& layout, const MutablePage& page, std::uint32_t owner)
    : layout_(layout), page_(page), rows_(layout, page, owner) {
  for (std::size_t slot = 0; slot < rows_.slot_count(); ++slot) rows_.Row(slot);  // all must lie one below the other
}

void DataPageWriter::Format(const Layout& layout, const MutablePage& page, std::uint32_t owner) {
  page.SetU8(kPageKindAt, page_kind::kData);
  page.SetU8(kPageKindAt + 1, 1);
  page.SetU32(kOwnerAt, owner);
  page.SetU16(kFreeSpaceAt, static_cast<unsigned>(layout.page_size - layout.data_page.row_table));
}

std::size_t DataPageWriter::LowestStart() const {
  return rows_.slot_count() == 0 ? layout_.page_size : Start(rows_.slot_count() - 1);
}

void DataPageWriter::UpdateFree() {
  rows_ = DataPage(layout_, page_);
  page_.SetU16(kFreeSpaceAt, static_cast<unsigned>(rows_.free()));
}

std::uint8_t DataPageWriter::Add(Bytes row, unsigned flags) {
  if (!TakesRow(rows_, row.size())) ThrowBadArgument();
  const std::size_t slot = rows_.slot_count();
  const std::size_t start = LowestStart() - row.size();
  if (!row.empty()) std::memcpy(page_.Slice(start, row.size()).data(), row.data(), row.size());
  page_.SetU16(SlotAt(slot), static_cast<unsigned>(start) | flags);
  page_.SetU16(layout_.data_page.row_count, static_cast<unsigned>(slot + 1));
  UpdateFree();
  return static_cast<std::uint8_t>(slot);
}

// The rows of higher slots lie below this one and move with its lower edge.
void DataPageWriter::Replace(std::size_t slot, Bytes row, unsigned flags) {
  const std::size_t old_size = rows_.Row(slot).size();
  if (row.size() > old_size + rows_.free()) ThrowBadArgument();
  const std::size_t old_start = Start(slot), lowest = LowestStart();
  const std::size_t start = old_start + old_size - row.size();
  const MutableBytes bytes = page_.bytes();
  std::memmove(bytes.data() + (lowest + start - old_start), bytes.data() + lowest, old_start - lowest);
  for (std::size_t below = slot + 1; below < rows_.slot_count(); ++below)
    page_.SetU16(SlotAt(below), static_cast<unsigned>(Start(below) + start - old_start) | rows_.Flags(below));
  if (!row.empty()) std::memcpy(bytes.data() + start, row.data(), row.size());
  page_.SetU16(SlotAt(slot), static_cast<unsigned>(start) | flags);
  UpdateFree();
}

bool DataPageWriter::HasLiveRows() const {
  for (std::size_t slot = 0; slot < rows_.slot_count(); ++slot)
    if (rows_.Flags(slot) != kRowIsDeleted) return true;
  return false;
}

}  // namespace jet
