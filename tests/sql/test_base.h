#pragma once

#include <algorithm>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "base/cp1251.h"
#include "base/ole_date.h"
#include "base/progress.h"
#include "sql/execute.h"
#include "sql/packed_rows.h"
#include "sql/parser.h"
#include "sql/plan.h"

namespace sql {

inline std::string Ru(std::string_view utf8) { return cp1251::FromUtf8(utf8); }

inline const OleDate kNow = ole_date::FromCivil({.year = 2002, .month = 3, .day = 15, .hour = 12});

/// A value for eyes: Null, 5, 2.5, True, 'text', #days#.
inline std::string Shown(const jet::Value& value) {
  if (jet::IsNull(value)) return "Null";
  if (const auto* const truth = std::get_if<bool>(&value)) return *truth ? "True" : "False";
  std::string buffer, text;
  const Scalar scalar = ToScalar(value, buffer);
  AppendAsText(scalar.kind == ScalarKind::kDate ? Scalar::Double(scalar.number) : scalar, text);
  if (scalar.kind == ScalarKind::kDate) return "#" + text + "#";
  return scalar.kind == ScalarKind::kText ? "'" + cp1251::ToUtf8(text) + "'" : text;
}

/// A table in memory that can be told to have indexes on columns of whole numbers.
class TestTable : public RowSource {
 public:
  TestTable(std::shared_ptr<const PackedRows> rows, std::set<std::size_t> indexed)
      : rows_(std::move(rows)), indexed_(std::move(indexed)) {}

  const std::vector<Field>& fields() const override { return rows_->fields(); }
  bool CanSeek(std::size_t column) const override { return indexed_.contains(column); }
  bool CanWalk(std::size_t column) const override { return indexed_.contains(column); }
  bool IsUnique(std::size_t column) const override { return column == 0; }
  std::size_t ExpectedRows() const override { return rows_->size(); }

  std::unique_ptr<RowStream> Open(const AccessPath& path) const override {
    std::vector<std::uint32_t> order;
    for (std::uint32_t row = 0; row < rows_->size(); ++row)
      if (path.kind != AccessPath::Kind::kEqual || Number(row, path.column) == path.key) order.push_back(row);
    const bool ascending = path.kind == AccessPath::Kind::kAscending;
    if (ascending || path.kind == AccessPath::Kind::kDescending) {
      std::sort(order.begin(), order.end(), [&](std::uint32_t a, std::uint32_t b) {
        const double left = Number(a, path.column), right = Number(b, path.column);
        return ascending ? left < right : left > right;
      });
    }
    return std::make_unique<Stream>(*rows_, std::move(order));
  }
  std::unique_ptr<RowReader> OpenReader() const override { return std::make_unique<Reader>(*rows_); }

 private:
  class Stream : public RowStream {
   public:
    Stream(const PackedRows& rows, std::vector<std::uint32_t> order) : rows_(rows), order_(std::move(order)) {}
    bool Next() override { return next_++ < order_.size(); }
    jet::RowId id() const override { return {order_[next_ - 1], 0}; }
    const RowAccess& row() override { return row_.emplace(rows_, order_[next_ - 1]); }

   private:
    const PackedRows& rows_;
    std::vector<std::uint32_t> order_;
    std::size_t next_ = 0;
    std::optional<PackedRows::Row> row_;
  };

  class Reader : public RowReader {
   public:
    explicit Reader(const PackedRows& rows) : rows_(rows) {}
    const RowAccess* Find(jet::RowId id) override { return &row_.emplace(rows_, id.page); }

   private:
    const PackedRows& rows_;
    std::optional<PackedRows::Row> row_;
  };

  double Number(std::uint32_t row, std::size_t column) const {
    std::string buffer;
    return PackedRows::Row(*rows_, row).Read(column, buffer).number;
  }

