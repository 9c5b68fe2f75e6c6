#include "sql/parser.h"

#include <algorithm>
#include <array>
#include <utility>

#include "base/cat.h"
#include "base/cp1251.h"
#include "base/ru_literal.h"
#include "sql/lexer.h"
#include "sql/sql_errors.h"

namespace sql {
namespace {

constexpr std::array<std::string_view, 26> kKeywords = {
    "select", "delete", "from",  "where", "group", "by",  "having",   "order",      "asc",
    "desc",   "and",    "or",    "not",   "like",  "is",  "null",     "in",         "between",
    "as",     "true",   "false", "yes",   "no",    "top", "distinct", "distinctrow"};

struct Comparison {
  std::string_view sign;
  Operator op;
};
constexpr Comparison kComparisons[] = {
    {"=", Operator::kEqual},        {"<>", Operator::kNotEqual}, {"<", Operator::kLess},
    {"<=", Operator::kLessOrEqual}, {">", Operator::kGreater},   {">=", Operator::kGreaterOrEqual},
};

Expression Literal(jet::Value value) {
  Expression literal;
  literal.value = std::move(value);
  return literal;
}

Expression Operation(Operator op, std::vector<Expression> operands) {
  Expression operation;
  operation.kind = ExpressionKind::kOperation;
  operation.op = op;
  for (const Expression& operand : operands) operation.height = std::max(operation.height, operand.height + 1);
  if (operation.height > kHighestExpression) ThrowBadStatement("выражение слишком сложное"_ru);
  operation.operands = std::move(operands);
  return operation;
}

template <typename... Operands>
Expression Operation(Operator op, Operands... operands) {
  std::vector<Expression> list;
  list.reserve(sizeof...(operands));
  (list.push_back(std::move(operands)), ...);
  return Operation(op, std::move(list));
}

class Parser {
 public:
  explicit Parser(std::string_view statement) : statement_(statement), tokens_(Tokenize(statement)) {}

  Statement WholeStatement() {
    Statement statement = ReadStatement();
    Accept(";");
    ExpectEnd();
    return statement;
  }

  Expression WholeCondition() {
    Expression condition = Or();
    ExpectEnd();
    return condition;
  }

 private:
  // Statements.

  Statement ReadStatement() {
    if (AcceptWord("select")) return ReadSelect();
    if (AcceptWord("delete")) return ReadDelete();
    Fail();
  }

  Select ReadSelect() {
    Select select;
    ReadQuantifiers(select);
    do select.items.push_back(ReadItem());
    while (Accept(","));
    ExpectWord("from");
    select.from = ReadSource();
    if (AcceptWord("where")) select.where = Or();
    if (AcceptWord("group")) ReadGroups(select);
    if (AcceptWord("having")) select.having = Or();
    if (AcceptWord("order")) ReadOrder(select);
    return select;
  }

  void ReadQuantifiers(Select& select) {
    if (AcceptWord("distinct")) {
      select.distinct = true;
    } else {
      AcceptWord("distinctrow");  // means something for joins only
    }
    if (!AcceptWord("top")) return;
    const auto* const count = std::get_if<std::int32_t>(&Peek().value);
    if (count == nullptr || *count < 1) Fail();
    select.top = *count;
    ++at_;
  }

  SelectItem ReadItem() {
    SelectItem item;
    if (Accept("*")) {
      item.star = true;
    } else if (IsName(Peek()) && IsSign(Peek(1), ".") && IsSign(Peek(2), "*")) {
      item.star = true;
      item.table = Peek().text;
      at_ += 3;
    } else {
      item.expression = Or();
      if (AcceptWord("as")) item.alias = ReadName();
    }
    return item;
  }

  SourceName ReadSource() {
    SourceName source{ReadName(), {}};
    if (AcceptWord("as")) source.alias = ReadName();
    if (IsSign(Peek(), ",") || IsWord(Peek(), "inner") || IsWord(Peek(), "left") || IsWord(Peek(), "right"))
      ThrowBadStatement("соединение нескольких таблиц не поддерживается"_ru);
    return source;
  }

  void ReadGroups(Select& select) {
    ExpectWord("by");
    do select.group_by.push_back(Or());
    while (Accept(","));
  }

  void ReadOrder(Select& select) {
    ExpectWord("by");
    do {
      OrderItem item{Or(), false};
      item.descending = AcceptWord("desc");
      if (!item.descending) AcceptWord("asc");
      select.order_by.push_back(std::move(item));
    } while (Accept(","));
  }

