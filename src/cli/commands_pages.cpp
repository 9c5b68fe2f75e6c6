#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "base/cat.h"
#include "base/cp1251.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "cli/chosen_clock.h"
#include "cli/command.h"
#include "cli/json_lines.h"
#include "download/page_code.h"
#include "jet/value.h"
#include "saved_pages/forum_pages.h"
#include "saved_pages/page_files.h"

namespace cli {
namespace {

constexpr std::string_view kColumns[] = {"Код"_ru,   "Вответ"_ru,    "Тема"_ru,  "Дата"_ru,
                                         "Автор"_ru, "АвторMail"_ru, "Текст"_ru, "Картинка"_ru};

void AppendMember(std::string_view name, const jet::Value& value, std::string& line) {
  line.append(", ");
  json_lines::AppendText(cp1251::ToUtf8(name), line);
  line.append(": ");
  json_lines::AppendValue(value, line);
}

struct ToValue {
  jet::Value operator()(NotSet) const { return jet::Null{}; }
  jet::Value operator()(std::string_view text) const { return std::string(text); }
  jet::Value operator()(std::int32_t number) const { return number; }
  jet::Value operator()(OleDate date) const { return date; }
};

/// All columns of a row, in the table's order; those that the importer does not set are Null.
void AppendRow(const StoredFields& fields, std::string& line) {
  for (const std::string_view column : kColumns) {
    const auto field =
        std::find_if(fields.begin(), fields.end(), [&](const StoredField& set) { return set.name == column; });
    AppendMember(column, field == fields.end() ? jet::Null{} : std::visit(ToValue{}, field->value), line);
  }
}

/// Prints pages as they would be stored.
class PageParser {
 public:
  PageParser(const Arguments& arguments, Context& context)
      : context_(context), clock_(arguments.Value("--now"), context.clock), forum_(ForumCode(arguments[0]), clock_) {
    if (const auto path = arguments.Value("--author-page")) author_page_ = page_files::Read(context.files, *path);
  }

  /// @return false when the page, or the message on it, cannot be read
  bool Print(const std::string& path) {
    try {
      const std::string page = page_files::Read(context_.files, path);
      std::string line = "{\"page\": ";
      json_lines::AppendText(path, line);
      const int code = forum_.Check(page);
      line.append(Cat(", \"check\": ", code));
      const bool read = code != page_code::kMessage || AppendMessage(path, page, line);
      context_.out << line << "}\n";
      return read;
    } catch (const FileError& error) {
      return Tell(path, error);
    }
  }

 private:
  bool Tell(const std::string& path, const Error& error) const {
    context_.errors << path << ": " << cp1251::ToUtf8(error.what()) << '\n';
    return false;
  }

  /// Nothing is appended for a message that could not be stored.
  bool AppendMessage(const std::string& path, const std::string& page, std::string& line) const try {
    const std::optional<std::int32_t> number = page_files::NumberOf(path);
    const MessageRecord message = forum_.Parse(page, number.value_or(0), AuthorPage(path));
    StoredFields fields = forum_.FieldsToStore(message);
    // The page does not tell its number: a name without one leaves it open.
    if (!number) std::erase_if(fields, [](const StoredField& field) { return field.name == "Код"_ru; });
    AppendRow(fields, line);
    return true;
  } catch (const Error& error) {
    return Tell(path, error);
  }

  std::string AuthorPage(const std::string& path) const {
    if (author_page_ || !forum_.HasAuthorPages()) return author_page_.value_or("");
    return page_files::ReadAuthorPageOf(context_.files, path);
  }

  Context& context_;
  ChosenClock clock_;
  ForumPages forum_;
  std::optional<std::string> author_page_;
};

void Parse(const Arguments& arguments, Context& context) {
  PageParser parser(arguments, context);
  std::size_t unreadable = 0;
  for (std::size_t page = 1; page < arguments.size(); ++page)
    if (!parser.Print(arguments[page])) ++unreadable;
  if (unreadable > 0) throw Error(error_number::kNoSuchItem, Cat("Не прочитано страниц: "_ru, unreadable));
}

constexpr Option kParseOptions[] = {{"--author-page", true}, {"--now", true}};

constexpr Command kCommands[] = {
    {"parse", "ФОРУМ СТРАНИЦА... [--author-page ФАЙЛ] [--now ВРЕМЯ]",
     "показать сообщения сохранённых страниц так, как они легли бы в базу, объект JSON на страницу", 2, kAnyNumber,
     kParseOptions, Parse},
};

}  // namespace

std::span<const Command> PageCommands() { return kCommands; }

}  // namespace cli
