#include "sql/sql_errors.h"

#include "base/cat.h"
#include "base/error.h"
#include "base/ru_literal.h"

namespace sql {

void ThrowBadStatement(std::string_view detail) {
  throw SqlError(error_number::kBadStatement, Cat("Ошибка в выражении запроса: "_ru, detail));
}

void ThrowUnknownField(std::string_view name) {
  throw SqlError(error_number::kUnknownField, Cat("В запросе неизвестное имя: нет поля «"_ru, name, "»"_ru));
}

void ThrowUnknownTable(std::string_view name) {
  throw SqlError(error_number::kUnknownTable,
                 Cat("В запросе неизвестное имя: нет таблицы или запроса «"_ru, name, "»"_ru));
}

void ThrowBadPattern(std::string_view pattern) {
  throw SqlError(error_number::kBadPattern, Cat("Ошибка в шаблоне «"_ru, pattern, "»"_ru));
}

void ThrowTypeMismatch() {
  throw SqlError(error_number::kTypeMismatch, "Значение не того типа в выражении запроса"_ru);
}

void ThrowNotUpdatable() { throw Error(error_number::kReadOnly, "Эти записи можно только читать"_ru); }

void ThrowRowDeleted() { throw Error(kRowDeleted, "Запись удалена"_ru); }

}  // namespace sql
