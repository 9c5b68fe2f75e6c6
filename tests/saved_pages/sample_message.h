#pragma once

#include <string>

#include "base/ru_literal.h"
#include "store/message_record.h"

/// A message with something in every field; its number stands in the name of its page's file.
inline MessageRecord SampleMessage() {
  return {.Код = 12,
          .Вответ = 5,
          .Тема = std::string("О \"курсе\""_ru),
          .Автор = std::string("Ваня"_ru),
          .АвторMail = "v@x.ru",
          .Дата = OleDate{37'330},  // 2002-03-15, a Friday
          .Текст = std::string("Вырос.\r\nДа"_ru),
          .Картинка = "man"};
}
