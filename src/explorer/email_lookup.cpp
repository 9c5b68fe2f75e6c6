#include "explorer/email_lookup.h"

#include "base/cat.h"
#include "base/ru_literal.h"
#include "text/strings.h"

std::string EmailStatement(std::string_view nick) {
  return Cat("SELECT Автор, АвторMail FROM База GROUP BY Автор, АвторMail HAVING ((Автор='"_ru, nick,
             "') AND (АвторMail<>''))"_ru);
}

std::vector<std::string> EmailsOf(sql::Connection& connection, std::string_view nick) {
  std::vector<std::string> addresses;
  if (text::Trim(nick).empty()) return addresses;
  sql::Recordset rows = connection.OpenSnapshot(EmailStatement(nick));
  const std::size_t address = rows.FieldIndex("АвторMail"_ru);
  for (; !rows.Eof(); rows.MoveNext()) addresses.emplace_back(rows.Text(address));
  return addresses;
}

std::string NoEmailsText(std::string_view nick) {
  return Cat(nick, " за время своего присутствия на форуме не засветил ни одного своего E-mail адреса"_ru);
}

std::optional<std::string> LookUpEmails(sql::Connection& connection, std::string_view nick) {
  if (text::Trim(nick).empty()) return std::nullopt;
  const std::vector<std::string> addresses = EmailsOf(connection, nick);
  if (addresses.empty()) return NoEmailsText(nick);
  std::string list = Cat(nick, " имеет следующие адреса : "_ru, "\r\n\r\n");
  for (const std::string& address : addresses) list += Cat(address, "\r\n");
  return list;
}
