#include "explorer/empty_tree.h"

#include "base/ru_literal.h"

namespace {

constexpr std::string_view kEmptyBase =
    "В этой базе пока нет ни одного сообщения. Загрузите их с форума: кнопка «Загрузить» (F9). Если страницы форума сохранены на диске, возьмите сообщения из них: «Файл — Импортировать сохранённые страницы…» (Ctrl+I)."_ru;

}  // namespace

std::string EmptyTreeText(sql::Connection& connection, const BuiltTree& built) {
  if (built.messages > 0) return built.status;
  const bool has_older = !connection.OpenSnapshot("select top 1 Код from База order by Код"_ru).Eof();
  return has_older ? built.status : std::string(kEmptyBase);
}