  Delete ReadDelete() {
    Accept("*");
    ExpectWord("from");
    Delete statement{ReadSource(), {}};
    if (AcceptWord("where")) statement.where = Or();
    return statement;
  }

  // Expressions, loosest operator first.

  Expression Or() {
    const Nesting nesting(*this);
    return Chain(Operator::kOr, "or", &Parser::And);
  }

  Expression And() { return Chain(Operator::kAnd, "and", &Parser::Not); }

  /// A chain is one operation with all its terms, so its length adds no depth.
  Expression Chain(Operator op, std::string_view word, Expression (Parser::*term)()) {
    Expression first = (this->*term)();
    if (!IsWord(Peek(), word)) return first;
    std::vector<Expression> terms;
    terms.push_back(std::move(first));
    while (AcceptWord(word)) terms.push_back((this->*term)());
    return Operation(op, std::move(terms));
  }

  Expression Not() {
    const Nesting nesting(*this);
    if (AcceptWord("not")) return Operation(Operator::kNot, Not());
    return Comparisons();
  }

  Expression Comparisons() {
    Expression left = Concatenation();
    for (;;) {
      const auto* const comparison = std::find_if(std::begin(kComparisons), std::end(kComparisons),
                                                  [this](const Comparison& c) { return Accept(c.sign); });
      if (comparison != std::end(kComparisons)) {
        left = Operation(comparison->op, std::move(left), Concatenation());
      } else if (IsWord(Peek(), "is")) {
        left = IsNull(std::move(left));
      } else if (StartsPredicate()) {
        const bool negated = AcceptWord("not");
        left = Predicate(std::move(left));
        if (negated) left = Operation(Operator::kNot, std::move(left));
      } else {
        return left;
      }
    }
  }

  bool StartsPredicate() const {
    const Token& word = IsWord(Peek(), "not") ? Peek(1) : Peek();
    return IsWord(word, "like") || IsWord(word, "in") || IsWord(word, "between");
  }

  Expression IsNull(Expression value) {
    ExpectWord("is");
    const bool negated = AcceptWord("not");
    ExpectWord("null");
    Expression test = Operation(Operator::kIsNull, std::move(value));
    return negated ? Operation(Operator::kNot, std::move(test)) : std::move(test);
  }

  Expression Predicate(Expression value) {
    if (AcceptWord("like")) return Operation(Operator::kLike, std::move(value), Concatenation());
    if (AcceptWord("between")) {
      Expression low = Concatenation();
      ExpectWord("and");
      return Operation(Operator::kBetween, std::move(value), std::move(low), Concatenation());
    }
    ExpectWord("in");
    Expect("(");
    std::vector<Expression> list;
    list.push_back(std::move(value));
    do list.push_back(Or());
    while (Accept(","));
    Expect(")");
    return Operation(Operator::kIn, std::move(list));
  }

  Expression Concatenation() {
    Expression left = Sum();
    while (Accept("&")) left = Operation(Operator::kConcatenate, std::move(left), Sum());
    return left;
  }

  Expression Sum() {
    Expression left = Product();
    for (;;) {
      if (Accept("+")) {
        left = Operation(Operator::kAdd, std::move(left), Product());
      } else if (Accept("-")) {
        left = Operation(Operator::kSubtract, std::move(left), Product());
      } else {
        return left;
      }
    }
  }

  Expression Product() {
    Expression left = Sign();
    for (;;) {
      if (Accept("*")) {
        left = Operation(Operator::kMultiply, std::move(left), Sign());
      } else if (Accept("/")) {
        left = Operation(Operator::kDivide, std::move(left), Sign());
      } else {
        return left;
      }
    }
  }

  Expression Sign() {
    const Nesting nesting(*this);
    if (Accept("+")) return Sign();
    if (!Accept("-")) return Primary();
    Expression operand = Sign();
    if (auto* const number = std::get_if<std::int32_t>(&operand.value)) return Literal(-*number);
    return Operation(Operator::kNegate, std::move(operand));
  }

