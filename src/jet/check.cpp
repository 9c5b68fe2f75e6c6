#include "jet/check.h"

#include <algorithm>

#include "base/cp1251.h"
#include "jet/check_catalog.h"
#include "jet/check_context.h"
#include "jet/check_maps.h"
#include "jet/check_table.h"
#include "jet/table_def_codec.h"

namespace jet {
namespace {

constexpr std::string_view kObjects = "MSysObjects", kQueries = "MSysQueries";

class BaseCheck {
 public:
  BaseCheck(const PageFile& file, Progress& progress, CheckResult& result)
      : context_(file, progress, result), maps_(context_), catalog_(context_) {}

  void Run();

 private:
  void CheckTable(const std::string& name, std::uint32_t definition);
  bool ClaimDefinition(const std::string& name, std::uint32_t first);
  TableCheck::Visit VisitorOf(const std::string& name, const TableDef& def);
  void CheckPageUse();
  void ReportLost(const std::vector<std::uint32_t>& pages);

  CheckContext context_;
  MapCheck maps_;
  CatalogCheck catalog_;
};

void BaseCheck::Run() {
  context_.Claim(0, context_.NewOwner("заголовок базы"_ru));
  context_.Advance();
  maps_.CheckGlobal();
  CheckTable(std::string(kObjects), kCatalogPage);
  const std::vector<CatalogCheck::ListedTable> tables = catalog_.tables();
  for (const CatalogCheck::ListedTable& table : tables)
    if (table.definition != kCatalogPage && !context_.stopped()) CheckTable(table.name, table.definition);
  if (context_.stopped()) return;
  catalog_.CheckPieces();
  CheckPageUse();
}

void BaseCheck::CheckTable(const std::string& name, std::uint32_t definition) {
  const std::string place = Cat("Таблица «"_ru, name, "»"_ru);
  context_.Try(place, [&] {
    if (!ClaimDefinition(name, definition)) return;
    const TableDef def = ReadTableDef(context_.file(), definition);
    TableCheck(context_, maps_, def, name).Run(VisitorOf(name, def));
  });
}

// A definition that goes round in a circle claims a page twice.
bool BaseCheck::ClaimDefinition(const std::string& name, std::uint32_t first) {
  const CheckContext::Owner owner = context_.NewOwner(Cat("определение таблицы «"_ru, name, "»"_ru));
  for (std::uint32_t page = first; page != 0;) {
    if (!context_.Claim(page, owner)) return false;
    context_.Advance();
    const Page handle = context_.file().Read(page);
    page = handle.kind() == page_kind::kTableDef ? handle.U32(kNextDefinitionAt) : 0;
  }
  return true;
}

TableCheck::Visit BaseCheck::VisitorOf(const std::string& name, const TableDef& def) {
  TableCheck::Visit visit;
  context_.Try("Каталог"_ru, [&] {
    if (def.page == kCatalogPage) visit = catalog_.ObjectVisitor(def);
    if (name == kQueries) visit = catalog_.PieceVisitor(def);
  });
  return visit;
}

void BaseCheck::CheckPageUse() {
  std::vector<std::uint32_t> lost;
  for (std::uint32_t page = 0; page < context_.file().page_count(); ++page) {
    const CheckContext::Owner owner = context_.OwnerOf(page);
    if (owner == CheckContext::kNobody && !maps_.IsFree(page)) lost.push_back(page);
    if (owner != CheckContext::kNobody && maps_.IsFree(page))
      context_.Error(Cat("Страница "_ru, page, " числится свободной, но занята: "_ru, context_.NameOf(owner)));
  }
  if (!lost.empty()) ReportLost(lost);
}

void BaseCheck::ReportLost(const std::vector<std::uint32_t>& pages) {
  constexpr std::size_t kMostNamed = 10;
  std::string text = Cat("Страниц, которые заняты, но никому не принадлежат: "_ru, pages.size(), " ("_ru);
  for (std::size_t i = 0; i < std::min(pages.size(), kMostNamed); ++i)
    text += Cat(i == 0 ? std::string_view() : ", ", pages[i]);
  context_.Warning(text + (pages.size() > kMostNamed ? ", ...)" : ")"));
}

}  // namespace

CheckResult Check(Database& base, Progress& progress) {
  const Database::Reading reading(base);
  CheckResult result;
  BaseCheck(base.pages(), progress, result).Run();
  if (result.complete) progress.Advance(100);
  return result;
}

}  // namespace jet
