#include "jet/check_catalog.h"

#include "base/cp1251.h"
#include "jet/catalog.h"

namespace jet {
namespace {

const Column& Require(const TableDef& def, std::string_view name) {
  const Column* const column = def.FindColumn(name);
  if (column == nullptr) throw FormatError("В системной таблице нет нужного столбца"_ru, def.page);
  return *column;
}

// Equal for names that differ in letter case only. Of a name that Windows-1251 cannot say whole the
// stored bytes are compared.
std::string Comparable(std::string_view name, std::string_view stored) {
  return name.find(cp1251::kReplacement) == std::string_view::npos ? cp1251::Folded(name) : std::string(stored);
}

}  // namespace

std::function<void(const Row&)> CatalogCheck::ObjectVisitor(const TableDef& def) {
  const Column &id = Require(def, "Id"), &name = Require(def, "Name"), &type = Require(def, "Type");
  const Column* const parent = def.FindColumn("ParentId");
  if (parent == nullptr) context_.Error(std::string("Каталог: неизвестно, какие объекты куда относятся"_ru));
  return [&, parent, this](const Row& row) {
    Object object{row.Int(id), parent != nullptr ? row.Int(*parent) : 0, row.Int(type), "", ""};
    row.AppendText(name, object.name);
    row.ReadStored(name, object.stored_name);
    Add(object);
  };
}

void CatalogCheck::Add(const Object& object) {
  if (!ids_.insert(object.id).second)
    context_.Error(Cat("Каталог: номер объекта «"_ru, object.name, "» занят другим объектом"_ru));
  if (!names_.emplace(object.parent, Comparable(object.name, object.stored_name)).second)
    context_.Error(Cat("Каталог: объектов с именем «"_ru, object.name, "» несколько"_ru));
  if (object.type == object_type::kQuery) queries_.insert(object.id);
  if (object.type == object_type::kTable && object.id > 0)
    tables_.push_back({object.name, static_cast<std::uint32_t>(object.id)});
}

std::function<void(const Row&)> CatalogCheck::PieceVisitor(const TableDef& def) {
  const Column& object = Require(def, "ObjectId");
  return [&, this](const Row& row) { pieces_.insert(row.Int(object)); };
}

void CatalogCheck::CheckPieces() const {
  for (const std::int32_t id : pieces_)
    if (!queries_.contains(id)) context_.Error(Cat("Каталог: есть части запроса, которого нет (номер "_ru, id, ")"));
}

}  // namespace jet
