#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

#include "base/cat.h"
#include "base/checked.h"
#include "support/error_of.h"

namespace {

TEST(Checked, WhatDoesNotFitIsErrorSix) {
  constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max(), kLeast = -kMost - 1;
  EXPECT_EQ(CheckedAdd(kMost, std::int32_t{0}), kMost);
  EXPECT_EQ(CheckedSub(kLeast, std::int32_t{0}), kLeast);
  EXPECT_EQ(CheckedMul(kLeast / 2, std::int32_t{2}), kLeast);
  EXPECT_EQ(CheckedCast<std::int16_t>(-32768), -32768);
  EXPECT_THROW(CheckedAdd(kMost, std::int32_t{1}), Error);
  EXPECT_THROW(CheckedSub(kLeast, std::int32_t{1}), Error);
  EXPECT_THROW(CheckedMul(kLeast, std::int32_t{-1}), Error);
  EXPECT_THROW(CheckedAdd(std::int16_t{32767}, std::int16_t{1}), Error);
  EXPECT_THROW(CheckedCast<std::int16_t>(32768), Error);
  EXPECT_THROW(CheckedCast<std::uint32_t>(-1), Error);
  EXPECT_EQ(ErrorOf([] { CheckedCast<std::int32_t>(std::uint64_t{1} << 31); }), error_number::kOverflow);
}

TEST(Cat, JoinsTextsAndPlainNumbers) {
  EXPECT_EQ(Cat(), "");
  EXPECT_EQ(Cat("", 0, std::string("x"), -5, std::string_view("")), "0x-5");
  EXPECT_EQ(Cat(std::numeric_limits<std::int64_t>::min(), " ", std::numeric_limits<std::uint64_t>::max()),
            "-9223372036854775808 18446744073709551615");
  EXPECT_EQ(Cat(std::uint8_t{65}), "65");
}

}  // namespace
