#include "text/numbers.h"

#include <gtest/gtest.h>

#include <limits>

#include "base/cp1251.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "support/error_of.h"
#include "text/strings.h"

namespace {

constexpr int kMismatch = error_number::kTypeMismatch, kOverflow = error_number::kOverflow;

TEST(LenientNumber, ReadsAsFarAsItCan) {
  const struct {
    double want;
    std::string_view texts;  // with "|" between them
  } cases[] = {{3, "3abc"},    {-12.9, "-12.9"},  {12345, "12345\r\n"}, {1, "1e|1x|1e+|1e+x|1\0.5"_ru},
               {-5, "-5|- 5"}, {1.2, "1.2.3"},    {1234, "1\r2\n3\t4"}, {12, "12,5|12\u00A03"_ru},
               {7, "+7"},      {1000, "1e3|1d3"}, {65535, "&HFFFF&"},   {1615198, " 1 615 198th"},
               {12.9, "12.9"}, {0.01, "1E-2"},    {-32768, "&H8000"},   {31, "&H1F|&h1f|& H 1 F"},
               {0.5, ".5"},    {50.5, "50.5%"},   {65536, "&H10000"},   {-1, "&HFFFF|&HFFFFFFFF"},
               {5, "5."},      {15, "&O17|&17"}};
  for (const auto& c : cases)
    for (const std::string_view text : text::Split(c.texts, "|"))
      EXPECT_EQ(text::LenientNumber(text), c.want) << cp1251::ToUtf8(text);
  constexpr std::string_view kZeros =
      "|abc|№5|--5|-|.|-.e5|&H|&|&8|&HG|1e-400|0e99999999999999999999|1e-99999999999999999999"_ru;
  for (const std::string_view text : text::Split(kZeros, "|"))
    EXPECT_EQ(text::LenientNumber(text), 0) << cp1251::ToUtf8(text);
  EXPECT_EQ(text::LenientNumber("0." + std::string(400, '0') + "1"), 0);
}

TEST(LenientNumber, BeyondADoubleIsErrorSix) {
  for (const std::string& large : {std::string("1e400"), std::string("-1e400"), std::string("1e99999999999999999999"),
                                   std::string("&H100000000"), std::string(400, '9')})
    EXPECT_EQ(ErrorOf([&] { text::LenientNumber(large); }), kOverflow) << large;
}

TEST(LenientLong, CutsTowardZeroWithinThirtyTwoBits) {
  EXPECT_EQ(text::LenientLong("12.9"), 12);
  EXPECT_EQ(text::LenientLong("-12.9"), -12);
  EXPECT_EQ(text::LenientLong("2147483647.9"), std::numeric_limits<std::int32_t>::max());
  EXPECT_EQ(text::LenientLong("-2147483648.9"), std::numeric_limits<std::int32_t>::min());
  for (const char* large : {"2147483648", "-2147483649"})
    EXPECT_EQ(ErrorOf([&] { text::LenientLong(large); }), kOverflow) << large;
}

TEST(StrictNumber, TakesTheWholeTextOrNothing) {
  const struct {
    int want, error;
    std::string_view texts;  // with "|" between them
  } cases[] = {{-7, 0, "-7"},   {80, 0, "80| 80 "}, {3, 0, "03|2,50001"},
               {100, 0, "1e2"}, {-4, 0, "-3,5"},    {32767, 0, "32767,4"},
               {2, 0, "2,5"},   {0, 0, "0,5|,5"},   {0, kMismatch, "| |80abc|12.5|да|1 2|1e|-|&H|5&"_ru},
               {4, 0, "3,5"},   {31, 0, "&H1F"},    {0, kOverflow, "40000|32767,5|-32769|1e400"},
               {-2, 0, "-2,5"}, {15, 0, "&O17"}};
  for (const auto& c : cases)
    for (const std::string_view text : text::Split(c.texts, "|")) {
      int number = 0;
      EXPECT_EQ(ErrorOf([&] { number = text::StrictInteger(text); }), c.error) << cp1251::ToUtf8(text);
      EXPECT_EQ(number, c.want) << cp1251::ToUtf8(text);
      EXPECT_EQ(text::IsNumber(text), c.error != kMismatch && text != "1e400") << cp1251::ToUtf8(text);
    }
  EXPECT_EQ(text::StrictLong("40000"), 40000);
  EXPECT_EQ(ErrorOf([] { text::StrictLong("2147483647,5"); }), kOverflow);
}

TEST(Numbers, HalvesRoundToEven) {
  const struct {
    double number;
    std::int32_t want;
  } cases[] = {{0.5, 0}, {1.5, 2}, {2.5, 2}, {-0.5, 0}, {-1.5, -2}, {-2.5, -2}, {2.4999, 2}, {-2.5001, -3}};
  for (const auto& c : cases) EXPECT_EQ(text::RoundHalfEven(c.number), c.want) << c.number;
  for (const double far : {2147483647.5, -2147483649.0, 1e300, std::numeric_limits<double>::quiet_NaN()})
    EXPECT_EQ(ErrorOf([&] { text::RoundHalfEven(far); }), kOverflow) << far;
}

TEST(Numbers, PaddingStandsBehindTheSign) {
  EXPECT_EQ(text::Padded(7, 5), "00007");
  EXPECT_EQ(text::Padded(1234567, 5), "1234567");
  EXPECT_EQ(text::Padded(-5, 5), "-00005");
  EXPECT_EQ(text::Padded(0, 0), "0");
  EXPECT_EQ(text::Padded(std::numeric_limits<std::int64_t>::min(), 20), "-09223372036854775808");
}

TEST(Numbers, TextIsTheShortestThatReadsBack) {
  const std::pair<double, std::string_view> cases[] = {
      {0, "0"},   {-0.0, "0"},    {1e15, "1e+15"},     {0.00001, "0.00001"},     {37309.545138888, "37309.545138888"},
      {12, "12"}, {-0.1, "-0.1"}, {-1e300, "-1e+300"}, {1e14, "100000000000000"}};
  for (const auto& [number, want] : cases) EXPECT_EQ(text::NumberText(number), want);
}

}  // namespace
