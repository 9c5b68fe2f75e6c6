// Random changes, held against a map in memory.

#include <gtest/gtest.h>

#include <map>
#include <random>

#include "base/error.h"
#include "jet/faults.h"
#include "jet/writing.h"

namespace jet {
namespace {

enum class Keys { kAscending, kDescending, kRandom };

struct Message {
  RowId id;
  std::vector<Value> values;  // like the table's columns
};

class Model {
 public:
  Model(Version version, Keys keys, unsigned seed) : writable_(version), keys_(keys), random_(seed) {
    for (const std::string_view name : {"Тема"_ru, "Текст"_ru}) properties_[name].allow_zero_length = true;
    sound_ = DamageOf(writable_.base);
    for (TableCursor cursor = table().Scan(); cursor.Next();) {
      Message& message = rows_[cursor.row().Int(table().def().columns.front())];
      message.id = cursor.row().id();
      for (const Column& column : table().def().columns) message.values.push_back(cursor.row().Get(column));
    }
  }

  void RunTransaction(int changes) {
    const auto before = rows_;
    Transaction transaction(writable_.base.store());
    {
      TableWriter writer(transaction, table(), properties_);
      for (int i = 0; i < changes; ++i) ChangeOne(writer);
    }
    if (Chance(25))
      rows_ = before;
    else
      transaction.Commit();
  }

  void Check() {
    Database reopened = writable_.Reopened();
    for (Database* const base : {&writable_.base, &reopened}) {
      const Table seen = base->OpenTable("База"_ru);
      ASSERT_EQ(seen.CountRows(), rows_.size());
      for (const auto& [number, message] : rows_) {
        const Row row = seen.Read(message.id);
        for (std::size_t i = 0; i < message.values.size(); ++i)
          ASSERT_TRUE(row.Get(seen.def().columns[i]) == message.values[i]) << number << ", column " << i;
      }
      ASSERT_EQ(DamageOf(*base), sound_);
    }
  }

 private:
  const Table& table() const { return writable_.messages; }
  std::uint32_t Below(std::uint32_t end) { return static_cast<std::uint32_t>(random_()) % end; }
  bool Chance(unsigned percent) { return Below(100) < percent; }

  std::int32_t NewNumber() {
    ++serial_;
    if (keys_ == Keys::kAscending) return 10 + serial_;
    if (keys_ == Keys::kDescending) return 9'000'000 - serial_;
    return static_cast<std::int32_t>(10 + Below(9'000'000));
  }

  std::string RandomText(std::size_t size) {
    constexpr std::string_view kLetters = "abc <br>.";
    std::string text;
    const bool russian = Chance(60);
    while (text.size() < size) text += russian && Chance(80) ? static_cast<char>(0xC0 + Below(64)) : kLetters[Below(9)];
    return text;
  }

  std::size_t BodySize() {
    constexpr std::size_t kEdges[] = {0, 1, 32, 33, 64, 65, 1731, 1732, 1815, 1816, 2032, 2033, 3630, 3631, 4072};
    switch (Below(8)) {
      case 0: return kEdges[Below(std::size(kEdges))];
      case 1: return Below(10'000);
      case 2: return Chance(20) ? Below(100'000) : Below(2000);
      default: return Below(600);
    }
  }

  Value RandomValue(std::size_t column) {
    if (column != 1 && Chance(15)) return Null{};
    switch (column) {
      case 1: return static_cast<std::int32_t>(Below(300));
      case 2: return RandomText(Below(256));
      case 3: return OleDate{static_cast<double>(Below(40'000'000)) / 1000};
      case 6: return RandomText(BodySize());
      case 7: return RandomText(1 + Below(50));
      default: return RandomText(1 + Below(100));
    }
  }

  void ChangeOne(TableWriter& writer) {
    const std::uint32_t kind = Below(10);
    if (rows_.empty() || kind < 5) return Insert(writer);
    auto chosen = rows_.lower_bound(static_cast<std::int32_t>(Below(9'000'000)));
    if (chosen == rows_.end() || keys_ != Keys::kRandom)
      chosen = std::next(rows_.begin(), Below(static_cast<std::uint32_t>(rows_.size())));
    if (kind < 8) return Update(writer, chosen->first);
    writer.Delete(chosen->second.id);
    rows_.erase(chosen);
  }

  void Insert(TableWriter& writer) {
    const std::int32_t number = NewNumber();
    std::vector<Value> values = {number};
    std::vector<Assignment> assignments = {{&table().def().columns[0], number}};
    for (std::size_t i = 1; i < table().def().columns.size(); ++i) {
      values.push_back(RandomValue(i));
      assignments.push_back({&table().def().columns[i], values[i]});
    }
    if (rows_.contains(number)) {
      EXPECT_THROW(writer.Insert(assignments), DuplicateKey);
      return;
    }
    rows_[number] = {writer.Insert(assignments), std::move(values)};
  }

  void Update(TableWriter& writer, std::int32_t number) {
    Message message = rows_[number];
    std::vector<Assignment> assignments;
    for (std::size_t i = 0; i < message.values.size(); ++i) {
      if (!Chance(i == 0 ? 10 : 40)) continue;
      message.values[i] = i == 0 ? Value(NewNumber()) : RandomValue(i);
      assignments.push_back({&table().def().columns[i], message.values[i]});
    }
    const std::int32_t changed = std::get<std::int32_t>(message.values[0]);
    if (changed != number && rows_.contains(changed)) {
      EXPECT_THROW(writer.Update(message.id, assignments), DuplicateKey);
      return;
    }
    writer.Update(message.id, assignments);
    rows_.erase(number);
    rows_[changed] = std::move(message);
  }

  WritableBase writable_;
  Keys keys_;
  std::mt19937 random_;
  TableProperties properties_;
  std::set<std::string> sound_;
  std::map<std::int32_t, Message> rows_;
  std::int32_t serial_ = 0;
};

TEST(TableModel, RandomChangesLeaveWhatAMapHolds) {
  for (const Version version : kBothVersions) {
    for (const Keys keys : {Keys::kAscending, Keys::kDescending, Keys::kRandom}) {
      SCOPED_TRACE(testing::Message() << "version " << static_cast<int>(version) << ", keys "
                                      << static_cast<int>(keys));
      Model model(version, keys, 17u + static_cast<unsigned>(keys));
      for (int i = 0; i < 24; ++i) {  // 8,550 changes
        model.RunTransaction(i % 4 == 3 ? 600 : 25 * i);
        if (i % 6 == 5) {
          ASSERT_NO_FATAL_FAILURE(model.Check());
        }
      }
    }
  }
}

}  // namespace
}  // namespace jet
