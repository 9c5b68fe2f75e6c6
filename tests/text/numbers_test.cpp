#include "text/numbers.h"

#include <gtest/gtest.h>

#include <limits>
#include <optional>

#include "base/error.h"
#include "base/ru_literal.h"
#include "support/error_of.h"

namespace {

TEST(LenientNumber, ReadsAsFarAsItCan) {
  const struct {
    std::string_view text;
    double want;
  } cases[] = {
      {"", 0},
      {"abc", 0},
      {"№5"_ru, 0},
      {"--5", 0},
      {"-", 0},
      {".", 0},
      {"-.e5", 0},
      {"3abc", 3},
      {"-5", -5},
      {"- 5", -5},
      {"+7", 7},
      {"12.9", 12.9},
      {"-12.9", -12.9},
      {".5", 0.5},
      {"5.", 5},
      {"1.2.3", 1.2},
      {"12,5", 12},
      {"1e3", 1000},
      {"1d3", 1000},
      {"1E-2", 0.01},
      {"1e", 1},
      {"1x", 1},
      {"1e+", 1},
      {"1e+x", 1},
      {"12345\r\n", 12345},
      {"1\r2\n3\t4", 1234},
      {" 1 615 198th", 1615198},
      {"12\xA0"
       "3",
       12},
      {"1\0"
       "2"_ru,
       1},
      {"&H1F", 31},
      {"&h1f", 31},
      {"& H 1 F", 31},
      {"&O17", 15},
      {"&17", 15},
      {"&HFFFF", -1},
      {"&HFFFF&", 65535},
      {"&H8000", -32768},
      {"&H10000", 65536},
      {"&HFFFFFFFF", -1},
      {"&H", 0},
      {"&", 0},
      {"&8", 0},
      {"&HG", 0},
      {"50.5%", 50.5},
      {"1e-400", 0},
      {"0e99999999999999999999", 0},
      {"1e-99999999999999999999", 0},
  };
  for (const auto& c : cases) EXPECT_EQ(text::LenientNumber(c.text), c.want) << c.text;
}

TEST(LenientNumber, BeyondADoubleIsErrorSix) {
  for (const std::string_view large : {"1e400", "-1e400", "1e99999999999999999999", "&H100000000"})
    EXPECT_EQ(ErrorOf([&] { text::LenientNumber(large); }), error_number::kOverflow) << large;
  EXPECT_EQ(ErrorOf([] { text::LenientNumber(std::string(400, '9')); }), error_number::kOverflow);
  EXPECT_EQ(text::LenientNumber("0." + std::string(400, '0') + "1"), 0);
}

TEST(LenientLong, CutsTowardZeroWithinThirtyTwoBits) {
  EXPECT_EQ(text::LenientLong("12.9"), 12);
  EXPECT_EQ(text::LenientLong("-12.9"), -12);
  EXPECT_EQ(text::LenientLong("2147483647.9"), std::numeric_limits<std::int32_t>::max());
  EXPECT_EQ(text::LenientLong("-2147483648.9"), std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(ErrorOf([] { text::LenientLong("2147483648"); }), error_number::kOverflow);
  EXPECT_EQ(ErrorOf([] { text::LenientLong("-2147483649"); }), error_number::kOverflow);
}

TEST(StrictNumber, TakesTheWholeTextOrNothing) {
  constexpr int kMismatch = error_number::kTypeMismatch, kOverflow = error_number::kOverflow;
  const struct {
    std::string_view text;
    int want;
    int error = 0;
  } cases[] = {
      {"80", 80},
      {" 80 ", 80},
      {"03", 3},
      {"-7", -7},
      {"1e2", 100},
      {"2,5", 2},
      {"3,5", 4},
      {"-2,5", -2},
      {"-3,5", -4},
      {"2,50001", 3},
      {"0,5", 0},
      {",5", 0},
      {"&H1F", 31},
      {"&O17", 15},
      {"32767,4", 32767},
      {"", 0, kMismatch},
      {" ", 0, kMismatch},
      {"80abc", 0, kMismatch},
      {"12.5", 0, kMismatch},
      {"да"_ru, 0, kMismatch},
      {"1 2", 0, kMismatch},
      {"1e", 0, kMismatch},
      {"-", 0, kMismatch},
      {"&H", 0, kMismatch},
      {"5&", 0, kMismatch},
      {"40000", 0, kOverflow},
      {"32767,5", 0, kOverflow},
      {"-32769", 0, kOverflow},
      {"1e400", 0, kOverflow},
  };
  for (const auto& c : cases) {
    int number = 0;
    EXPECT_EQ(ErrorOf([&] { number = text::StrictInteger(c.text); }), c.error) << c.text;
    EXPECT_EQ(number, c.want) << c.text;
    EXPECT_EQ(text::IsNumber(c.text), c.error == 0 || (c.error == kOverflow && c.text != "1e400")) << c.text;
  }
  EXPECT_EQ(text::StrictLong("40000"), 40000);
  EXPECT_TRUE(text::IsNumber("40000"));
  EXPECT_FALSE(text::IsNumber("1e400"));
  EXPECT_EQ(ErrorOf([] { text::StrictLong("2147483647,5"); }), kOverflow);
}

TEST(Numbers, HalvesRoundToEven) {
  const struct {
    double number;
    std::int32_t want;
  } cases[] = {{0.5, 0}, {1.5, 2}, {2.5, 2}, {-0.5, 0}, {-1.5, -2}, {-2.5, -2}, {2.4999, 2}, {-2.5001, -3}};
  for (const auto& c : cases) EXPECT_EQ(text::RoundHalfEven(c.number), c.want) << c.number;
  for (const double far : {2147483647.5, -2147483649.0, 1e300, std::numeric_limits<double>::quiet_NaN()})
    EXPECT_EQ(ErrorOf([&] { text::RoundHalfEven(far); }), error_number::kOverflow) << far;
}

TEST(Numbers, PaddingStandsBehindTheSign) {
  EXPECT_EQ(text::Padded(7, 5), "00007");
  EXPECT_EQ(text::Padded(1234567, 5), "1234567");
  EXPECT_EQ(text::Padded(-5, 5), "-00005");
  EXPECT_EQ(text::Padded(0, 0), "0");
  EXPECT_EQ(text::Padded(std::numeric_limits<std::int64_t>::min(), 20), "-09223372036854775808");
}

TEST(Numbers, TextIsTheShortestThatReadsBack) {
  const struct {
    double number;
    std::string_view want;
  } cases[] = {{0, "0"},
               {-0.0, "0"},
               {12, "12"},
               {-0.1, "-0.1"},
               {0.00001, "0.00001"},
               {37309.545138888, "37309.545138888"},
               {1e14, "100000000000000"},
               {1e15, "1e+15"},
               {-1e300, "-1e+300"}};
  for (const auto& c : cases) EXPECT_EQ(text::NumberText(c.number), c.want);
}

}  // namespace
