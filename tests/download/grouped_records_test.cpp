// On a real base, whose disk fails when a test says so.

#include "download/grouped_records.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "base/cat.h"
#include "base/ru_literal.h"
#include "config/mdl_AZ.h"
#include "jet/check.h"
#include "store/base_recordset.h"
#include "store/message_rows.h"
#include "store/new_base.h"
#include "support/error_of.h"
#include "support/faulty_file.h"
#include "support/fixed_clock.h"
#include "support/hand_alarm.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Numbers = std::vector<std::int32_t>;
using Fault = FaultyFileSystem::Fault;
using Lasting = FaultyFileSystem::Lasting;

constexpr const char* kPath = "/kdv.mdb";

struct Download {
  Download() {
    CreateMessageBase(files, kPath, {}, clock);
    base.OpenBase(kPath);
    rows.emplace(base);
    records.emplace(*rows, alarm, [this](const SettledRows& settled) {
      stored.insert(stored.end(), settled.stored.begin(), settled.stored.end());
      for (const LostRow& row : settled.lost) lost.push_back(row.number);
    });
  }
  void Add(std::int32_t number, std::string_view text = "text") {
    records->AddNew();
    records->SetText("Текст"_ru, text);
    records->SetText("Автор"_ru, Cat("Автор "_ru, number));
    records->SetNumber("Код"_ru, number);
    records->SetDate("Дата"_ru, OleDate{37'000.5 + number});
    records->Update();
  }
  /// What a power cut at this moment leaves, as a base of its own.
  Numbers OnDisk() {
    const auto left = files.AfterPowerCut(FaultyFileSystem::Unsynced::kLost);
    MessageBase again(*left, clock, ini);
    again.OpenBase(kPath);
    NoProgress nobody;
    EXPECT_EQ(jet::Check(again.database(), nobody).errors, 0u);
    Numbers numbers;
    for (std::int32_t number = 1; number < 10; ++number) {
      const auto message = ReadMessage(again.connection(), number);
      if (!message) continue;
      numbers.push_back(number);
      EXPECT_EQ(message->Автор, Cat("Автор "_ru, number));
      EXPECT_EQ(message->Дата, OleDate{37'000.5 + number});
    }
    return numbers;
  }

  FaultyFileSystem files;
  FixedClock clock{2002, 3, 15};
  mdl_AZ::ForumIni ini{files, "/"};
  MessageBase base{files, clock, ini};
  HandAlarm alarm;
  Numbers stored, lost;
  std::optional<BaseRecordset> rows;
  std::optional<GroupedRecords> records;
};

class GroupedRecordsTest : public testing::Test, protected Download {};

TEST_F(GroupedRecordsTest, ARowIsToldAsStoredWhenItIsOnTheDisk) {
  Add(1);
  EXPECT_THAT(stored, ElementsAre(1)) << "nothing came shortly before: at once";
  Add(2);
  Add(3);
  EXPECT_TRUE(records->msgExist(3));
  EXPECT_EQ(records->GetFirst(0), 3);
  EXPECT_THAT(stored, ElementsAre(1));
  EXPECT_THAT(OnDisk(), ElementsAre(1));
  alarm.Ring();
  EXPECT_THAT(stored, ElementsAre(1, 2, 3));
  EXPECT_THAT(OnDisk(), ElementsAre(1, 2, 3));
  Add(4);
  EXPECT_THAT(OnDisk(), ElementsAre(1, 2, 3)) << "a commit was a moment ago";
  records->Flush();
  EXPECT_THAT(OnDisk(), ElementsAre(1, 2, 3, 4));
  alarm.Ring();
  Add(5);
  EXPECT_THAT(OnDisk(), ElementsAre(1, 2, 3, 4, 5)) << "a while without rows";
  Add(6);
  records.reset();
  EXPECT_THAT(OnDisk(), ElementsAre(1, 2, 3, 4, 5, 6)) << "the end stores what waits";
  EXPECT_THAT(lost, IsEmpty());
}

TEST_F(GroupedRecordsTest, LargeTextsDoNotWait) {
  Add(1);
  Add(2, std::string(GroupedRecords::kMostBytes + 1, 'x'));
  Add(3);
  EXPECT_THAT(OnDisk(), ElementsAre(1, 2));
}

TEST_F(GroupedRecordsTest, ARefusedRowCostsTheOthersNothing) {
  for (const std::int32_t number : {1, 2, 3}) Add(number);
  EXPECT_EQ(ErrorOf([&] { Add(2); }), error_number::kDuplicateKey);
  records->Cancel();
  EXPECT_THAT(OnDisk(), ElementsAre(1, 2, 3));
  Add(4);
  alarm.Ring();
  EXPECT_THAT(stored, ElementsAre(1, 2, 3, 4));
  EXPECT_THAT(OnDisk(), ElementsAre(1, 2, 3, 4));
}

// The commit of three rows that wait meets a fault at each of its operations in turn.
TEST(GroupedRecordsOnAFailingDisk, WhatIsToldIsTrueWhateverFails) {
  constexpr std::uint64_t kMostOperations = 12;
  int strikes = 0;
  for (const Lasting lasting : {Lasting::kOnce, Lasting::kFromThenOn}) {
    for (const Fault fault : {Fault::kFail, Fault::kTear}) {
      for (std::uint64_t operation = 1; operation <= kMostOperations; ++operation) {
        SCOPED_TRACE(Cat("operation ", operation));
        Download download;
        download.Add(1);
        download.files.FailAt(operation, fault, lasting);
        for (const std::int32_t number : {2, 3, 4}) download.Add(number);
        download.records->Flush();
        EXPECT_EQ(download.stored.size() + download.lost.size(), 4u);
        EXPECT_EQ(download.OnDisk(), download.stored);
        if (lasting == Lasting::kOnce) {
          EXPECT_THAT(download.lost, IsEmpty()) << "each row had another try";
        }
        if (!download.lost.empty()) ++strikes;
      }
    }
  }
  EXPECT_GT(strikes, 5);
}

}  // namespace
