#include "sql/like.h"

#include <gtest/gtest.h>

#include <optional>

#include "base/bytes.h"
#include "base/error.h"
#include "jet/text_codec.h"
#include "test_base.h"

namespace sql {
namespace {

TEST(Like, MatchesTheWholeValueWithoutLetterCase) {
  const struct {
    std::string_view pattern, text;
    bool matches;
  } cases[] = {
      {"", "", true},
      {"", " ", false},
      {"*", "", true},
      {"*", "любой", true},
      {"**", "", true},
      {"?", "", false},
      {"?", "я", true},
      {"привет", "ПРИВЕТ", true},
      {"привет", "привет ", false},
      {"при*", "Привет", true},
      {"*вет", "Привет", true},
      {"*вет", "Привет!", false},
      {"*ИВ*", "Привет", true},
      {"*ив*", "ив", true},
      {"*ив*", "и в", false},
      {"*ё*", "е", false},
      {"*5%*", "скидка 5% сегодня", true},
      {"*5%*", "скидка 55", false},
      {"*_*", "ab", false},
      {"*a?c*", "xxabcxx", true},
      {"*#1*", "№21", true},
      {"*#1*", "x1", false},
      {"[абв]", "Б", true},
      {"[абв]", "г", false},
      {"[a-я]", "ж", true},
      {"[a-я]", "5", false},
      {"[а-я]", "ё", true},
      {"[!а-я]", "w", true},
      {"[!а-я]", "Ю", false},
      {"[-x]", "-", true},
      {"[x-]", "-", true},
      {"[*][?][#][[]", "*?#[", true},
      {"[*]", "x", false},
      {"]!", "]!", true},
      {"[!]", "!", true},
      {"a[]b", "ab", true},
      {"*\r\n*", "строка\r\nдругая", true},
      {"*a*a*b", "aaaaab", true},
      {"*a*c*b", "aaaaab", false},
      {"a*?b", "ab", false},
      {"a*?b", "axb", true},
  };
  for (const auto& c : cases) {
    const LikePattern pattern(Ru(c.pattern));
    const std::string text = Ru(c.text);
    EXPECT_EQ(pattern.Matches(text), c.matches) << c.pattern << " / " << c.text;

    const auto in_1251 = pattern.MatchStored({StoredText::Encoding::kWindows1251, text});
    const std::string utf16 = cp1251::ToUtf16(text);
    const auto in_utf16 = pattern.MatchStored({StoredText::Encoding::kUtf16, utf16});
    EXPECT_EQ(in_1251.value_or(c.matches), c.matches) << c.pattern << " / " << c.text;
    EXPECT_EQ(in_utf16.value_or(c.matches), c.matches) << c.pattern << " / " << c.text;
  }
}

TEST(Like, RefusesMalformedPatterns) {
  for (const std::string_view pattern : {"[", "a[b", "[z-a]", "[я-a]"}) {
    try {
      LikePattern{Ru(pattern)};
      ADD_FAILURE() << pattern;
    } catch (const SqlError& e) {
      EXPECT_EQ(e.number(), error_number::kBadPattern) << pattern;
      EXPECT_NE(std::string(e.what()).find(Ru(pattern)), std::string::npos);
    }
  }
}

// What a search runs on: every place of a long text, at every distance from its ends.
TEST(Like, SearchFindsAWordAtEveryPlace) {
  const LikePattern pattern(Ru("*ёлка*"));
  for (std::size_t size = 4; size < 70; ++size) {
    for (std::size_t at = 0; at + 4 <= size; ++at) {
      std::string text(size, Ru("ё")[0]);
      text.replace(at, 4, Ru("ЁлКа"));
      const std::string utf16 = cp1251::ToUtf16(text);
      EXPECT_TRUE(*pattern.MatchStored({StoredText::Encoding::kWindows1251, text})) << size << ' ' << at;
      EXPECT_TRUE(*pattern.MatchStored({StoredText::Encoding::kUtf16, utf16})) << size << ' ' << at;
      text[at + 2] = 'x';
      EXPECT_FALSE(*pattern.MatchStored({StoredText::Encoding::kWindows1251, text})) << size << ' ' << at;
    }
  }
}

// Bytes of two neighbouring UTF-16 characters must not make up a third one.
TEST(Like, SearchInUtf16KeepsToCharacters) {
  const LikePattern pattern("*A*");  // 41 00
  EXPECT_FALSE(*pattern.MatchStored({StoredText::Encoding::kUtf16, std::string_view("\x04\x41\x00\x04", 4)}));
}

// A word that compressed text does not hold is missed without decoding it, one that it may hold never.
TEST(Like, SearchesCompressedTextForCyrillic) {
  const struct {
    std::string_view pattern, text;
    std::optional<bool> matches;
  } cases[] = {
      {"*a*", "abcdef", std::nullopt},
      {"*ёлка*", "some plain text", false},
      {"*ёлка*", "some text, ЁЛКА and more of it", std::nullopt},
      {"*ёлка*", "a long text, then ёлк and more text", false},
      {"*ёлка*", "text, an odd place, ёлКа and text", std::nullopt},
      {"*x ёлка 1*", "some text, ёлка and more of it", std::nullopt},
      {"*x ёлка 1*", "some text, сосна and more of it", false},
  };
  for (const auto& c : cases) {
    std::string stored = cp1251::ToUtf16(Ru(c.text));
    jet::CompressText(stored);
    ASSERT_EQ(stored.substr(0, 2), "\xFF\xFE") << c.text;
    EXPECT_EQ(LikePattern(Ru(c.pattern)).MatchStored({StoredText::Encoding::kUtf16, stored}), c.matches) << c.text;
  }
  constexpr std::string_view kParted("\xFF\xFE\0\x51\x04\x3B\x04\0\0\x3A\x04\x30\x04", 13);  // ёл|ка
  EXPECT_EQ(LikePattern(Ru("*ёлка*")).MatchStored({StoredText::Encoding::kUtf16, kParted}), std::nullopt);
}

}  // namespace
}  // namespace sql
