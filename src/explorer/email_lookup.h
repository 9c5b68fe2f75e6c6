#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "sql/connection.h"

/// The statement that finds the addresses of an author, the nick in it as typed.
std::string EmailStatement(std::string_view nick);

/// Every address that an author has ever given, each once; none for a nick of blanks alone.
/// @throws SqlError when the nick makes the statement a wrong one, Error when the base cannot be read
std::vector<std::string> EmailsOf(sql::Connection& connection, std::string_view nick);

/// What a box tells of an author who gave none.
std::string NoEmailsText(std::string_view nick);

/// What a box tells about the e-mail addresses that an author has ever given.
/// @return none for a nick of blanks alone. @throws as EmailsOf
std::optional<std::string> LookUpEmails(sql::Connection& connection, std::string_view nick);
