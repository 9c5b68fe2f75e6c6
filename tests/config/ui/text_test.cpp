#include "ui/text.h"

#include <gtest/gtest.h>

#include "base/ru_literal.h"

namespace {

TEST(WindowText, EveryByteSurvivesTheWindows) {
  std::string all;
  for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
  EXPECT_EQ(ToCp1251(FromCp1251(all)), all);
  EXPECT_EQ(FromCp1251("Ёж №1"_ru), QStringLiteral("Ёж №1"));
  EXPECT_EQ(ToCp1251(QStringLiteral("a日😀б")), "a??б"_ru);
}

}  // namespace
