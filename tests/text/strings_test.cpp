#include "text/strings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "base/cp1251.h"
#include "base/error.h"
#include "base/ru_literal.h"

namespace {

using testing::ElementsAre;
using text::LetterCase;

TEST(Strings, TrimTakesBlanksOnly) {
  const struct {
    std::string_view text, trimmed, left, right;
  } cases[] = {
      {"", "", "", ""},
      {"   ", "", "", ""},
      {" a b ", "a b", "a b ", " a b"},
      {" \t a\r\n ", "\t a\r\n", "\t a\r\n ", " \t a\r\n"},
      {"\xA0x\xA0", "\xA0x\xA0", "\xA0x\xA0", "\xA0x\xA0"},  // a non-breaking space is no blank
  };
  for (const auto& c : cases) {
    EXPECT_EQ(text::Trim(c.text), c.trimmed);
    EXPECT_EQ(text::TrimLeft(c.text), c.left);
    EXPECT_EQ(text::TrimRight(c.text), c.right);
  }
}

TEST(Strings, FindCountsFromOneAndIgnoresCase) {
  const struct {
    std::size_t start;
    std::string_view text, needle;
    std::size_t want;
  } cases[] = {
      {1, "", "a", 0},
      {1, "", "", 0},
      {1, "abc", "", 1},
      {3, "abc", "", 3},
      {4, "abc", "", 0},
      {1, "abc", "abcd", 0},
      {1, "abc", "C", 3},
      {4, "abc", "a", 0},
      {2, "aXaX", "x", 2},
      {3, "aXaX", "ax", 3},
      {1, "ааб"_ru, "АБ"_ru, 2},
      {1, "ёЁ"_ru, "е"_ru, 0},
      {1, "a\0b"_ru, "\0B"_ru, 2},
      {1, "<<<<title", "<TITLE", 4},
  };
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
  EXPECT_EQ(text::Mid("abc", 1), "abc");
  EXPECT_EQ(text::Mid("abc", 3), "c");
  EXPECT_EQ(text::Mid("abc", 4), "");
  EXPECT_EQ(text::Mid("", 1), "");
  EXPECT_EQ(text::Mid("abc", 2, 1), "b");
  EXPECT_EQ(text::Mid("abc", 2, 100), "bc");
  EXPECT_EQ(text::Mid("abc", 9, 1), "");
  EXPECT_THROW(text::Mid("abc", 0), Error);
}

TEST(Strings, ReplaceNeverLooksIntoWhatItInserted) {
  const struct {
    std::string_view text, needle, by, want;
    LetterCase letter_case = LetterCase::kExact;
  } cases[] = {
      {"", "a", "b", ""},
      {"abc", "", "x", "abc"},
      {"aaaa", "aa", "a", "aa"},
      {"   ", "  ", "", " "},
      {"aa", "a", "aa", "aaaa"},
      {"aAa", "a", "x", "xAx"},
      {"aAa", "a", "x", "xxx", LetterCase::kIgnored},
      {"<Br>x<bR>", "<BR>", "\r\n", "\r\nx\r\n", LetterCase::kIgnored},
      {"a", "a", "", ""},
  };
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

TEST(Strings, TheLastPieceStandsBehindTheLastSeparator) {
  EXPECT_EQ(text::LastPiece("a", "="), "a");
  EXPECT_EQ(text::LastPiece("a=b=c", "="), "c");
  EXPECT_EQ(text::LastPiece("a==", "="), "");
}

TEST(Strings, AMissingPieceIsErrorNine) {
  const auto pieces = text::Split("a=b", "=");
  EXPECT_EQ(text::Piece(pieces, 1), "b");
  for (const auto& missing : {std::function<void()>([&] { text::Piece(pieces, 2); }),
                              std::function<void()>([] { text::LastPiece("", "="); })}) {
    try {
      missing();
      FAIL();
    } catch (const Error& error) {
      EXPECT_EQ(error.number(), error_number::kNoSuchItem);
    }
  }
}

}  // namespace
