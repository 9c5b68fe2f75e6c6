#include "sql/melt.h"

#include <algorithm>
#include <utility>

#include "base/cat.h"
#include "base/cp1251.h"
#include "base/ru_literal.h"
#include "sql/bind.h"
#include "sql/sql_errors.h"

namespace sql {
namespace {

/// Replaces the names that a saved query shows by what stands behind them.
class Renamer {
 public:
  Renamer(const SourceName& name, const Select& query) : name_(name), query_(query) {}

  void Rename(std::vector<SelectItem>& items) const {
    std::vector<SelectItem> renamed;
    for (SelectItem& item : items) {
      if (item.star) {
        if (!NamesSource(item.table, name_)) ThrowUnknownTable(item.table);
        renamed.insert(renamed.end(), query_.items.begin(), query_.items.end());
      } else {
        if (item.expression.kind == ExpressionKind::kColumn && item.alias.empty())
          item.alias = Shown(item.expression.name);
        Rename(item.expression);
        renamed.push_back(std::move(item));
      }
    }
    CheckColumnCount(renamed.size());
    items = std::move(renamed);
  }

  void Rename(Expression& expression) const {
    for (Expression& operand : expression.operands) Rename(operand);
    if (expression.kind != ExpressionKind::kColumn) return;
    if (!NamesSource(expression.table, name_)) ThrowUnknownField(Cat(expression.table, ".", expression.name));
    if (const SelectItem* const item = FindItem(expression.name)) {
      expression = item->expression;
    } else if (ShowsAll()) {
      expression.table.clear();
    } else {
      ThrowUnknownField(expression.name);
    }
  }

  const SelectItem* FindItem(std::string_view name) const {
    const auto found = std::find_if(query_.items.begin(), query_.items.end(), [name](const SelectItem& item) {
      return !item.star && cp1251::EqualIgnoringCase(ShownName(item), name);
    });
    return found == query_.items.end() ? nullptr : &*found;
  }

 private:
  /// As the query spells the name.
  std::string Shown(const std::string& name) const {
    const SelectItem* const item = FindItem(name);
    return item == nullptr || item->alias.empty() ? std::string() : item->alias;
  }

  bool ShowsAll() const {
    return std::any_of(query_.items.begin(), query_.items.end(), [](const SelectItem& item) { return item.star; });
  }

  const SourceName& name_;
  const Select& query_;
};

bool Names(const std::vector<SelectItem>& items, const Expression& column) {
  return std::any_of(items.begin(), items.end(),
                     [&](const SelectItem& item) { return cp1251::EqualIgnoringCase(item.alias, column.name); });
}

}  // namespace

bool IsProjection(const Select& query) {
  return !query.distinct && !query.top && !query.having && query.group_by.empty() &&
         std::all_of(query.items.begin(), query.items.end(), [](const SelectItem& item) {
           return item.star || item.expression.kind == ExpressionKind::kColumn;
         });
}

Select Melt(Select outer, const Select& query) {
  const SourceName name = std::exchange(outer.from, query.from);
  const Renamer renamer(name, query);
  const std::vector<SelectItem> as_written = outer.items;
  renamer.Rename(outer.items);
  if (outer.where) renamer.Rename(*outer.where);
  for (Expression& key : outer.group_by) renamer.Rename(key);
  if (outer.having) renamer.Rename(*outer.having);
  for (OrderItem& item : outer.order_by) {
    const bool own_name = item.expression.kind == ExpressionKind::kColumn && item.expression.table.empty() &&
                          renamer.FindItem(item.expression.name) == nullptr && Names(as_written, item.expression);
    if (!own_name) renamer.Rename(item.expression);
  }
  if (query.where) outer.where = Conjunction(std::move(outer.where), *query.where);
  if (outer.order_by.empty() && !IsGrouped(outer)) outer.order_by = query.order_by;
  return outer;
}

void CheckColumnCount(std::size_t columns) {
  if (columns > kMostColumns) ThrowBadStatement("слишком много столбцов"_ru);
}

bool NamesSource(std::string_view table, const SourceName& source) {
  return table.empty() || cp1251::EqualIgnoringCase(table, source.alias.empty() ? source.name : source.alias);
}

const std::string& ShownName(const SelectItem& item) { return item.alias.empty() ? item.expression.name : item.alias; }

}  // namespace sql
