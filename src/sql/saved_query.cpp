#include "sql/saved_query.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "base/cat.h"
#include "base/cp1251.h"
#include "base/ru_literal.h"
#include "sql/sql_errors.h"

namespace sql {
namespace {

/// What a row of the catalog is a piece of.
enum Attribute {
  kType = 1,
  kParameter = 2,
  kOptions = 3,
  kSource = 5,
  kColumn = 6,
  kJoin = 7,
  kWhere = 8,
  kGroupBy = 9,
  kHaving = 10,
  kOrderBy = 11,
};

enum QueryType {
  kSelect = 1,
  kMakeTable = 2,
  kAppend = 3,
  kUpdate = 4,
  kDelete = 5,
  kCrosstab = 6,
  kDefinition = 7,
  kPassThrough = 8,
  kUnion = 9,
};

constexpr int kStar = 0x01, kDistinct = 0x02, kOwnerAccess = 0x04, kDistinctRow = 0x08, kTop = 0x10, kPercent = 0x20;
constexpr int kPivot = 1, kRowHeading = 2, kAnyFlag = -1;

constexpr std::array<std::string_view, 4> kJoinWords = {"", " INNER JOIN ", " LEFT JOIN ", " RIGHT JOIN "};

struct ParameterType {
  int code;
  std::string_view word;
};
constexpr ParameterType kParameterTypes[] = {
    {0, "Value"},    {1, "Bit"},         {2, "Byte"},       {3, "Short"},    {4, "Long"},
    {5, "Currency"}, {6, "IEEESingle"},  {7, "IEEEDouble"}, {8, "DateTime"}, {9, "Binary"},
    {10, "Text"},    {11, "LongBinary"}, {12, "Text"},      {15, "Guid"},
};

bool IsPlainCharacter(char c) {
  const bool latin = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
  return latin || (c >= '0' && c <= '9') || c == '_' || cp1251::Fold(c) != c || cp1251::Upper(c) != c;
}

std::string Quoted(const std::string& name) {
  return std::all_of(name.begin(), name.end(), IsPlainCharacter) ? name : Cat("[", name, "]");
}

std::string Aliased(std::string text, const std::string& alias) {
  return alias.empty() ? std::move(text) : Cat(text, " AS ", Quoted(alias));
}

void AppendListed(const std::string& piece, std::string& list) {
  if (!list.empty()) list.append(", ");
  list.append(piece);
}

class TextBuilder {
 public:
  explicit TextBuilder(const std::vector<jet::QueryRow>& rows) : rows_(rows) {}

  std::string Build() const {
    const jet::QueryRow* const type = Find(kType);
    std::string text = Parameters();
    switch (type == nullptr ? kSelect : type->flag) {
      case kSelect: return Cat(text, SelectText(), ";");
      case kMakeTable: return Cat(text, SelectText(Cat(" INTO ", Quoted(type->name1))), ";");
      case kAppend: return Cat(text, "INSERT INTO ", Quoted(type->name1), TargetColumns(), " ", SelectText(), ";");
      case kUpdate: return Cat(text, "UPDATE ", From(), " SET ", Assignments(), Clause(kWhere, " WHERE "), ";");
      case kDelete: return Cat(text, "DELETE ", Columns(), " FROM ", From(), Clause(kWhere, " WHERE "), ";");
      case kCrosstab: return Cat(text, CrosstabText(), ";");
      case kDefinition:
      case kPassThrough: return type->expression.substr(0, type->expression.find('\0'));
      case kUnion: return Cat(text, UnionText(), ";");
      default: ThrowBadStatement(Cat("неизвестный вид сохранённого запроса: "_ru, type->flag));
    }
  }

 private:
  std::string SelectText(const std::string& into = {}) const {
    return Cat("SELECT ", Quantifiers(), Columns(), into, " FROM ", From(), Clause(kWhere, " WHERE "),
               List(kGroupBy, " GROUP BY "), Clause(kHaving, " HAVING "), OrderBy(),
               (Options() & kOwnerAccess) != 0 ? " WITH OWNERACCESS OPTION" : "");
  }

  std::string CrosstabText() const {
    return Cat("TRANSFORM ", Columns(0), " SELECT ", Columns(kRowHeading), " FROM ", From(), Clause(kWhere, " WHERE "),
               List(kGroupBy, " GROUP BY ", kRowHeading), " PIVOT ", Columns(kPivot));
  }

  std::string UnionText() const {
    std::string text;
    const std::string_view word = (Options() & kDistinct) != 0 ? " UNION " : " UNION ALL ";
    for (const jet::QueryRow& row : rows_) {
      if (row.attribute != kSource) continue;
      if (!text.empty()) text.append(word);
      text.append(row.expression.substr(0, row.expression.find_last_not_of("; \r\n") + 1));
    }
    return text;
  }

