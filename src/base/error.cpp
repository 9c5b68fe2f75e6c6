#include "base/error.h"

#include "base/cat.h"
#include "base/ru_literal.h"

namespace {

std::string WithPlace(std::string_view what, std::int64_t page, int row) {
  if (page == FormatError::kNoPage) return std::string(what);
  if (row == FormatError::kNoRow) return Cat(what, " (страница "_ru, page, ")");
  return Cat(what, " (страница "_ru, page, ", строка "_ru, row, ")");
}

}  // namespace

DuplicateKey::DuplicateKey() : Error(error_number::kDuplicateKey, "Запись с таким ключом уже есть в базе"_ru) {}

FormatError::FormatError(std::string_view what, std::int64_t page, int row)
    : Error(error_number::kNotABase, WithPlace(what, page, row)), page_(page), row_(row) {}

void ThrowBadArgument() { throw Error(error_number::kBadArgument, "Недопустимое значение аргумента"_ru); }

void ThrowOverflow() { throw Error(error_number::kOverflow, "Переполнение"_ru); }
