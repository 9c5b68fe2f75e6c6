#include "base/cat.h"
#include "base/cp1251.h"
#include "base/ru_literal.h"
#include "cli/command.h"
#include "cli/json_lines.h"
#include "cli/open_base.h"
#include "jet/column_codec.h"
#include "jet/database.h"
#include "jet/text_codec.h"
#include "sql/connection.h"
#include "sql/parser.h"
#include "text/dates.h"
#include "text/numbers.h"

namespace cli {
namespace {

using jet::ColumnType;

/// Prints whole tables with all of Unicode, which the core's Windows-1251 would not hold.
class Dump {
 public:
  Dump(jet::Database& base, int code_page, std::ostream& out) : base_(base), code_page_(code_page), out_(out) {}

  void Print(const jet::CatalogTable& listed) {
    const jet::Table table = base_.OpenTableAt(listed.definition);
    PrintHead(Decoded(listed.stored_name), table.def());
    for (jet::TableCursor cursor = table.Scan(); cursor.Next();) PrintRow(table.def(), cursor.row());
  }

 private:
  std::string Decoded(std::string_view stored) const {
    return jet::DecodeUtf8(base_.version(), AsBytes(stored), code_page_);
  }

  void PrintHead(const std::string& name, const jet::TableDef& def) {
    line_ = "{\"table\": ";
    json_lines::AppendText(name, line_);
    line_.append(", \"columns\": [");
    for (const jet::Column& column : def.columns) {
      if (&column != &def.columns.front()) line_.append(", ");
      line_.append("[");
      json_lines::AppendText(Decoded(column.stored_name), line_);
      line_.append(Cat(", \"", json_lines::TypeName(column.type), "\"]"));
    }
    out_ << line_ << "]}\n";
  }

  void PrintRow(const jet::TableDef& def, const jet::Row& row) {
    line_ = "[";
    for (const jet::Column& column : def.columns) {
      if (line_.size() > 1) line_.append(", ");
      if (IsText(column.type) && !row.IsNull(column)) {
        row.ReadStored(column, stored_);
        json_lines::AppendText(Decoded(stored_), line_);
      } else {
        json_lines::AppendValue(row.Get(column), line_);
      }
    }
    out_ << line_ << "]\n";
  }

  jet::Database& base_;
  int code_page_;
  std::ostream& out_;
  std::string line_, stored_;
};

int CodePage(const Arguments& arguments) {
  constexpr int kOwn = 1251;
  const auto written = arguments.Value("--codepage");
  if (!written) return kOwn;
  const bool is_number = !written->empty() && written->find_first_not_of("0123456789") == std::string::npos;
  const std::int32_t page = is_number && written->size() < 6 ? text::LenientLong(*written) : 0;
  if (!jet::KnowsCodePage(page)) throw UsageError(Cat("Неизвестная кодовая страница: "_ru, cp1251::FromUtf8(*written)));
  return page;
}

void DumpTables(const Arguments& arguments, Context& context) {
  const int code_page = CodePage(arguments);
  jet::Database base = jet::Database::Open(context.files, arguments[0], jet::Access::kRead);
  const jet::Database::Reading reading(base);
  Dump dump(base, code_page, context.out);
  for (const jet::CatalogTable& table : base.Tables()) dump.Print(table);
}

void PrintJson(sql::Recordset& rows, std::ostream& out) {
  for (std::string line; !rows.Eof(); rows.MoveNext()) {
    line = "[";
    for (std::size_t field = 0; field < rows.Fields().size(); ++field) {
      if (field > 0) line.append(", ");
      json_lines::AppendValue(rows.Get(field), line);
    }
    out << line << "]\n";
  }
}

/// As people read it; Null is empty, a date 2002-03-15 09:05:00.
std::string ShownText(sql::Recordset& rows, std::size_t field) {
  const ColumnType type = rows.Fields()[field].type;
  if (rows.IsNull(field)) return {};
  if (type == ColumnType::kDateTime) return text::FormatDate(*rows.Date(field), "yyyy-mm-dd hh:mm:ss");
  if (type == ColumnType::kBinary || type == ColumnType::kOle || type == ColumnType::kLongBinary)
    return Cat(std::get<jet::Binary>(rows.Get(field)).bytes.size(), " байт");
  return cp1251::ToUtf8(rows.Text(field));
}

std::string CsvQuoted(const std::string& value) {
  if (value.find_first_of(",\"\r\n") == std::string::npos) return value;
  std::string quoted = "\"";
  for (const char c : value) quoted.append(c == '"' ? 2 : 1, c);
  return quoted + '"';
}

/// Tabs and line breaks become blanks, so that a row stays a line.
std::string Flattened(std::string value) {
  for (char& c : value)
    if (c == '\t' || c == '\r' || c == '\n') c = ' ';
  return value;
}

struct TableForm {
  std::string_view separator, line_end;
  std::string (*escape)(std::string);
};
constexpr TableForm kCsv{",", "\r\n", [](std::string value) { return CsvQuoted(value); }};
constexpr TableForm kTabbed{"\t", "\n", Flattened};

void PrintTable(sql::Recordset& rows, const TableForm& form, std::ostream& out) {
  const std::size_t fields = rows.Fields().size();
  for (std::size_t field = 0; field < fields; ++field)
    out << (field > 0 ? form.separator : "") << form.escape(cp1251::ToUtf8(rows.Fields()[field].name));
  out << form.line_end;
  for (; !rows.Eof(); rows.MoveNext()) {
    for (std::size_t field = 0; field < fields; ++field)
      out << (field > 0 ? form.separator : "") << form.escape(ShownText(rows, field));
    out << form.line_end;
  }
}

bool IsDeletion(std::string_view statement) {
  return sql::LooksLikeStatement(statement) && std::holds_alternative<sql::Delete>(sql::ParseStatement(statement));
}

void DeleteRows(const Arguments& arguments, std::string_view statement, Context& context) {
  OpenBase base(arguments, context, jet::Access::kReadWrite);
  const auto deleted = base.connection.Execute(statement);
  context.out << "Удалено записей: " << deleted << '\n';
}

void Sql(const Arguments& arguments, Context& context) {
  if (arguments.Has("--json") && arguments.Has("--csv")) throw UsageError("Либо --json, либо --csv"_ru);
  const std::string statement = cp1251::FromUtf8(arguments[1]);
  if (IsDeletion(statement)) return DeleteRows(arguments, statement, context);
  OpenBase base(arguments, context, jet::Access::kRead);
  sql::Recordset rows = base.connection.OpenSnapshot(statement);
  if (arguments.Has("--json")) {
    PrintJson(rows, context.out);
  } else {
    PrintTable(rows, arguments.Has("--csv") ? kCsv : kTabbed, context.out);
  }
}

constexpr Option kSqlOptions[] = {{"--json", false}, {"--csv", false}};
constexpr Option kDumpOptions[] = {{"--codepage", true}};

constexpr Command kCommands[] = {
    {"sql", "БАЗА ЗАПРОС [--json|--csv]",
     "выполнить запрос: напечатать записи, которые выбирает SELECT, или удалить те, что назвал DELETE", 2, 2,
     kSqlOptions, Sql},
    {"dump", "БАЗА [--codepage 1250|1251|1252]", "напечатать все таблицы в виде JSON Lines", 1, 1, kDumpOptions,
     DumpTables},
};

}  // namespace

std::span<const Command> RowCommands() { return kCommands; }

}  // namespace cli
