#include "explorer/base_rows.h"

#include "base/cp1251.h"
#include "sample_base.h"

namespace {

using cp1251::ToUtf8;

class BaseRowsTest : public SampleBase {};

TEST_F(BaseRowsTest, HoldWhatTheTreeNeedsInTheOrderOfTheNumbers) {
  for (const bool with_author : {false, true}) {
    BaseRows rows(base_.connection(), {.LoadDays = 3000, .show_author = with_author});
    ASSERT_EQ(rows.Count(), static_cast<std::int32_t>(listed_.size()));
    for (const auto& listed : listed_) {
      ASSERT_TRUE(rows.Next());
      const TreeRow row = rows.Current();
      ASSERT_EQ(row.Код, listed[kКод]);
      ASSERT_EQ(row.Вответ, listed[kВответ].is_null() ? 0 : listed[kВответ].get<std::int32_t>());
      ASSERT_EQ(ToUtf8(row.Тема), TextOf(listed[kТема]));
      ASSERT_EQ(ToUtf8(row.Автор), with_author ? TextOf(listed[kАвтор]) : "");
      ASSERT_EQ(row.Дата.has_value(), !listed[kДата].is_null());
      if (row.Дата) {
        ASSERT_DOUBLE_EQ(row.Дата->days, listed[kДата]);
      }
    }
    EXPECT_FALSE(rows.Next());
  }
}

TEST_F(BaseRowsTest, DaysAreCountedFromTheMomentOfTheQuestion) {
  for (const std::int32_t days : {0, 3, 4, 100}) {
    const auto is_loaded = [&](const auto& row) {
      return !row[kДата].is_null() && row[kДата] > clock_.Now().days - days;
    };
    EXPECT_EQ(BaseRows(base_.connection(), {.LoadDays = days}).Count(),
              std::count_if(listed_.begin(), listed_.end(), is_loaded))
        << days;
  }
}

}  // namespace
