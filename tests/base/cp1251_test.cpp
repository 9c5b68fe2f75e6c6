#include "base/cp1251.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "base/ru_literal.h"

namespace {

using namespace std::string_view_literals;

struct Case {
  std::string_view text, want;
};

std::string AllBytes() {
  std::string bytes;
  for (int byte = 0; byte < 256; ++byte) bytes += static_cast<char>(byte);
  return bytes;
}

TEST(Cp1251, EveryByteSurvivesUnicodeAndBack) {
  const std::string bytes = AllBytes();
  EXPECT_EQ(cp1251::FromUtf8(cp1251::ToUtf8(bytes)), bytes);
  EXPECT_EQ(cp1251::FromUtf16(AsBytes(cp1251::ToUtf16(bytes))), bytes);
}

TEST(Cp1251, LiteralsHoldTheBytesOfTheCodePage) {
  const Case cases[] = {{""_ru, ""},
                        {"Az09\r\n"_ru, "Az09\r\n"},
                        {"АЯаяЁё"_ru, "\xC0\xDF\xE0\xFF\xA8\xB8"},
                        {"«»–—№€…"_ru, "\xAB\xBB\x96\x97\xB9\x88\x85"},
                        {"\u00A0\u0098"_ru, "\xA0\x98"}};
  for (const auto& c : cases) EXPECT_EQ(c.text, c.want);
}

// Of malformed UTF-8, each byte that begins no character; a character longer than it need be is malformed.
TEST(Cp1251, WhatItLacksBecomesAQuestionMark) {
  const Case cases[] = {{"", ""},      {"\x80\xBF", "??"}, {"\xD0\xD0\x90", "?\xC0"}, {"\xF0\x9F\x99\x82!", "?!"},
                        {"日a", "?a"}, {"\xC0\x80", "??"}, {"\xE0\x81\x81", "???"},   {"\xF0\x80\x81\x81", "????"},
                        {"\xD0", "?"}, {"\xFF\xFE", "??"}};
  for (const auto& c : cases) EXPECT_EQ(cp1251::FromUtf8(c.text), c.want) << testing::PrintToString(c.text);
}

// Half a pair counts as one too; an odd last byte counts for nothing.
TEST(Cp1251, Utf16CountsASurrogatePairAsOneCharacter) {
  const Case cases[] = {{"\x10\x04"sv, "\xC0"}, {"\x10\x04\x41"sv, "\xC0"},   {"\x3D\xD8\x42\xDE\x41\x00"sv, "?A"},
                        {"\x3D\xD8"sv, "?"},    {"\x3D\xD8\x41\x00"sv, "?A"}, {"\x42\xDE\x41\x00"sv, "?A"}};
  for (const auto& c : cases) EXPECT_EQ(cp1251::FromUtf16(AsBytes(c.text)), c.want);
}

TEST(Cp1251, FoldsTheLettersOfTheCodePageAndNothingElse) {
  const std::string_view upper = "AZАЯЁЂЃЉЊЌЋЏЎЈҐЄЇІЅ"_ru, lower = "azаяёђѓљњќћџўјґєїіѕ"_ru;
  EXPECT_EQ(cp1251::Folded(upper), lower);
  EXPECT_EQ(cp1251::Folded(lower), lower);
  for (std::size_t i = 0; i < upper.size(); ++i) EXPECT_EQ(cp1251::Upper(lower[i]), upper[i]);

  const std::string bytes = AllBytes();
  const auto letters = std::count_if(bytes.begin(), bytes.end(), [](char c) { return cp1251::Fold(c) != c; });
  EXPECT_EQ(letters, 26 + 32 + 15);
  for (const char c : bytes) EXPECT_EQ(cp1251::Fold(cp1251::Upper(c)), cp1251::Fold(c));
}

TEST(Cp1251, DifferentLettersAreNotEqualInAnyCase) {
  const struct {
    std::string_view a, b;
    bool equal;
  } cases[] = {{"", "", true},          {"ПрИвЕт"_ru, "пРиВеТ"_ru, true}, {"е"_ru, "ё"_ru, false},
               {"И"_ru, "й"_ru, false}, {"Ґ"_ru, "г"_ru, false},          {"а"_ru, "a", false},
               {"ab", "abc", false},    {"µ"_ru, "М"_ru, false}};  // Cyrillic and Latin letters differ
  for (const auto& c : cases) EXPECT_EQ(cp1251::EqualIgnoringCase(c.a, c.b), c.equal) << cp1251::ToUtf8(c.a);
  EXPECT_TRUE(cp1251::StartsWithIgnoringCase("ФОРУМ"_ru, "фор"_ru));
  EXPECT_FALSE(cp1251::StartsWithIgnoringCase("фор"_ru, "форум"_ru));
}

TEST(Cp1251, SortsAsAReaderOfRussianExpects) {
  constexpr std::string_view sorted[] = {"",        "_nick",    "10",        "9",        "Alpha",   "beta",
                                         "Zed",     "Антон"_ru, "антон2"_ru, "гость"_ru, "ґ"_ru,    "Ева"_ru,
                                         "ель"_ru,  "Ёлка"_ru,  "Єва"_ru,    "Жора"_ru,  "игла"_ru, "Ігор"_ru,
                                         "Їжак"_ru, "йод"_ru,   "ум"_ru,     "Ўз"_ru,    "Яна"_ru};
  for (std::size_t i = 0; i < std::size(sorted); ++i)
    for (std::size_t j = 0; j < std::size(sorted); ++j) {
      const int order = cp1251::CompareForSorting(sorted[i], sorted[j]);
      EXPECT_EQ(order < 0, i < j) << cp1251::ToUtf8(sorted[i]) << " " << cp1251::ToUtf8(sorted[j]);
      EXPECT_EQ(order == 0, i == j);
    }
  EXPECT_LT(cp1251::CompareForSorting("АННА"_ru, "Анна"_ru), 0);  // a tie is decided by byte
  EXPECT_LT(cp1251::CompareForSorting("аННа"_ru, "Аннб"_ru), 0);
}

}  // namespace
