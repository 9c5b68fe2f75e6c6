#include "text/mdl_STR.h"

#include <gtest/gtest.h>

#include "base/cp1251.h"
#include "base/ru_literal.h"

namespace {

using namespace mdl_STR;
using text::LetterCase;

struct Case {
  std::string_view text, want;
};

TEST(ExtractBetween, CutsBetweenTheFirstMarkers) {
  const struct {
    std::string_view text, start, end, want;
  } cases[] = {{"", "start", "stop", ""},
               {"Name: <b>Bob</b>", "<B>", "</B>", "Bob"},
               {"Name: <b>Bob", "<b>", "</b>", "Bob"},
               {"Name: Bob</b>", "<b>", "</b>", ""},
               {"</b><b>x<b>y</b></b>", "<b>", "</b>", "x<b>y"},
               {"<b> x </b>", "<b>", "</b>", " x "},
               {"a<b>", "<b>", "</b>", ""},
               {"В ОТВЕТ на:5</BlockQuote>"_ru, "В ответ на:"_ru, "</blockquote>", "5"}};
  for (const auto& c : cases) EXPECT_EQ(ExtractBetween(c.text, c.start, c.end), c.want) << cp1251::ToUtf8(c.text);
}

TEST(DecodeHtmlEntities, DecodesFifteenFormsInTheirOrder) {
  // What "&amp;" leaves behind is decoded as well when its turn comes later: two levels.
  const Case cases[] = {{"&AMP;lt;", "&lt;"},    {"&amp;nbsp;", "&nbsp;"}, {"&amp;gt;", "&gt;"},
                        {"&amp;#151;", "—"_ru},  {"&amp;#62;", "&#62;"},   {"&#38;#34;", "&#34;"},
                        {"&amp;amp;", "&amp;"},  {"&#38;#150;", "–"_ru},   {"&amp;quot;", "\""},
                        {"&&nbsp;lt;", "& lt;"}, {"&amp;#34;", "\""},      {"&NBSP;&Gt;&lT;&AMP;&QUOT;", " ><&\""},
                        {"&&lt;;", "&<;"}};
  for (const auto& c : cases) EXPECT_EQ(DecodeHtmlEntities(c.text), c.want) << c.text;
  EXPECT_EQ(DecodeHtmlEntities("&#62;&#60;&#171;&#187;&#160;&#32;&#34;&#38;&#150;&#151;"), "><«»  \"&–—"_ru);
  for (const char* kept : {"", "a & b; &", "&lt", "\xA0", "&#8212;&#x2014;&copy;&apos;&#039;&laquo;"})
    EXPECT_EQ(DecodeHtmlEntities(kept), kept);
}

TEST(StripTags, RemovesOnlyCompleteTags) {
  const Case cases[] = {{"", ""},       {"a<b>c<d", "ac<d"}, {"<p>", ""},  {"x>y<z>w", "x>yw"},
                        {"<<a>>", ">"}, {"<a>b<c>", "b"},    {"><", "><"}, {"a < b and c > d", "a  d"},
                        {"<>", ""},     {"<a\r\nb>c", "c"},  {"<", "<"}};
  for (const auto& c : cases) EXPECT_EQ(StripTags(c.text), c.want) << c.text;
}

TEST(CollapseSpaces, MakesOneBlankOfARun) {
  const struct {
    std::string_view text, tabs_kept, tabs_as_blanks;
  } cases[] = {{"", "", ""},    {"a  b   c", "a b c", "a b c"}, {"  a \t  b  ", "a \t b", "a b"},
               {"   ", "", ""}, {"\t a", "\t a", "a"},          {" \r\n  \r\n ", "\r\n \r\n", "\r\n \r\n"}};
  for (const auto& c : cases) {
    EXPECT_EQ(CollapseSpaces(c.text, Tabs::kKept), c.tabs_kept);
    EXPECT_EQ(CollapseSpaces(c.text, Tabs::kAsBlanks), c.tabs_as_blanks);
  }
}

TEST(TrimBreaks, TakesBlanksAndBreaksAtOneEnd) {
  const struct {
    std::string_view text, leading, trailing;
  } cases[] = {{"", "", ""},
               {" \r\n \tX", "X", " \r\n \tX"},
               {"X \r\n\t ", "X \r\n\t ", "X"},
               {"\n\n\t\ta\r\nb\t\r\r ", "a\r\nb\t\r\r ", "\n\n\t\ta\r\nb"},
               {" \t\r\n", "", ""},
               {"\xA0x\xA0", "\xA0x\xA0", "\xA0x\xA0"}};
  for (const auto& c : cases) {
    EXPECT_EQ(TrimLeadingBreaks(c.text), c.leading);
    EXPECT_EQ(TrimTrailingBreaks(c.text), c.trailing);
  }
}

// A short target is filled up with its last character; of two equal sources the first counts.
TEST(TranslateChars, MapsPlaceToPlace) {
  const struct {
    std::string_view text, from, to, want;
    LetterCase letter_case = LetterCase::kExact;
  } cases[] = {
      {"abc", "", "x", ""},   {"abc", "ab", "x", "xxc"},   {"abc", "abc", "xy", "xyy"},
      {"abc", "", "", ""},    {"abc", "ab", "xyz", "xyc"}, {"aA", "a", "x", "xx", LetterCase::kIgnored},
      {"abc", "b", "", "ac"}, {"aA", "Aa", "xy", "yx"},    {"aA", "Aa", "xy", "xx", LetterCase::kIgnored},
      {"aA", "a", "x", "xA"}, {"aab", "aa", "xy", "xxb"},  {"ЁЯ"_ru, "яё"_ru, "12", "21", LetterCase::kIgnored}};
  for (const auto& c : cases) EXPECT_EQ(TranslateChars(c.text, c.from, c.to, c.letter_case), c.want);
}

TEST(Koi8, TurnsEveryLetterBackAndLeavesTheRest) {
  EXPECT_EQ(Koi8ToWin("\xC1 \xD1 \xF9"), "а я Ы"_ru);
  EXPECT_EQ(WinToKoi8("Привет 1"_ru), "\xF0\xD2\xC9\xD7\xC5\xD4 1");
  std::string letters, others;
  for (int byte = 0; byte < 256; ++byte) (byte < 0xC0 ? others : letters) += static_cast<char>(byte);
  EXPECT_EQ(Koi8ToWin(WinToKoi8(letters)), letters);
  EXPECT_EQ(WinToKoi8(Koi8ToWin(letters)), letters);
  EXPECT_EQ(Koi8ToWin(others), others);  // Ё and ё among them
  EXPECT_EQ(WinToKoi8(others), others);
}

TEST(UrlEncodeKoi8, EscapesTheLettersOnly) {
  const Case cases[] = {{"", ""},        {"Ёё№"_ru, "Ёё№"_ru}, {"Привет 1"_ru, "%F0%D2%C9%D7%C5%D4 1"},
                        {"я"_ru, "%D1"}, {"юЪ"_ru, "%C0%FF"},  {"a b&c?%"_ru, "a b&c?%"_ru},
                        {"Ы"_ru, "%F9"}};
  for (const auto& c : cases) EXPECT_EQ(UrlEncodeKoi8(c.text), c.want);
}

// A first word that is too long has no blank before it; lines are joined directly; a stray CR stays.
TEST(WrapText, BreaksAtBlanksWithoutCountingThem) {
  const struct {
    std::string_view text;
    std::int32_t width;
    std::string_view want;
  } cases[] = {{"", 6, ""},          {"a\r\nb", 9, " a\r b"},        {"aaa bbb ccc", 6, " aaa bbb\r\nccc"},
               {"a  b", 9, " a  b"}, {"a\n\nb", 9, " a b"},          {"aaa bbb ccc", 5, " aaa\r\nbbb\r\nccc"},
               {"a\nb", 9, " a b"},  {"a b", -5, "a\r\nb"},          {"aaaaaaa b", 3, "aaaaaaa\r\nb"},
               {"a b", 0, "a\r\nb"}, {"aa b c d", 3, " aa b\r\nc d"}};
  for (const auto& c : cases) {
    std::string text(c.text);
    EXPECT_EQ(WrapText(text, c.width), c.want) << c.text;
  }
}

TEST(WrapText, LeavesTheNormalisedTextBehind) {
  const Case cases[] = {{"a\nb", "a\r\nb"},   {"a\n\n\nb", "a\r\nb"}, {"a\n\n\n\n\n\n\nb", "a\r\n\r\nb"},
                        {"a\n\nb", "a\r\nb"}, {"a\r\rb", "a\r\r\nb"}, {"a\r\nb", "a\r\r\nb"},
                        {"a\rb", "a\r\r\nb"}};  // the LF that a CR gets is given another CR
  for (const auto& c : cases) {
    std::string text(c.text);
    WrapText(text, 80);
    EXPECT_EQ(text, c.want) << testing::PrintToString(c.text);
  }
}

TEST(CutAtNul, KeepsWhatStandsBeforeTheFirst) {
  EXPECT_EQ(CutAtNul(""), "");
  EXPECT_EQ(CutAtNul("abc"), "abc");
  EXPECT_EQ(CutAtNul(std::string("ab\0c\0", 5)), "ab");
  EXPECT_EQ(CutAtNul(std::string(256, '\0')), "");
}

}  // namespace
