#include "jet/check_table.h"

#include <algorithm>

#include "jet/check_index.h"
#include "jet/column_codec.h"
#include "jet/data_page.h"
#include "jet/long_value.h"

namespace jet {
namespace {

// The name that users gave an index; a foreign key's only when nothing else shares its tree.
std::string IndexName(const TableDef& def, std::size_t real) {
  const LogicalIndex* best = nullptr;
  for (const LogicalIndex& index : def.logical_indexes)
    if (index.real == real && (best == nullptr || best->kind == IndexKind::kForeign)) best = &index;
  return best != nullptr ? best->name : Cat("№ "_ru, real);
}

}  // namespace

TableCheck::TableCheck(CheckContext& context, MapCheck& maps, const TableDef& def, std::string_view name)
    : context_(context),
      maps_(maps),
      def_(def),
      table_(context.file(), def),
      name_(Cat("Таблица «"_ru, name, "»"_ru)),
      data_(context.NewOwner(Cat("данные таблицы «"_ru, name, "»"_ru))) {}

void TableCheck::Run(const Visit& visit) {
  CheckDataMaps();
  for (const Column& column : def_.columns)
    if (IsLongValue(column.type))
      long_values_.emplace_back(context_, maps_, column, Cat(name_, ", поле «"_ru, column.name, "»"_ru));
  for (const std::uint32_t page : pages_) {
    CheckPage(page, visit);
    context_.Advance();
    if (context_.stopped()) return;
  }
  CheckHiddenRows();
  for (LongValueCheck& column : long_values_) column.CheckLeftovers();
  CheckIndexes();
  if (!context_.stopped()) CheckRowCount();
}

void TableCheck::CheckDataMaps() {
  for (const std::uint32_t page : maps_.PagesOf(def_.owned_map, Cat(name_, ", карта страниц"_ru)))
    if (context_.Claim(page, data_)) pages_.push_back(page);
  for (const std::uint32_t page : maps_.PagesOf(def_.free_map, Cat(name_, ", карта страниц с местом"_ru)))
    if (context_.OwnerOf(page) != data_)
      context_.Error(Cat(name_, ": в карте страниц с местом чужая страница "_ru, page));
}

void TableCheck::CheckPage(std::uint32_t number, const Visit& visit) {
  if (!CheckRowPage(context_, number, def_.page, name_)) return;
  const Page page = context_.file().Read(number);
  const DataPage rows(context_.layout(), page);
  for (std::size_t slot = 0; slot < rows.slot_count(); ++slot) {
    const RowId id{number, static_cast<std::uint8_t>(slot)};
    switch (rows.Flags(slot)) {
      case kRowIsDeleted: continue;
      case kRowIsHidden: hidden_.Insert(id); continue;
      case kRowIsPointer: context_.Try(name_, [&] { CheckPointer(id, rows.Row(slot)); }); break;
      default: break;
    }
    CheckRow(id, visit);
  }
}

// Where else it leads wrong, reading the row tells.
void TableCheck::CheckPointer(RowId from, Bytes pointer) {
  if (pointer.size() < kRowPointerSize) return;
  const RowId to = LoadRowPointer(pointer, 0);
  if (context_.OwnerOf(to.page) != data_)
    context_.Error(Cat(PlaceOf(name_, from), ": указатель ведёт на чужую страницу "_ru, to.page));
  else if (!reached_.Insert(to))
    context_.Error(Cat(PlaceOf(name_, from), ": на строку "_ru, to.slot, " страницы "_ru, to.page,
                       " ведёт и другой указатель"_ru));
}

void TableCheck::CheckRow(RowId id, const Visit& visit) {
  live_.Insert(id);
  bool whole = false;
  context_.Try(name_, [&] {
    table_.Read(id, row_);
    whole = CheckColumns(row_);
    if (whole && visit) visit(row_);
  });
  if (!whole) unreadable_.Insert(id);
}

bool TableCheck::CheckColumns(const Row& row) {
  const Version version = context_.layout().version;
  bool whole = true;
  auto long_value = long_values_.begin();
  for (const Column& column : def_.columns) {
    LongValueCheck* const check = IsLongValue(column.type) ? &*long_value++ : nullptr;
    if (column.type == ColumnType::kBoolean || row.IsNull(column)) continue;
    const Bytes stored = row.Stored(column);
    if (check != nullptr && !check->CheckValue(stored, row.id())) {
      whole = false;
      continue;
    }
    const bool decodes =
        check == nullptr
            ? DecodeValue(version, column, stored).has_value()
            : DecodeValue(version, column, LongValue(context_.file(), stored, row.id()).data()).has_value();
    if (decodes) continue;
    context_.Error(Cat(PlaceOf(name_, row.id()), ": поле «"_ru, column.name, "» повреждено"_ru));
    whole = false;
  }
  return whole;
}

void TableCheck::CheckHiddenRows() const {
  if (hidden_.size() == 0) return;
  for (const std::uint32_t page : pages_)
    for (unsigned slot = 0; slot < kMostSlots && hidden_.HasPage(page); ++slot) {
      const RowId id{page, static_cast<std::uint8_t>(slot)};
      if (hidden_.Contains(id) && !reached_.Contains(id))
        context_.Error(Cat(PlaceOf(name_, id), ": к перенесённой строке не ведёт ни один указатель"_ru));
    }
}

void TableCheck::CheckIndexes() {
  for (std::size_t i = 0; i < def_.real_indexes.size() && !context_.stopped(); ++i) {
    const std::string name = Cat(name_, ", индекс «"_ru, IndexName(def_, i), "»"_ru);
    const auto pages = maps_.PagesOf(def_.real_indexes[i].usage_map, Cat(name, ", карта страниц"_ru));
    IndexCheck(context_, table_, i, name, live_, unreadable_).Run(pages, pages_);
  }
}

void TableCheck::CheckRowCount() const {
  context_.Try(name_, [&] {
    const std::uint32_t told = table_.ExpectedRows();
    if (told != live_.size())
      context_.Warning(
          Cat(name_, ": число строк посчитано неверно: записано "_ru, told, ", на деле "_ru, live_.size()));
  });
}

}  // namespace jet
