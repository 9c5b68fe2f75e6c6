#include "store/new_base.h"

#include "base/cat.h"
#include "base/ole_date.h"
#include "base/ru_literal.h"
#include "config/paths.h"
#include "jet/table_design.h"

namespace {

using jet::ColumnType;

// As wide as a text can be: what a page says is cut nowhere.
constexpr std::uint16_t kTextWidth = 255;

// Columns of indexes; clang 14 cannot convert such literals inside a list.
constexpr std::string_view kКод = "Код"_ru, kВответ = "Вответ"_ru;

constexpr jet::NewColumn kColumns[] = {
    {.name = "Код"_ru, .type = ColumnType::kLong},
    {.name = "Вответ"_ru, .type = ColumnType::kLong},
    {.name = "Тема"_ru, .type = ColumnType::kText, .length = kTextWidth},
    {.name = "Дата"_ru, .type = ColumnType::kDateTime},
    {.name = "Автор"_ru, .type = ColumnType::kText, .length = kTextWidth},
    {.name = "АвторMail"_ru, .type = ColumnType::kText, .length = kTextWidth},
    {.name = "Текст"_ru, .type = ColumnType::kMemo},
    {.name = "Картинка"_ru, .type = ColumnType::kText, .length = kTextWidth},
};

// The parts of a saved query.
constexpr int kBegin = 0, kType = 1, kOptions = 3, kSource = 5, kColumn = 6, kOrder = 11, kEnd = 255;
constexpr int kSelect = 1, kAllColumns = 1;

// SELECT [Код], [Вответ], [Тема], [Дата], [Автор] FROM [База]
constexpr jet::QueryPiece kIndexQuery[] = {
    {.attribute = kBegin, .flag = 0},
    {.attribute = kEnd},
    {.attribute = kType, .flag = kSelect},
    {.attribute = kOptions, .flag = 0},
    {.attribute = kSource, .name1 = "База"_ru},
    {.attribute = kColumn, .order = 1, .flag = 0, .expression = "[Код]"_ru},
    {.attribute = kColumn, .order = 2, .flag = 0, .expression = "[Вответ]"_ru},
    {.attribute = kColumn, .order = 3, .flag = 0, .expression = "[Тема]"_ru},
    {.attribute = kColumn, .order = 4, .flag = 0, .expression = "[Дата]"_ru},
    {.attribute = kColumn, .order = 5, .flag = 0, .expression = "[Автор]"_ru},
};

// SELECT * FROM [База] ORDER BY [Код]
constexpr jet::QueryPiece kAllQuery[] = {
    {.attribute = kBegin, .flag = 0},           {.attribute = kEnd},
    {.attribute = kType, .flag = kSelect},      {.attribute = kOptions, .flag = kAllColumns},
    {.attribute = kSource, .name1 = "База"_ru}, {.attribute = kOrder, .expression = "[Код]"_ru},
};

std::vector<jet::NewProperties> Properties() {
  std::vector<jet::NewProperties> properties;
  for (const jet::NewColumn& column : kColumns)
    if (column.type == ColumnType::kText || column.type == ColumnType::kMemo)
      properties.push_back({.column = column.name, .allow_zero_length = true});
  properties.push_back({.column = "Вответ"_ru, .default_value = "0"});
  return properties;
}

std::string ForumAndYear(std::string_view forum, const Clock& clock) {
  return Cat(forum, "_", ole_date::ToCivil(clock.Now()).year);
}

}  // namespace

std::unique_ptr<jet::UnfinishedBase> BeginMessageBase(FileSystem& files, const std::string& path,
                                                      const jet::NewBase& kind, const Clock& clock) {
  const jet::NewIndex indexes[] = {jet::PrimaryKey("PrimaryKey", {kКод}), {.name = "Вответ"_ru, .columns = {kВответ}}};
  return jet::BeginBase(files, path, kind, clock.Now(), [&](jet::CatalogWriter& catalog, const jet::Header& header) {
    catalog.CreateTable("База"_ru, jet::DesignTable(header, kColumns, indexes), Properties());
    catalog.CreateQuery("БазаИндекс"_ru, kIndexQuery);
    catalog.CreateQuery("БазаЗапрос"_ru, kAllQuery);
  });
}

void CreateMessageBase(FileSystem& files, const std::string& path, const jet::NewBase& kind, const Clock& clock) {
  BeginMessageBase(files, path, kind, clock)->PublishNew();
}

std::string ProposedBaseName(std::string_view forum, const Clock& clock) {
  return Cat(ForumAndYear(forum, clock), ".mdb");
}

std::string ProposedBasePath(const FileSystem& files, const std::string& folder, std::string_view forum,
                             const Clock& clock) {
  std::string path = paths::Join(folder, ProposedBaseName(forum, clock));
  for (int next = 2; files.Exists(path); ++next)
    path = paths::Join(folder, Cat(ForumAndYear(forum, clock), "_", next, ".mdb"));
  return path;
}
