#include "download_configured/page_check.h"

#include <gtest/gtest.h>

#include "base/cp1251.h"
#include "base/ru_literal.h"
#include "demo_forum/demo_pages.h"
#include "download/page_code.h"

namespace {

using namespace page_code;

TEST(PageCheck, LaterReportsOverrideEarlierOnes) {
  const struct {
    std::string_view kind, page;
    int want;
  } cases[] = {
      {"moysha", "", kNotLoaded},
      {"moysha", " ", kMessage},
      {"gelium", "x not found (404) x", kNoSuchMessage},
      {"moysha", "404 Not Found", kMessage},  // only as the end of a title
      {"moysha", "<title>404 not found</title>", kNoSuchMessage},
      {"ows_ptrv", "Cannot find server</Title>", kNoSuchMessage},
      {"gelium", "СЕРВЕР НЕ НАЙДЕН"_ru, kNoSuchMessage},
      {"moysha", "proxy server report: default", kNotLoaded},
      {"moysha", "Proxy Server Report: Default Not Found (404)", kNotLoaded},
      {"ptrv", "*previousname* on *previousdate*:", kNoSuchMessage},
      {"ptrv", "*PreviousName* on *previousdate*: Proxy Server Report: Default", kNoSuchMessage},
      {"moysha", "*previousname* on *previousdate*:", kMessage},
      {"gelium", "*previousname* on *previousdate*:", kMessage},
  };
  for (const auto& c : cases) EXPECT_EQ(trueMsg(c.kind, c.page), c.want) << c.kind << " " << cp1251::ToUtf8(c.page);
}

TEST(PageCheck, KnowsWhatTheForumsAnswer) {
  for (const std::string_view kind : {"ptrv", "moysha", "gelium", "ows_ptrv"}) {
    EXPECT_EQ(trueMsg(kind, demo_pages::NotFoundPage(kind)), kNoSuchMessage);
    EXPECT_EQ(trueMsg(kind, demo_pages::ProxyReport()), kNotLoaded);
  }
}

}  // namespace
