#include "store/base_recordset.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <vector>

#include "base/error.h"
#include "base/ru_literal.h"
#include "jet/check.h"
#include "store/base_edits.h"
#include "store/message_rows.h"
#include "store/new_base.h"
#include "support/error_of.h"
#include "support/fixed_clock.h"
#include "support/temp_folder.h"

namespace {

class NewBaseTest : public testing::TestWithParam<jet::Version> {
 protected:
  void SetUp() override {
    CreateMessageBase(files_, path_, {.version = GetParam()}, clock_);
    base_.OpenBase(path_);
  }

  static void Add(QueryRecordset& records, std::int32_t number) {
    records.AddNew();
    records.SetText("Текст"_ru, "text");
    records.SetNumber("Код"_ru, number);
    records.Update();
  }
  TempFolder folder_;
  DiskFileSystem files_;
  FixedClock clock_{2002, 3, 15};
  mdl_AZ::ForumIni ini_{files_, folder_.path()};
  std::string path_ = folder_ / "kdv.mdb";
  MessageBase base_{files_, clock_, ini_}, other_{files_, clock_, ini_};
};
INSTANTIATE_TEST_SUITE_P(BothVersions, NewBaseTest, testing::Values(jet::Version::kJet3, jet::Version::kJet4));

TEST_P(NewBaseTest, TheHighestNumberIsFoundWhateverWasAddedLast) {
  BaseRecordset records(base_);
  EXPECT_EQ(records.GetFirst(1), 1);
  EXPECT_EQ(records.GetFirst(0), 0);
  for (const std::int32_t number : {10, 300, 20}) Add(records, number);
  EXPECT_EQ(records.GetFirst(1), 300);
  for (const std::int32_t number : {10, 20, 300}) EXPECT_TRUE(records.msgExist(number));
  EXPECT_FALSE(records.msgExist(11));
}

TEST_P(NewBaseTest, ABatchIsStoredWholeOrNotAtAll) {
  other_.OpenBase(path_);
  {
    BaseRecordset records(base_);
    Add(records, 1);
    records.BeginBatch();
    for (std::int32_t number = 2; number <= 300; ++number) Add(records, number);
    EXPECT_TRUE(records.msgExist(300));  // before it is on the disk
    EXPECT_FALSE(ReadMessage(other_.connection(), 2).has_value());
    records.DropBatch();
    EXPECT_FALSE(records.msgExist(300));
    EXPECT_TRUE(records.msgExist(1));
    records.BeginBatch();
    for (std::int32_t number = 2; number <= 200; ++number) Add(records, number);
    EXPECT_EQ(ErrorOf([&] { Add(records, 200); }), error_number::kDuplicateKey);  // costs the others nothing
    records.Cancel();
    records.CommitBatch();
    EXPECT_EQ(records.GetFirst(0), 200);
    records.BeginBatch();
    Add(records, 201);
  }  // a batch that nobody committed
  EXPECT_TRUE(ReadMessage(other_.connection(), 200).has_value());
  EXPECT_FALSE(ReadMessage(other_.connection(), 201).has_value());
  NoProgress nobody;
  EXPECT_EQ(jet::Check(base_.database(), nobody).errors, 0u);
}

TEST_P(NewBaseTest, AMessageIsStoredWithEveryField) {
  {
    BaseRecordset records(base_);
    records.AddNew();
    records.SetText("Текст"_ru, std::string(5000, 'x'));
    records.SetDate("Дата"_ru, OleDate{37000.25});
    for (const std::string_view field : {"Автор"_ru, "Тема"_ru, "АвторMail"_ru, "Картинка"_ru})
      records.SetText(field, field);
    records.SetNumber("Вответ"_ru, 4);
    records.SetNumber("Код"_ru, 5);
    records.Update();
  }
  const auto message = ReadMessage(base_.connection(), 5);
  ASSERT_TRUE(message.has_value());
  EXPECT_EQ(message->Вответ, 4);
  EXPECT_EQ(message->Тема, "Тема"_ru);
  EXPECT_EQ(message->Автор, "Автор"_ru);
  EXPECT_EQ(message->АвторMail, "АвторMail"_ru);
  EXPECT_EQ(message->Картинка, "Картинка"_ru);
  EXPECT_EQ(message->Дата, OleDate{37000.25});
  EXPECT_EQ(message->Текст, std::string(5000, 'x'));
}

TEST_P(NewBaseTest, AFileThatAnotherProgramReplacedIsReadAfterReopening) {
  std::filesystem::rename(path_, path_ + ".bak");
  std::filesystem::copy_file(path_ + ".bak", path_);
  {
    BaseRecordset records(base_);
    Add(records, 7);
  }
  EXPECT_FALSE(ReadMessage(base_.connection(), 7).has_value());
  base_.Reopen();
  EXPECT_TRUE(ReadMessage(base_.connection(), 7).has_value());
  std::filesystem::remove(path_);
  EXPECT_NE(ErrorOf([&] { base_.Reopen(); }), 0);
  EXPECT_TRUE(ReadMessage(base_.connection(), 7).has_value());
}

TEST_P(NewBaseTest, ANumberThatNoKeyHoldsIsRefusedBeforeAnythingIsWritten) {
  BaseRecordset records(base_);
  Add(records, 9'999'999);
  EXPECT_EQ(ErrorOf([&] { Add(records, 10'000'000); }), error_number::kOverflow);
  records.Cancel();
  EXPECT_EQ(records.GetFirst(0), 9'999'999);
}

TEST_P(NewBaseTest, ARowUnderWayIsDroppedByAnythingButUpdate) {
  BaseRecordset records(base_);
  const std::function<void()> ends[] = {[&] { records.Cancel(); }, [&] { records.msgExist(1); },
                                        [&] { records.GetFirst(1); }};
  for (const auto& end : ends) {
    records.AddNew();
    records.SetNumber("Код"_ru, 8);
    end();
    EXPECT_EQ(ErrorOf([&] { records.Update(); }), error_number::kNothingToStore);
  }
  EXPECT_FALSE(records.msgExist(8));
}

TEST_P(NewBaseTest, OneProgramWritesWhileOthersRead) {
  other_.OpenBase(path_);
  sql::Connection& reading = base_.connection();
  {
    BaseRecordset records(base_);
    Add(records, 1);
    EXPECT_TRUE(ReadMessage(other_.connection(), 1).has_value());
    EXPECT_TRUE(ReadMessage(reading, 1).has_value());  // taken before writing began
    EXPECT_EQ(ErrorOf([&] { BaseRecordset second(other_); }), error_number::kLocked);
    EXPECT_EQ(ErrorOf([&] { base_.OpenBase(path_); }), error_number::kLocked);
    BaseEdits(base_).Delete(std::vector<std::int32_t>{1});  // the same program may
    EXPECT_FALSE(records.msgExist(1));
    Add(records, 2);
  }
  EXPECT_EQ(ErrorOf([&] { base_.connection().Execute("DELETE FROM База"_ru); }), error_number::kReadOnly);
  BaseEdits(other_).Delete(std::vector<std::int32_t>{2});
  EXPECT_FALSE(ReadMessage(base_.connection(), 2).has_value());
}

TEST_P(NewBaseTest, AThreadIsDeletedWholeOrNotAtAll) {
  {
    BaseRecordset records(base_);
    for (const std::int32_t number : {1, 2, 3}) Add(records, number);
  }
  other_.OpenBase(path_);
  const MessageBase::Writing locked(other_);
  EXPECT_EQ(ErrorOf([&] { BaseEdits(base_).Delete(std::vector<std::int32_t>{3, 2}); }), error_number::kLocked);
  BaseEdits(other_).Delete(std::vector<std::int32_t>{3, 77, 2});
  EXPECT_TRUE(ReadMessage(base_.connection(), 1).has_value());
  for (const std::int32_t number : {2, 3}) EXPECT_FALSE(ReadMessage(base_.connection(), number).has_value());
}

}  // namespace