  std::shared_ptr<const PackedRows> rows_;
  std::set<std::size_t> indexed_;
};

/// Tables and saved queries by name.
class TestCatalog : public SourceCatalog {
 public:
  void AddTable(const std::string& name, std::vector<Field> fields, const std::vector<std::vector<jet::Value>>& rows,
                std::set<std::size_t> indexed = {}) {
    auto packed = std::make_shared<PackedRows>(std::move(fields));
    for (const auto& row : rows) {
      for (const jet::Value& value : row) packed->Add(value);
      packed->Finish();
    }
    tables_.emplace(name, TestTable(std::move(packed), std::move(indexed)));
  }
  void AddQuery(const std::string& name, const std::string& text) { queries_.emplace(name, text); }

  std::unique_ptr<RowSource> OpenTable(std::string_view name) override {
    for (const auto& [known, table] : tables_)
      if (cp1251::EqualIgnoringCase(known, name)) return std::make_unique<TestTable>(table);
    return nullptr;
  }
  std::optional<Select> FindQuery(std::string_view name) override {
    for (const auto& [known, text] : queries_)
      if (cp1251::EqualIgnoringCase(known, name)) return std::get<Select>(ParseStatement(text));
    return std::nullopt;
  }

 private:
  std::map<std::string, TestTable> tables_;
  std::map<std::string, std::string> queries_;
};

/// Seven messages, the two saved queries of a base, and what else the tests need.
inline TestCatalog Forum() {
  using jet::ColumnType;
  using jet::Null;
  TestCatalog forum;
  const auto row = [](std::int32_t number, std::int32_t answers, jet::Value subject, jet::Value date, jet::Value author,
                      jet::Value mail) {
    const auto in_1251 = [](jet::Value value) {
      if (auto* const text = std::get_if<std::string>(&value)) *text = Ru(*text);
      return value;
    };
    return std::vector<jet::Value>{number, answers, in_1251(subject), date, in_1251(author), in_1251(mail)};
  };
  const auto days_ago = [](double days) { return OleDate{kNow.days - days}; };
  using Text = std::string;
  forum.AddTable(
      Ru("База"),
      {{Ru("Код"), ColumnType::kLong},
       {Ru("Вответ"), ColumnType::kLong},
       {Ru("Тема"), ColumnType::kText},
       {Ru("Дата"), ColumnType::kDateTime},
       {Ru("Автор"), ColumnType::kText},
       {Ru("АвторMail"), ColumnType::kText}},
      {row(3, 1, Text("Re: Привет"), days_ago(9), Text("ПЕТЯ  "), Text("petya@x")),
       row(1, 0, Text("Привет всем"), days_ago(40), Text("Петя"), Text("petya@x")),
       row(2, 1, Text("5% скидка"), days_ago(10), Text("ivan"), Null()), row(5, 0, Text(""), Null(), Null(), Text("")),
       row(7, 5, Text("Ещё #21\r\nдва"), days_ago(1), Text("Ivan"), Text("IVAN@x")),
       row(6, 5, Text("ещё"), days_ago(2), Text("Пётр"), Text("   ")),
       row(4, 9, Null(), days_ago(30), Text("петя"), Text("other@x"))},
      {0});
  forum.AddQuery(Ru("БазаИндекс"), Ru("SELECT [Код],[Вответ],[Тема],[Дата],[Автор] FROM [База];"));
  forum.AddQuery(Ru("БазаЗапрос"), Ru("SELECT * FROM [База] ORDER BY [Код];"));
  return forum;
}

/// Each row of the result as "a, b, c".
inline std::vector<std::string> Result(SourceCatalog& catalog, std::string_view utf8) {
  NoProgress progress;
  const Plan plan = MakePlan(std::get<Select>(ParseStatement(Ru(utf8))), catalog, kNow, progress);
  const PackedRows rows = Execute(plan, progress);
  std::vector<std::string> shown;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    std::string& line = shown.emplace_back();
    for (std::size_t field = 0; field < plan.outputs.size(); ++field)
      line += (field == 0 ? "" : ", ") + Shown(PackedRows::Row(rows, i).Get(field));
  }
  return shown;
}

}  // namespace sql
