#include "jet/long_value.h"

#include <utility>

#include "base/ru_literal.h"
#include "jet/data_page.h"

namespace jet {
namespace {

[[noreturn]] void ThrowDamaged(RowId where) {
  throw FormatError("Длинное значение повреждено"_ru, where.page, where.slot);
}

}  // namespace

void LongValue::Fetch(const PageFile& file, Bytes stored, RowId row) {
  if (stored.size() < kLongValueHead) ThrowDamaged(row);
  const std::uint32_t head = LoadU32(stored, 0);
  const std::size_t length = head & kLongValueLength;
  const RowId where = LoadRowPointer(stored, kLongValueRowAt);
  switch (head & ~kLongValueLength) {
    case kLongValueInline:
      if (length > stored.size() - kLongValueHead) ThrowDamaged(row);
      data_ = stored.subspan(kLongValueHead, length);
      break;
    case kLongValueSingle:
      data_ = Part(file, where);
      if (data_.size() != length) ThrowDamaged(where);
      break;
    case 0:
      if (length > file.size()) ThrowDamaged(row);
      CollectChain(file, where, length);
      break;
    default: ThrowDamaged(row);
  }
}

LongValue::Beginning LongValue::ReadBeginning(const PageFile& file, Bytes stored, RowId row) {
  LongValue value;
  try {
    value.Fetch(file, stored, row);
    return {std::string(AsText(value.data_))};
  } catch (const FormatError& error) {
    return {std::move(value.collected_), false, error.page()};
  } catch (const FileError&) {
    return {std::move(value.collected_), false};
  }
}

Bytes LongValue::Part(const PageFile& file, RowId where) {
  page_ = file.Read(where.page);
  const DataPage rows(file.layout(), page_, kLongValueOwner);
  const Bytes part = rows.Row(where.slot);
  if (rows.Flags(where.slot) != 0) ThrowDamaged(where);
  return part;
}

// Every part must bring data, and no more than are missing: so a circle of parts ends too.
void LongValue::CollectChain(const PageFile& file, RowId first, std::size_t length) {
  for (RowId where = first; collected_.size() < length;) {
    if (where.page == 0) ThrowDamaged(first);
    const Bytes part = Part(file, where);
    if (part.size() <= kRowPointerSize || part.size() - kRowPointerSize > length - collected_.size())
      ThrowDamaged(where);
    collected_.append(AsText(part.subspan(kRowPointerSize)));
    where = LoadRowPointer(part, 0);
  }
  data_ = AsBytes(collected_);
}

}  // namespace jet
