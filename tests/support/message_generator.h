#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "base/ru_literal.h"
#include "store/message_record.h"
#include "text/strings.h"

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
    // What texts are made of, each piece parted from the next by a "|".
    static constexpr std::string_view kPieces =
        "рынок|Доллар|стоп|ЁЖ|ё|USD|m|1.0532| | |  |                  |\t|\r\n|\r\n\r\n|\n|\r|\r\n: |\n: : |\0|"
        "\u00A0|АЯая|ЂђЉ€\u0098џ|«»–—|&|&amp;|&amp;amp;|&quot;|&QUOT;|&lt;|&gt|&nbsp;|&#34;|&#38;#34;|&#150;|"
        "&#151;|&#8212;|amp;|lt;|;|#|<|>|\"|'|=|<b>|</b>|<br>|<p>|<P>|<hr>|<dd>|</DIV>|</td>|</FONT>|</textarea>|"
        "</blockquote>|</html>|</title>|</A>|<A href=\"http://x/?a=1&b=2\">|mailto:|]]>|[<small>|12:30 pm: |m:|"
        "M: \r\n\r\n|: | :-)| J |Ответы и комментарии:|http://"_ru;
    static const std::vector<std::string_view> pieces = text::Split(kPieces, "|");
    std::string text;
    for (int left = Number(0, most_pieces); left > 0; --left)
      text += pieces[static_cast<std::size_t>(Number(0, static_cast<int>(pieces.size()) - 1))];
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

/// Calls `test` with that many messages of one seed; ends with the first that fails.
template <typename Test>
void ForEachMessage(unsigned seed, const Test& test) {
  MessageGenerator messages(seed);
  for (int i = 0; i < RoundTrips() && !testing::Test::HasFailure(); ++i) test(messages.Next());
}

inline void ExpectSame(const MessageRecord& parsed, const MessageRecord& want) {
  const auto all = [](const MessageRecord& m) {
    return std::tuple(m.Код, m.Вответ, m.Тема, m.Автор, m.АвторMail, m.Дата->days, m.Текст, m.Картинка);
  };
  ASSERT_TRUE(parsed.Дата && want.Дата);
  EXPECT_EQ(all(parsed), all(want));
}
