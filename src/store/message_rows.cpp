#include "store/message_rows.h"

#include <string>
#include <string_view>

#include "base/cat.h"
#include "base/ru_literal.h"

std::optional<MessageRecord> ReadMessage(sql::Connection& connection, std::int32_t number) {
  sql::Recordset row = connection.OpenSnapshot(Cat("select * from [База] where Код = "_ru, number));
  if (row.Eof()) return std::nullopt;
  const auto text = [&row](std::string_view field) { return std::string(row.Text(row.FieldIndex(field))); };
  MessageRecord message;
  message.Код = row.Int(row.FieldIndex("Код"_ru));
  message.Вответ = row.Int(row.FieldIndex("Вответ"_ru));
  message.Тема = text("Тема"_ru);
  message.Автор = text("Автор"_ru);
  message.АвторMail = text("АвторMail"_ru);
  message.Дата = row.Date(row.FieldIndex("Дата"_ru));
  message.Текст = text("Текст"_ru);
  message.Картинка = text("Картинка"_ru);
  return message;
}
