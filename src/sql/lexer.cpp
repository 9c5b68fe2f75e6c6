#include "sql/lexer.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <utility>

#include "base/cat.h"
#include "base/error.h"
#include "base/ole_date.h"
#include "base/ru_literal.h"
#include "sql/sql_errors.h"

namespace sql {
namespace {

constexpr char kNonBreakingSpace = '\xA0';

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == kNonBreakingSpace; }
bool IsLetter(char c) {
  const bool latin = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
  return latin || c == '_' || (static_cast<unsigned char>(c) >= 0x80 && c != kNonBreakingSpace);
}

/// Reads m/d/yyyy [h:m[:s]] from the text between two #.
class DateLiteral {
 public:
  explicit DateLiteral(std::string_view text) : text_(text) {}

  OleDate Read() {
    CivilTime time;
    time.month = Number();
    Expect('/');
    time.day = Number();
    Expect('/');
    time.year = Number();
    SkipBlanks();
    if (at_ < text_.size()) ReadTime(time);
    SkipBlanks();
    if (at_ != text_.size()) Fail();
    try {
      return ole_date::FromCivil(time);
    } catch (const ConversionError&) {
      Fail();
    }
  }

 private:
  void ReadTime(CivilTime& time) {
    time.hour = Number();
    Expect(':');
    time.minute = Number();
    if (at_ == text_.size() || text_[at_] != ':') return;
    ++at_;
    time.second = Number();
  }

  int Number() {
    SkipBlanks();
    int number = 0;
    const char* const begin = text_.data() + at_;
    const auto [end, error] = std::from_chars(begin, text_.data() + text_.size(), number);
    if (error != std::errc() || number < 0) Fail();
    at_ += static_cast<std::size_t>(end - begin);
    return number;
  }

  void Expect(char sign) {
    if (at_ == text_.size() || text_[at_] != sign) Fail();
    ++at_;
  }

  void SkipBlanks() {
    while (at_ < text_.size() && IsBlank(text_[at_])) ++at_;
  }

  [[noreturn]] void Fail() const { ThrowBadStatement(Cat("непонятная дата #"_ru, text_, "#")); }

  std::string_view text_;
  std::size_t at_ = 0;
};

class Lexer {
 public:
  explicit Lexer(std::string_view statement) : text_(statement) {}

  std::vector<Token> Run() {
    std::vector<Token> tokens;
    do {
      while (at_ < text_.size() && IsBlank(text_[at_])) ++at_;
      tokens.push_back(Next());
    } while (tokens.back().kind != TokenKind::kEnd);
    return tokens;
  }

 private:
  Token Next() {
    const std::size_t start = at_;
    Token token = Read();
    token.at = start;
    return token;
  }

  Token Read() {
    if (at_ == text_.size()) return {};
    const char c = text_[at_];
    if (IsLetter(c)) return Word();
    if (IsDigit(c) || (c == '.' && at_ + 1 < text_.size() && IsDigit(text_[at_ + 1]))) return Number();
    switch (c) {
      case '\'':
      case '"': return Text(c);
      case '[': return Name();
      case '#': return Date();
      default: return Sign();
    }
  }

  Token Word() {
    const std::size_t start = at_;
    while (at_ < text_.size() && (IsLetter(text_[at_]) || IsDigit(text_[at_]))) ++at_;
    return {TokenKind::kWord, std::string(text_.substr(start, at_ - start)), {}, 0};
  }

  Token Number() {
    const char* const begin = text_.data() + at_;
    const char* const last = text_.data() + text_.size();
    double number = 0;
    const auto [end, error] = std::from_chars(begin, last, number);
    const std::string_view written(begin, static_cast<std::size_t>(end - begin));
    at_ += written.size();
    if (error != std::errc() || (end != last && IsLetter(*end)))
      ThrowBadStatement(Cat("непонятное число «"_ru, written, std::string_view(end, end == last ? 0u : 1u), "»"_ru));
    const bool whole = written.find_first_of(".eE") == std::string_view::npos;
    if (whole && number <= std::numeric_limits<std::int32_t>::max())
      return {TokenKind::kLiteral, {}, static_cast<std::int32_t>(number), 0};
    return {TokenKind::kLiteral, {}, number, 0};
  }

  /// The delimiter doubled inside stands for itself.
  Token Text(char quote) {
    constexpr std::size_t kBefore = 20;  // shown of what leads to the quote
    const std::size_t start = at_++;
    std::string value;
    for (;;) {
      const std::size_t end = text_.find(quote, at_);
      if (end == std::string_view::npos)
        ThrowBadStatement(Cat("не закрыта кавычка: "_ru, Excerpt(start - std::min(start, kBefore))));
      value.append(text_.substr(at_, end - at_));
      at_ = end + 1;
      if (at_ == text_.size() || text_[at_] != quote) break;
      value.push_back(quote);
      ++at_;
    }
    return {TokenKind::kLiteral, {}, std::move(value), 0};
  }

  Token Name() {
    const std::size_t end = text_.find(']', at_);
    if (end == std::string_view::npos || end == at_ + 1)
      ThrowBadStatement(Cat("скобки без имени или не закрыты: "_ru, Excerpt(at_)));
    std::string name(text_.substr(at_ + 1, end - at_ - 1));
    at_ = end + 1;
    return {TokenKind::kName, std::move(name), {}, 0};
  }

  Token Date() {
    const std::size_t end = text_.find('#', at_ + 1);
    if (end == std::string_view::npos) ThrowBadStatement(Cat("дата без второго #: "_ru, Excerpt(at_)));
    const OleDate date = DateLiteral(text_.substr(at_ + 1, end - at_ - 1)).Read();
    at_ = end + 1;
    return {TokenKind::kLiteral, {}, date, 0};
  }

  Token Sign() {
    const std::string_view two = text_.substr(at_, 2);
    std::size_t length = two == "<>" || two == "<=" || two == ">=" ? 2 : 1;
    if (std::string_view("=<>+-*/&(),.!;").find(text_[at_]) == std::string_view::npos)
      ThrowBadStatement(Cat("посторонний знак: "_ru, Excerpt(at_)));
    std::string sign(text_.substr(at_, length));
    at_ += length;
    return {TokenKind::kSign, std::move(sign), {}, 0};
  }

  std::string Excerpt(std::size_t from) const {
    constexpr std::size_t kShown = 40;
    return Cat("«"_ru, text_.substr(from, kShown), from + kShown < text_.size() ? "…»"_ru : "»"_ru);
  }

  std::string_view text_;
  std::size_t at_ = 0;
};

}  // namespace

std::vector<Token> Tokenize(std::string_view statement) {
  if (statement.size() > kLongestStatement) ThrowBadStatement("запрос слишком длинный"_ru);
  return Lexer(statement).Run();
}

}  // namespace sql
