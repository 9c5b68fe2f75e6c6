// A disk that fails at any moment of an insert or a delete.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/cp1251.h"
#include "base/error.h"
#include "jet/faults.h"
#include "jet/writing.h"

namespace jet {
namespace {

using Fault = FaultyFileSystem::Fault;
using Unsynced = FaultyFileSystem::Unsynced;

struct Work {
  const char* name;
  void (*change)(TableWriter&, const Table&);
};

const Work kWorks[] = {
    {"insert",
     [](TableWriter& writer, const Table& table) {
       writer.Insert(
           Values(table, {{"Код"_ru, 3}, {"Тема"_ru, Text("x")}, {"Текст"_ru, Text(std::string(9000, 'x'))}}));
     }},
    {"delete",
     [](TableWriter& writer, const Table& table) {
       const Value key = 2;
       writer.Delete(*table.Seek(table.def().real_indexes[0], std::span(&key, 1)));
     }},
};

using Rows = std::map<std::int32_t, std::vector<Value>>;

class FailingDisk : public testing::TestWithParam<Version> {
 protected:
  // @return what went wrong, UTF-8; empty = nothing
  static std::string Run(const Work& work, Database& base) {
    try {
      Transaction transaction(base.store());
      const Table table = base.OpenTable("База"_ru);
      TableWriter writer(transaction, table, {});
      work.change(writer, table);
      transaction.Commit();
      return {};
    } catch (const Error& error) {
      return cp1251::ToUtf8(error.what());
    }
  }

  Rows MessagesOf(Database& base) const {
    EXPECT_EQ(DamageOf(base), known_faults_);
    return RowsOf(base.OpenTable("База"_ru));
  }
  Rows MessagesOn(FileSystem& disk) const {
    Database base = Database::Open(disk, kBasePath, Access::kReadWrite);
    return MessagesOf(base);
  }

 private:
  WritableBase untouched_{GetParam()};
  std::set<std::string> known_faults_ = DamageOf(untouched_.base);
};

INSTANTIATE_TEST_SUITE_P(BothVersions, FailingDisk, testing::ValuesIn(kBothVersions),
                         [](const auto& version) { return version.param == Version::kJet3 ? "Jet3" : "Jet4"; });

TEST_P(FailingDisk, AChangeHappensWholeOrNotAtAllAndSaysSo) {
  for (const Work& work : kWorks) {
    WritableBase whole(GetParam());
    const Rows before = MessagesOf(whole.base);
    const std::uint64_t opened = whole.disk.operations();
    ASSERT_EQ(Run(work, whole.base), "");
    const std::uint64_t operations = whole.disk.operations();
    const Rows after = MessagesOf(whole.base);
    ASSERT_NE(before, after);
    for (const Fault fault : {Fault::kFail, Fault::kTear, Fault::kPowerCut}) {
      for (std::uint64_t n = opened + 1; n <= operations; ++n) {
        WritableBase failing(GetParam());
        failing.disk.FailAt(n, fault);
        const std::string said = Run(work, failing.base);
        SCOPED_TRACE(work.name + (" fails at " + failing.disk.log()[n - 1]));
        const bool stored = said.empty();
        if (fault != Fault::kPowerCut) {
          EXPECT_EQ(MessagesOf(failing.base), stored ? after : before);
          EXPECT_TRUE(stored || said.find("база осталась прежней") != std::string::npos) << said;
          EXPECT_EQ(Run(work, failing.base).empty(), !stored);  // what failed can be tried again
        }
        const auto later = failing.disk.AfterPowerCut(Unsynced::kMixed, n);
        const Rows found = MessagesOn(*later);
        EXPECT_TRUE(found == after || (found == before && (fault == Fault::kPowerCut && !stored)));
      }
    }
  }
}

}  // namespace
}  // namespace jet
