#include "text/strings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "base/cp1251.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "support/error_of.h"

namespace {

using testing::ElementsAre;
using text::LetterCase;

TEST(Strings, TrimTakesBlanksOnly) {
  const struct {
    std::string_view text, trimmed, left, right;
  } cases[] = {{"", "", "", ""},
               {"   ", "", "", ""},
               {" a b ", "a b", "a b ", " a b"},
               {" \t a\r\n ", "\t a\r\n", "\t a\r\n ", " \t a\r\n"},
               {"\xA0x\xA0", "\xA0x\xA0", "\xA0x\xA0", "\xA0x\xA0"}};  // a non-breaking space is no blank
  for (const auto& c : cases) {
    EXPECT_EQ(text::Trim(c.text), c.trimmed);
    EXPECT_EQ(text::TrimLeft(c.text), c.left);
    EXPECT_EQ(text::TrimRight(c.text), c.right);
  }
}

TEST(Strings, FindCountsFromOneAndIgnoresCase) {
  const struct {
    std::size_t want, start;
    std::string_view text, needle;
  } cases[] = {{0, 1, "", "a"},    {0, 1, "abc", "abcd"},        {0, 1, "", ""},     {2, 2, "aXaX", "x"},
               {1, 1, "abc", ""},  {3, 3, "aXaX", "ax"},         {3, 3, "abc", ""},  {2, 1, "ааб"_ru, "АБ"_ru},
               {0, 4, "abc", ""},  {0, 1, "ёЁ"_ru, "е"_ru},      {3, 1, "abc", "C"}, {2, 1, "a\0b"_ru, "\0B"_ru},
               {0, 4, "abc", "a"}, {4, 1, "<<<<title", "<TITLE"}};
  for (const auto& c : cases) EXPECT_EQ(text::Find(c.start, c.text, c.needle), c.want) << c.text << " " << c.needle;
  EXPECT_EQ(text::Find(1, "aBb", "b", LetterCase::kExact), 3u);
  EXPECT_THROW(text::Find(0, "abc", "a"), Error);
}

TEST(Strings, FindAgreesWithPlainSearchOfFoldedTexts) {
  std::mt19937 random(1);
  const std::string_view alphabet = "aAbB<:яЯёЁ"_ru;
  const auto word = [&](std::size_t longest) {
    std::string letters(random() % (longest + 1), ' ');
    for (char& letter : letters) letter = alphabet[random() % alphabet.size()];
    return letters;
  };
  for (int round = 0; round < 20'000; ++round) {
    const std::string where = std::string(random() % 300, 'a') + word(40), what = word(4);
    if (where.empty() || what.empty()) continue;
    const std::size_t start = 1 + random() % where.size();
    EXPECT_EQ(text::Find(start, where, what), cp1251::Folded(where).find(cp1251::Folded(what), start - 1) + 1);
  }
}

TEST(Strings, MidIsEmptyBehindTheEnd) {
  const struct {
    std::string_view want, text;
    std::size_t start, count = 100;
  } cases[] = {{"abc", "abc", 1}, {"c", "abc", 3}, {"", "abc", 4}, {"", "", 1}, {"b", "abc", 2, 1}, {"", "abc", 9, 1}};
  for (const auto& c : cases) EXPECT_EQ(text::Mid(c.text, c.start, c.count), c.want) << c.start;
  EXPECT_EQ(text::Mid("abc", 2), "bc");
  EXPECT_THROW(text::Mid("abc", 0), Error);
}

TEST(Strings, ReplaceNeverLooksIntoWhatItInserted) {
  const struct {
    std::string_view text, needle, by, want;
    LetterCase letter_case = LetterCase::kExact;
  } cases[] = {{"", "a", "b", ""},      {"aaaa", "aa", "a", "aa"},
               {"a", "a", "", ""},      {"aa", "a", "aa", "aaaa"},
               {"abc", "", "x", "abc"}, {"aAa", "a", "x", "xxx", LetterCase::kIgnored},
               {"   ", "  ", "", " "},  {"<Br>x<bR>", "<BR>", "\r\n", "\r\nx\r\n", LetterCase::kIgnored},
               {"aAa", "a", "x", "xAx"}};
  for (const auto& c : cases) EXPECT_EQ(text::ReplaceAll(c.text, c.needle, c.by, c.letter_case), c.want) << c.text;
}

TEST(Strings, ListedReplacementsWorkOnEachOthersResults) {
  constexpr text::Replacement kChain[] = {{"a", "b"}, {"b", "c"}, {"absent", "x"}};
  EXPECT_EQ(text::ReplaceAll("Ab", kChain, LetterCase::kExact), "Ac");
  EXPECT_EQ(text::ReplaceAll("Ab", kChain, LetterCase::kIgnored), "cc");
}

TEST(Strings, SplitKeepsEmptyPiecesButAnEmptyTextHasNone) {
  EXPECT_THAT(text::Split("", "="), ElementsAre());
  EXPECT_THAT(text::Split("a", "="), ElementsAre("a"));
  EXPECT_THAT(text::Split("a=", "="), ElementsAre("a", ""));
  EXPECT_THAT(text::Split("=", "="), ElementsAre("", ""));
  EXPECT_THAT(text::Split("a==b", "="), ElementsAre("a", "", "b"));
  EXPECT_THAT(text::Split("aXbxc", "x"), ElementsAre("aXb", "c"));
  EXPECT_THAT(text::Split("a</A>b</A>", "</A>"), ElementsAre("a", "b", ""));
}

TEST(Strings, AMissingPieceIsErrorNine) {
  const auto pieces = text::Split("a=b", "=");
  EXPECT_EQ(text::Piece(pieces, 1), "b");
  EXPECT_EQ(ErrorOf([&] { text::Piece(pieces, 2); }), error_number::kNoSuchItem);
  EXPECT_EQ(text::LastPiece("a", "="), "a");
  EXPECT_EQ(text::LastPiece("a=b=c", "="), "c");
  EXPECT_EQ(text::LastPiece("a==", "="), "");
  EXPECT_EQ(ErrorOf([] { text::LastPiece("", "="); }), error_number::kNoSuchItem);
}

}  // namespace
