#include <algorithm>
#include <cstdio>

#include "base/cp1251.h"
#include "cli/command.h"
#include "jet/database.h"
#include "jet/text_codec.h"
#include "sql/connection.h"

namespace cli {
namespace {

jet::Database OpenBase(const Arguments& arguments, Context& context) {
  return jet::Database::Open(context.files, arguments[0], jet::Access::kRead);
}

std::string_view VersionName(jet::Version version) { return version == jet::Version::kJet3 ? "Jet 3" : "Jet 4"; }

std::string Hexadecimal(unsigned number) {
  char digits[16];
  std::snprintf(digits, sizeof digits, "0x%04X", number);
  return digits;
}

void Info(const Arguments& arguments, Context& context) {
  jet::Database base = OpenBase(arguments, context);
  const jet::Database::Reading reading(base);
  context.out << "Формат: " << VersionName(base.version()) << "\nКодовая страница: " << base.code_page()
              << "\nПорядок сортировки: " << Hexadecimal(base.collation()) << "\nСтраниц: " << base.page_count()
              << "\nТаблиц: " << base.Tables().size() << "\nСохранённых запросов: " << base.Queries().size() << '\n';
  for (const jet::CatalogTable& table : base.Tables())
    context.out << "Записей в таблице «" << jet::DecodeUtf8(base.version(), AsBytes(table.stored_name))
                << "»: " << base.OpenTableAt(table.definition).CountRows() << '\n';
}

void Tables(const Arguments& arguments, Context& context) {
  jet::Database base = OpenBase(arguments, context);
  const jet::Database::Reading reading(base);
  for (const jet::CatalogTable& table : base.Tables())
    context.out << jet::DecodeUtf8(base.version(), AsBytes(table.stored_name)) << '\n';
}

/// Tabs and line breaks would tear a line apart.
std::string OnOneLine(std::string text) {
  std::replace_if(
      text.begin(), text.end(), [](char c) { return c == '\t' || c == '\r' || c == '\n'; }, ' ');
  return text;
}

void Queries(const Arguments& arguments, Context& context) {
  jet::Database base = OpenBase(arguments, context);
  sql::Connection connection(base, context.clock);
  for (const std::string& name : connection.QueryNames())
    context.out << cp1251::ToUtf8(name) << '\t' << cp1251::ToUtf8(OnOneLine(connection.QueryText(name))) << '\n';
}

constexpr Command kCommands[] = {
    {"info", "БАЗА", "показать формат, размер и число записей базы", 1, 1, {}, Info},
    {"tables", "БАЗА", "перечислить таблицы, по одной в строке", 1, 1, {}, Tables},
    {"queries", "БАЗА", "перечислить сохранённые запросы: имя, табуляция, текст", 1, 1, {}, Queries},
};

}  // namespace

std::span<const Command> BaseCommands() { return kCommands; }

}  // namespace cli
