#include "explorer/empty_tree.h"

#include <gtest/gtest.h>

#include "base/ru_literal.h"
#include "store/base_recordset.h"
#include "store/new_base.h"
#include "support/faulty_file.h"
#include "support/fixed_clock.h"

namespace {

TEST(EmptyTree, ABaseWithoutMessagesSaysHowToGetThem) {
  FaultyFileSystem files;
  const FixedClock clock(2002, 3, 15);
  const mdl_AZ::ForumIni ini(files, "/");
  MessageBase base(files, clock, ini);
  CreateMessageBase(files, "/kdv.mdb", {}, clock);
  base.OpenBase("/kdv.mdb");
  BuiltTree built;
  built.status = "nothing so new";
  constexpr std::string_view kFirstWords = "В этой базе пока нет ни одного сообщения"_ru;
  EXPECT_TRUE(EmptyTreeText(base.connection(), built).starts_with(kFirstWords));
  {
    BaseRecordset records(base);
    records.AddNew();
    records.SetNumber("Код"_ru, 1);
    records.Update();
  }
  EXPECT_EQ(EmptyTreeText(base.connection(), built), built.status) << "older than what is on show";
}

}  // namespace
