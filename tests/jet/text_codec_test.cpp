#include "jet/text_codec.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "base/cp1251.h"

namespace jet {
namespace {

std::string Bytes16(std::u16string_view units) {
  std::string bytes;
  for (const char16_t unit : units) {
    bytes += static_cast<char>(unit & 0xFF);
    bytes += static_cast<char>(unit >> 8);
  }
  return bytes;
}

// Text is decoded in blocks where it is ASCII and А-я alone: no length and no place of another
// character may show.
TEST(AppendText, DecodesEveryLengthWithAnyCharacterAnywhere) {
  const std::u16string_view odd_ones[] = {u"", u"ё", u"«", u"π", u"\u0080", u"\U0001F600", u"\xD83D", u"\xDE00"};
  for (std::size_t length = 0; length < 40; ++length) {
    for (const std::u16string_view odd : odd_ones) {
      for (std::size_t at = 0; at <= length; ++at) {
        std::u16string units;
        for (std::size_t i = 0; i < length; ++i) units += i % 5 == 0 ? u'z' : static_cast<char16_t>(u'А' + i);
        units.insert(at, odd);
        const std::string stored = Bytes16(units);
        std::string text = "before ";
        ASSERT_TRUE(AppendText(Version::kJet4, AsBytes(stored), text));
        ASSERT_EQ(text, "before " + cp1251::FromUtf16(AsBytes(stored))) << length << ' ' << at;
      }
    }
  }
}

TEST(AppendText, RefusesHalfACharacterAndLeavesTheTextAlone) {
  using std::string_view_literals::operator""sv;
  for (const std::string_view stored : {"a"sv, "a\0b"sv, "\xFF\xFE\0a"sv}) {
    std::string text = "before";
    EXPECT_FALSE(AppendText(Version::kJet4, AsBytes(stored), text)) << stored.size();
    EXPECT_EQ(text, "before");
  }
}

}  // namespace
}  // namespace jet
