#include "download/ui/page_url.h"

#include <gtest/gtest.h>

#include <string>

#include "base/ru_literal.h"

namespace {

TEST(PageUrl, SendsTheBytesOfTheAddress) {
  const struct {
    std::string_view address;
    const char* want;
  } cases[] = {
      {"forum.test/a?b=1&c=2", "http://forum.test/a?b=1&c=2"},
      {"HTTP://forum.test/", "http://forum.test/"},
      {"https://forum.test/", "https://forum.test/"},
      {"forum.test/Ваня"_ru, "http://forum.test/%C2%E0%ED%FF"},
      {"forum.test/?n=%F7%C1 x", "http://forum.test/?n=%F7%C1%20x"},
      {"forum.test/100%", "http://forum.test/100%25"},
      {"forum.test/?a=1\r\nHost: x", "http://forum.test/?a=1%0D%0AHost:%20x"},
      {"forum.test:8080/a", "http://forum.test:8080/a"},
  };
  for (const auto& c : cases) EXPECT_EQ(PageUrl(c.address).toEncoded().toStdString(), c.want);
}

}  // namespace
