#include "explorer/search.h"

#include "base/cat.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "sql/execute.h"
#include "text/strings.h"

/// Hits are read one by one: their bodies, which the statement asks for too, are not collected.
std::vector<FoundMessage> FindMessages(jet::Database& base, sql::Connection& connection, std::string_view typed,
                                       Progress& progress) {
  const jet::Database::Reading reading(base);
  sql::Recordset rows = connection.OpenDynaset(SearchStatement(typed), progress);
  const std::size_t number = rows.FieldIndex("Код"_ru), subject = rows.FieldIndex("Тема"_ru);
  std::vector<FoundMessage> found;
  for (; !rows.Eof(); rows.MoveNext()) found.push_back({rows.Int(number), std::string(rows.Text(subject))});
  return found;
}

std::string SearchStatement(std::string_view typed) {
  return Cat("select * from [База] where [Текст] Like '*"_ru, typed, "*' or [Тема] Like '*"_ru, typed, "*'");
}

std::string_view TextToMark(std::string_view typed) {
  return typed.find_first_of("*?#[") == std::string_view::npos ? typed : std::string_view();
}

void Search(MessageBase& base, std::string_view typed, Progress& progress, SearchView& view) {
  if (text::Trim(typed).empty()) return;
  view.ClearResults();
  view.SetStatus("Ждите....."_ru);
  try {
    const std::vector<FoundMessage> found = FindMessages(base.database(), base.connection(), typed, progress);
    view.SetStatus("Поиск закончен"_ru);
    view.ShowResults(found);
    view.SetStatus(Cat("Найдено "_ru, found.size(), " записей. Они доступны в разделе 'Результаты поиска'"_ru));
  } catch (const Error& error) {
    const bool stopped = error.number() == sql::kCancelled;
    view.SetStatus(stopped ? "Поиск остановлен"_ru : "Поиск не выполнен"_ru);
    if (!stopped) throw;
  }
}
