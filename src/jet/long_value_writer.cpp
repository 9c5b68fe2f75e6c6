#include "jet/long_value_writer.h"

#include <algorithm>
#include <span>

#include "base/error.h"
#include "base/ru_literal.h"
#include "jet/data_page.h"

namespace jet {
namespace {

[[noreturn]] void ThrowDamaged(RowId where) {
  throw FormatError("Длинное значение повреждено"_ru, where.page, where.slot);
}

std::string Head(std::uint32_t kind, std::size_t length, RowId where) {
  std::string head(kLongValueHead, '\0');
  const MutableBytes bytes = std::as_writable_bytes(std::span(head));
  StoreU32(bytes, 0, kind | static_cast<std::uint32_t>(length));
  StoreRowPointer(bytes, kLongValueRowAt, where);
  return head;
}

}  // namespace

void CheckLongValueSize(std::size_t size) {
  if (size > kLongValueLength) throw Error(error_number::kTextTooLong, "Текст длиннее, чем вмещает база"_ru);
}

std::string LongValueWriter::Inline(Bytes data) { return Head(kLongValueInline, data.size(), {}).append(AsText(data)); }

std::string LongValueWriter::Store(Bytes data) {
  const std::size_t largest_single = transaction_->pages().layout().long_value.largest_single;
  if (data.size() <= largest_single && store_.can_share_pages())
    return Head(kLongValueSingle, data.size(), store_.Add(data));
  return Head(0, data.size(), StoreChain(data));
}

// Each part is told where the next one went as soon as that is known.
RowId LongValueWriter::StoreChain(Bytes data) {
  RowId first, previous;
  std::string part;
  do {
    const Bytes piece = data.first(std::min(data.size(), transaction_->pages().layout().long_value.chain_part));
    data = data.subspan(piece.size());
    part.assign(kRowPointerSize, '\0');
    part.append(AsText(piece));
    const RowId where = store_.AddAlone(AsBytes(part));
    if (previous.page == 0)
      first = where;
    else
      store_.SetPointer(previous, where);
    previous = where;
  } while (!data.empty());
  return first;
}

void LongValueWriter::Free(Bytes stored) {
  const RowId where = stored.size() < kLongValueHead ? RowId{} : LoadRowPointer(stored, kLongValueRowAt);
  if (stored.size() < kLongValueHead) ThrowDamaged(where);
  const std::uint32_t head = LoadU32(stored, 0);
  switch (head & ~kLongValueLength) {
    case kLongValueInline: return;
    case kLongValueSingle:
      if (LivePart(where).size() != (head & kLongValueLength)) ThrowDamaged(where);
      return store_.Delete(where);
    case 0: return FreeChain(where, head & kLongValueLength);
    default: ThrowDamaged(where);
  }
}

// Every part must bring data, and no more than are missing: so a circle of parts ends too.
void LongValueWriter::FreeChain(RowId first, std::size_t length) {
  for (RowId where = first; length > 0;) {
    const Bytes part = LivePart(where);
    if (part.size() <= kRowPointerSize || part.size() - kRowPointerSize > length) ThrowDamaged(where);
    length -= part.size() - kRowPointerSize;
    const RowId next = LoadRowPointer(part, 0);
    store_.Delete(where);
    where = next;
  }
}

Bytes LongValueWriter::LivePart(RowId where) {
  if (where.page == 0) ThrowDamaged(where);
  part_page_ = transaction_->pages().Read(where.page);
  const DataPage rows(transaction_->pages().layout(), part_page_, kLongValueOwner);
  const Bytes part = rows.Row(where.slot);
  if (rows.Flags(where.slot) != 0) ThrowDamaged(where);
  return part;
}

}  // namespace jet
