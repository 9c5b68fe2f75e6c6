#pragma once

#include <cstdlib>
#include <random>
#include <string>
#include <string_view>

#include "base/ru_literal.h"
#include "store/message_record.h"

/// Made-up messages, the same for the same seed, whose texts hold all that pages find hard to carry.
class MessageGenerator {
 public:
  explicit MessageGenerator(unsigned seed) : random_(seed) {}

  /// Every field may be empty, but the date is set: a day between 1998 and 2002.
  MessageRecord Next() {
    MessageRecord message;
    message.Код = Number(1, 9'999'999);
    message.Вответ = Chance(3) ? 0 : Number(1, 9'999'999);
    message.Тема = Text(12);
    message.Автор = Chance(4) ? std::string(static_cast<std::size_t>(Number(68, 72)), 'n') + Text(2) : Text(4);
    message.АвторMail = Chance(3) ? "" : Email();
    message.Дата = OleDate{static_cast<double>(Number(35'796, 37'421))};
    message.Текст = Text(60);
    message.Картинка = Chance(2) ? "" : "icon" + std::to_string(Number(0, 30));
    return message;
  }

 private:
  bool Chance(int one_in) { return Number(1, one_in) == 1; }
  int Number(int least, int most) { return std::uniform_int_distribution(least, most)(random_); }

  std::string Text(int most_pieces) {
    static constexpr std::string_view kPieces[] = {"рынок"_ru,       "Доллар"_ru,
                                                   "стоп"_ru,        "ЁЖ"_ru,
                                                   "ё"_ru,           "USD"_ru,
                                                   "m"_ru,           "1.0532"_ru,
                                                   " "_ru,           " "_ru,
                                                   "  "_ru,          "                  "_ru,
                                                   "\t"_ru,          "\r\n"_ru,
                                                   "\r\n\r\n"_ru,    "\n"_ru,
                                                   "\r"_ru,          "\r\n: "_ru,
                                                   "\n: : "_ru,      "\0"_ru,
                                                   "\u00A0"_ru,      "АЯая"_ru,
                                                   "ЂђЉ€\u0098џ"_ru, "«»–—"_ru,
                                                   "&"_ru,           "&amp;"_ru,
                                                   "&amp;amp;"_ru,   "&quot;"_ru,
                                                   "&QUOT;"_ru,      "&lt;"_ru,
                                                   "&gt"_ru,         "&nbsp;"_ru,
                                                   "&#34;"_ru,       "&#38;#34;"_ru,
                                                   "&#150;"_ru,      "&#151;"_ru,
                                                   "&#8212;"_ru,     "amp;"_ru,
                                                   "lt;"_ru,         ";"_ru,
                                                   "#"_ru,           "<"_ru,
                                                   ">"_ru,           "\""_ru,
                                                   "'"_ru,           "="_ru,
                                                   "<b>"_ru,         "</b>"_ru,
                                                   "<br>"_ru,        "<p>"_ru,
                                                   "<P>"_ru,         "<hr>"_ru,
                                                   "<dd>"_ru,        "</DIV>"_ru,
                                                   "</td>"_ru,       "</FONT>"_ru,
                                                   "</textarea>"_ru, "</blockquote>"_ru,
                                                   "</html>"_ru,     "</title>"_ru,
                                                   "</A>"_ru,        "<A href=\"http://x/?a=1&b=2\">"_ru,
                                                   "mailto:"_ru,     "]]>"_ru,
                                                   "[<small>"_ru,    "12:30 pm: "_ru,
                                                   "m:"_ru,          "M: \r\n\r\n"_ru,
                                                   ": "_ru,          " :-)"_ru,
                                                   " J "_ru,         "Ответы и комментарии:"_ru,
                                                   "http://"_ru};
    std::string text;
    for (int pieces = Number(0, most_pieces); pieces > 0; --pieces)
      text += kPieces[static_cast<std::size_t>(Number(0, std::size(kPieces) - 1))];
    return text;
  }

  std::string Email() {
    return std::string(static_cast<std::size_t>(Chance(2) ? Number(40, 45) : Number(1, 8)), 'u') + "@mail.ru";
  }

  std::mt19937 random_;
};

/// How many messages a round trip tests; the variable FORUM_ROUND_TRIPS makes it longer.
inline int RoundTrips() {
  constexpr int kUsual = 500;
  const char* const wanted = std::getenv("FORUM_ROUND_TRIPS");
  return wanted == nullptr ? kUsual : std::atoi(wanted);
}
