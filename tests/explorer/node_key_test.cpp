#include "explorer/node_key.h"

#include <gtest/gtest.h>

#include "base/ru_literal.h"

namespace {

TEST(NodeKey, ReadsBackWhatItWrites) {
  const struct {
    NodeKey key;
    std::string_view text;
  } cases[] = {
      {{NodeKind::kThreads}, "Цепочка"_ru},
      {{NodeKind::kBroken}, "Хлам"_ru},
      {{NodeKind::kDates}, "Дата"_ru},
      {{NodeKind::kAuthors}, "Автор"_ru},
      {{NodeKind::kResults}, "Результаты"_ru},
      {{NodeKind::kThreadMessage, 1234}, "C0001234"},
      {{NodeKind::kDateMessage, 0}, "D0000000"},
      {{NodeKind::kAuthorMessage, 9'999'999}, "A9999999"},
      {{NodeKind::kFoundMessage, 7}, "П0000007"_ru},
      {{NodeKind::kThreadMessage, 2'147'483'647}, "C2147483647"},  // more digits than keys were made for
      {{NodeKind::kThreadMessage, -5}, "C-0000005"},
      {{NodeKind::kYear, 2002}, "Y2002"},
      {{NodeKind::kMonth, 200203}, "Y2002M3"},
      {{NodeKind::kDay, 20020315}, "Y2002M3Z15"},
      {{NodeKind::kAuthor, 0, "M3Z Иван"_ru}, "WM3Z Иван"_ru},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(KeyText(c.key), c.text);
    EXPECT_EQ(ParseKey(c.text), c.key) << c.text;
  }
}

TEST(NodeKey, RefusesWhatNoNodeHas) {
  for (const std::string_view text : {"", "C", "C123", "C00001234", "C 0001234", "c0001234", "0001234", "H0001234", "Y",
                                      "Y02002", "Y2002M03", "Y2002M13", "Y2002M3Z", "Y2002M3Z32", "Y99999999999", "M3"})
    EXPECT_EQ(ParseKey(text), std::nullopt) << text;
}

TEST(NodeKey, NamesAMessageByItsLastSevenCharacters) {
  const struct {
    std::string_view key;
    std::optional<std::int32_t> number;
  } cases[] = {
      {"", {}},           {"Хлам"_ru, {}},       {"Дата"_ru, {}},         {"Y2002M3Z15", {}},
      {"W0001234", {}},   {"C0001234", 1234},    {"D0001234", 1234},      {"A0001234", 1234},
      {"H0001234", 1234}, {"П0001234"_ru, 1234}, {"C9999999", 9'999'999}, {"C12345678", 2'345'678},
  };
  for (const auto& c : cases) EXPECT_EQ(MessageNumber(c.key), c.number) << c.key;
}

}  // namespace