  std::string Parameters() const {
    std::string list;
    for (const jet::QueryRow& row : rows_) {
      if (row.attribute != kParameter) continue;
      const auto* const type = std::find_if(std::begin(kParameterTypes), std::end(kParameterTypes),
                                            [&](const ParameterType& known) { return known.code == row.flag; });
      AppendListed(Cat(Quoted(row.name1), " ", type == std::end(kParameterTypes) ? "Value" : type->word), list);
    }
    return list.empty() ? list : Cat("PARAMETERS ", list, "; ");
  }

  std::string Quantifiers() const {
    const jet::QueryRow* const options = Find(kOptions);
    std::string words;
    if ((Options() & kDistinct) != 0) words.append("DISTINCT ");
    if ((Options() & kDistinctRow) != 0) words.append("DISTINCTROW ");
    if ((Options() & kTop) != 0) words.append(Cat("TOP ", options->name1, " "));
    if ((Options() & kPercent) != 0) words.append("PERCENT ");
    return words;
  }

  std::string Columns(int flag = kAnyFlag) const {
    std::string list;
    for (const jet::QueryRow& row : rows_)
      if (row.attribute == kColumn && (flag == kAnyFlag || row.flag == flag))
        AppendListed(Aliased(row.expression, row.name1), list);
    if ((Options() & kStar) != 0 && flag == kAnyFlag) AppendListed("*", list);
    return list;
  }

  std::string TargetColumns() const {
    std::string list;
    for (const jet::QueryRow& row : rows_)
      if (row.attribute == kColumn && !row.name2.empty()) AppendListed(Quoted(row.name2), list);
    return list.empty() ? list : Cat(" (", list, ")");
  }

  /// The columns stand there as written, with their tables and brackets.
  std::string Assignments() const {
    std::string list;
    for (const jet::QueryRow& row : rows_)
      if (row.attribute == kColumn) AppendListed(Cat(row.name2, " = ", row.expression), list);
    return list;
  }

  /// Tables that joins have already put together.
  struct Joined {
    std::vector<std::string> names;
    std::string text;
    bool Holds(const std::string& name) const {
      return std::any_of(names.begin(), names.end(),
                         [&](const std::string& own) { return cp1251::EqualIgnoringCase(own, name); });
    }
    std::string Operand() const { return names.size() > 1 ? Cat("(", text, ")") : text; }
  };

  std::string From() const {
    std::vector<Joined> parts;
    for (const jet::QueryRow& row : rows_)
      if (row.attribute == kSource)
        parts.push_back({{row.name2.empty() ? row.name1 : row.name2}, Aliased(Quoted(row.name1), row.name2)});
    for (const jet::QueryRow& row : rows_)
      if (row.attribute == kJoin) Join(row, parts);
    std::string list;
    for (const Joined& part : parts) AppendListed(part.text, list);
    return list;
  }

  static void Join(const jet::QueryRow& join, std::vector<Joined>& parts) {
    const auto part_of = [&parts](const std::string& name) {
      return std::find_if(parts.begin(), parts.end(), [&](const Joined& part) { return part.Holds(name); });
    };
    const auto left = part_of(join.name1), right = part_of(join.name2);
    if (left == parts.end() || right == parts.end() || join.flag < 1 ||
        static_cast<std::size_t>(join.flag) >= kJoinWords.size())
      ThrowBadStatement(Cat("непонятное соединение таблиц: "_ru, join.name1, ", ", join.name2));
    if (left == right) {
      left->text.append(Cat(" AND ", join.expression));
      return;
    }
    left->text = Cat(left->Operand(), kJoinWords[static_cast<std::size_t>(join.flag)], right->Operand(), " ON ",
                     join.expression);
    left->names.insert(left->names.end(), right->names.begin(), right->names.end());
    parts.erase(right);
  }

  std::string Clause(Attribute attribute, std::string_view word) const {
    const jet::QueryRow* const row = Find(attribute);
    return row == nullptr ? std::string() : Cat(word, row->expression);
  }

  std::string List(Attribute attribute, std::string_view words, int flag = kAnyFlag) const {
    std::string list;
    for (const jet::QueryRow& row : rows_)
      if (row.attribute == attribute && (flag == kAnyFlag || row.flag == flag)) AppendListed(row.expression, list);
    return list.empty() ? list : Cat(words, list);
  }

  std::string OrderBy() const {
    std::string list;
    for (const jet::QueryRow& row : rows_)
      if (row.attribute == kOrderBy) AppendListed(Cat(row.expression, row.name1 == "D" ? " DESC" : ""), list);
    return list.empty() ? list : Cat(" ORDER BY ", list);
  }

  int Options() const {
    const jet::QueryRow* const options = Find(kOptions);
    return options == nullptr ? 0 : options->flag;
  }

  const jet::QueryRow* Find(Attribute attribute) const {
    const auto row = std::find_if(rows_.begin(), rows_.end(),
                                  [attribute](const jet::QueryRow& r) { return r.attribute == attribute; });
    return row == rows_.end() ? nullptr : &*row;
  }

  const std::vector<jet::QueryRow>& rows_;
};

}  // namespace

std::string QueryText(const std::vector<jet::QueryRow>& rows) { return TextBuilder(rows).Build(); }

}  // namespace sql
