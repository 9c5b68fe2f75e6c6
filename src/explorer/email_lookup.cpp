#include "explorer/email_lookup.h"

#include "base/cat.h"
#include "base/ru_literal.h"
#include "text/strings.h"

std::string EmailStatement(std::string_view nick) {
  return Cat("SELECT Автор, АвторMail FROM База GROUP BY Автор, АвторMail HAVING ((Автор='"_ru, nick,
             "') AND (АвторMail<>''))"_ru);
}

std::optional<std::string> LookUpEmails(sql::Connection& connection, std::string_view nick) {
  if (text::Trim(nick).empty()) return std::nullopt;
  sql::Recordset rows = connection.OpenSnapshot(EmailStatement(nick));
  const std::size_t address = rows.FieldIndex("АвторMail"_ru);
  std::string list;
  for (; !rows.Eof(); rows.MoveNext()) list += Cat(rows.Text(address), "\r\n");
  if (list.empty())
    return Cat(nick, " за время своего присутствия на форуме не засветил ни одного своего E-mail адреса"_ru);
  return Cat(nick, " имеет следующие адреса : "_ru, "\r\n\r\n", list);
}
