#include "support/hostile_pages.h"

#include <gtest/gtest.h>

#include "base/error.h"
#include "download_fixed/kdv.h"
#include "download_fixed/rts_an.h"
#include "support/fixed_clock.h"

namespace {

const FixedClock kClock(2002, 6, 15);

TEST(HostilePages, RtsAn) {
  hostile_pages::ForEachPage("rts-an", [](std::string_view page) {
    int step = 0;
    try {
      rts_an::trueMsg(page);
      EXPECT_FALSE(rts_an::ParseMessage(page, 7, kClock, step).Текст.empty());
    } catch (const Error&) {
      EXPECT_TRUE(step == 15 || step == 17) << step;
    }
    try {
      EXPECT_GE(rts_an::HighestNumber(page), 0);
    } catch (const Error&) {
    }
  });
}

TEST(HostilePages, Kdv) {
  hostile_pages::ForEachPage("kdv", [](std::string_view page) {
    int step = 0;
    try {
      kdv::trueMsgKDV(page);
      EXPECT_FALSE(kdv::ParseMessage(page, 7, kClock, step).Текст.empty());
    } catch (const Error&) {
      EXPECT_EQ(step, 4);
    }
  });
}

}  // namespace