  Expression Primary() {
    if (Accept("(")) {
      Expression inner = Or();
      Expect(")");
      return inner;
    }
    if (Peek().kind == TokenKind::kLiteral) return Literal(tokens_[at_++].value);
    if (AcceptWord("null")) return Literal(jet::Null());
    if (AcceptWord("true") || AcceptWord("yes")) return Literal(true);
    if (AcceptWord("false") || AcceptWord("no")) return Literal(false);
    if (Peek().kind == TokenKind::kWord && IsSign(Peek(1), "(")) return Call();
    return ColumnName();
  }

  Expression Call() {
    Expression call;
    call.kind = ExpressionKind::kCall;
    call.name = cp1251::Folded(Peek().text);
    at_ += 2;
    if (Accept("*")) {
      call.star = true;
    } else if (!IsSign(Peek(), ")")) {
      call.operands.push_back(Or());
      call.height = call.operands.front().height + 1;
    }
    Expect(")");
    return call;
  }

  Expression ColumnName() {
    Expression column;
    column.kind = ExpressionKind::kColumn;
    column.name = ReadName();
    if (Accept(".") || Accept("!")) {
      column.table = std::move(column.name);
      column.name = ReadName();
    }
    return column;
  }

  // Tokens.

  static bool IsSign(const Token& token, std::string_view sign) {
    return token.kind == TokenKind::kSign && token.text == sign;
  }
  static bool IsWord(const Token& token, std::string_view word) {
    return token.kind == TokenKind::kWord && cp1251::EqualIgnoringCase(token.text, word);
  }
  static bool IsName(const Token& token) {
    const auto is_it = [&token](std::string_view keyword) { return IsWord(token, keyword); };
    return token.kind == TokenKind::kName ||
           (token.kind == TokenKind::kWord && std::none_of(kKeywords.begin(), kKeywords.end(), is_it));
  }

  const Token& Peek(std::size_t ahead = 0) const { return tokens_[std::min(at_ + ahead, tokens_.size() - 1)]; }

  bool Accept(std::string_view sign) {
    const bool is_it = IsSign(Peek(), sign);
    if (is_it) ++at_;
    return is_it;
  }
  bool AcceptWord(std::string_view word) {
    const bool is_it = IsWord(Peek(), word);
    if (is_it) ++at_;
    return is_it;
  }
  void Expect(std::string_view sign) {
    if (!Accept(sign)) Fail(Cat(", нужно "_ru, sign));
  }
  void ExpectWord(std::string_view word) {
    if (!AcceptWord(word)) Fail(Cat(", нужно слово "_ru, word));
  }
  void ExpectEnd() const {
    if (Peek().kind != TokenKind::kEnd) Fail();
  }
  std::string ReadName() {
    if (!IsName(Peek())) Fail(", нужно имя"_ru);
    return tokens_[at_++].text;
  }

  [[noreturn]] void Fail(std::string_view wanted = {}) const {
    constexpr std::size_t kShown = 40;
    if (Peek().kind == TokenKind::kEnd) ThrowBadStatement(Cat("запрос оборван"_ru, wanted));
    ThrowBadStatement(Cat("непонятно «"_ru, statement_.substr(Peek().at, kShown), "»"_ru, wanted));
  }

  /// Counts how deep the parser stands in itself.
  class Nesting {
   public:
    explicit Nesting(Parser& parser) : parser_(parser) {
      if (++parser_.nesting_ > kDeepestNesting * kPerLevel) ThrowBadStatement("слишком много вложенных скобок"_ru);
    }
    ~Nesting() { --parser_.nesting_; }
    Nesting(const Nesting&) = delete;
    Nesting& operator=(const Nesting&) = delete;

   private:
    static constexpr int kPerLevel = 3;  // a pair of brackets passes Or, Not and Sign
    Parser& parser_;
  };

  std::string_view statement_;
  std::vector<Token> tokens_;
  std::size_t at_ = 0;
  int nesting_ = 0;
};

}  // namespace

Statement ParseStatement(std::string_view statement) { return Parser(statement).WholeStatement(); }

Expression ParseCondition(std::string_view condition) { return Parser(condition).WholeCondition(); }

bool LooksLikeStatement(std::string_view text) {
  const std::size_t start = text.find_first_not_of(" \t\r\n");
  if (start == std::string_view::npos) return false;
  const std::size_t end = text.find_first_of(" \t\r\n*[", start);
  const std::string_view word = text.substr(start, end - start);
  return end != std::string_view::npos &&
         (cp1251::EqualIgnoringCase(word, "select") || cp1251::EqualIgnoringCase(word, "delete"));
}

}  // namespace sql
