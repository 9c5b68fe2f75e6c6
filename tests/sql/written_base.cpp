#include "written_base.h"

#include "test_base.h"

namespace sql {
namespace {

using jet::ColumnType;

constexpr jet::NewColumn kColumns[] = {
    {.name = "Код"_ru, .type = ColumnType::kLong},
    {.name = "Вответ"_ru, .type = ColumnType::kLong},
    {.name = "Тема"_ru, .type = ColumnType::kText, .length = 50},
    {.name = "Дата"_ru, .type = ColumnType::kDateTime},
    {.name = "Автор"_ru, .type = ColumnType::kText, .length = 255},
    {.name = "Почта"_ru, .type = ColumnType::kText, .length = 10},
    {.name = "Текст"_ru, .type = ColumnType::kMemo},
};
constexpr jet::NewProperties kDemands[] = {{.column = "Вответ"_ru, .default_value = "=0"},
                                           {.column = "Дата"_ru, .default_value = "Date()"},
                                           {.column = "Автор"_ru, .required = true},
                                           {.column = "Почта"_ru, .allow_zero_length = true}};
// SELECT * FROM База WHERE [Вответ]<>0 ORDER BY [Код] DESC
constexpr jet::QueryPiece kReplies[] = {
    {.attribute = 0, .flag = 0},
    {.attribute = 255},
    {.attribute = 1, .flag = 1},
    {.attribute = 3, .flag = 1},
    {.attribute = 5, .name1 = "База"_ru},
    {.attribute = 8, .expression = "[Вответ]<>0"_ru},
    {.attribute = 11, .name1 = "D", .expression = "[Код]"_ru},
};

}  // namespace

std::string MessageImage(jet::Version version) {
  FaultyFileSystem disk;
  const jet::NewIndex indexes[] = {jet::PrimaryKey("PrimaryKey", {"Код"_ru}),
                                   {.name = "Вответ"_ru, .columns = {"Вответ"_ru}}};
  jet::CreateBase(disk, kPath, {.version = version}, OleDate{37000},
                  [&](jet::CatalogWriter& catalog, const jet::Header& header) {
                    catalog.CreateTable("База"_ru, jet::DesignTable(header, kColumns, indexes), kDemands);
                    catalog.CreateQuery("Ответы"_ru, kReplies);
                  });
  WrittenBase written(disk.Content(kPath));
  Recordset rows = written.connection.OpenDynaset("База"_ru);
  for (const std::int32_t number : {2, 1, 3, 5}) Add(rows, number, {{"Вответ"_ru, number == 1 ? 0 : 1}});
  return written.disk.Content(kPath);
}

std::vector<std::string> Messages(Connection& connection) {
  std::vector<std::string> messages;
  for (Recordset rows = connection.OpenSnapshot("База"_ru); !rows.Eof(); rows.MoveNext()) {
    std::string& line = messages.emplace_back();
    for (std::size_t field = 0; field < 6; ++field) line += Shown(rows.Get(field)) + " ";
    line += std::to_string(rows.Text(6).size());
  }
  return messages;
}

void Add(Recordset& rows, std::int32_t number, std::initializer_list<std::pair<std::string_view, jet::Value>> fields) {
  rows.AddNew();
  rows.Set("Код"_ru, number);
  rows.Set("Автор"_ru, std::string("Петя"_ru));
  for (const auto& [name, value] : fields) rows.Set(name, value);
  rows.Update();
}

}  // namespace sql
