#include "store/rescue_messages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <random>
#include <set>

#include "base/ru_literal.h"
#include "jet/faults.h"
#include "jet/table_design.h"
#include "jet/table_writer.h"
#include "store/damaged_messages.h"
#include "store/new_base.h"
#include "store/rescue_report.h"
#include "support/error_of.h"
#include "support/faulty_file.h"
#include "support/fixed_clock.h"
#include "support/message_generator.h"

namespace {

using jet::Version;
using Fields = std::vector<jet::Value>;
using Messages = std::map<int, Fields>;
using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;

const std::string kOld = "kdv.mdb", kNew = "kdv_rescued.mdb", kJournal = "-journal";
const FixedClock kClock{2024, 3, 15};
constexpr std::string_view kNoDefinition = "Определение таблицы База"_ru, kNoCatalog = "Список таблиц"_ru,
                           kCut = "посреди страницы"_ru;
constexpr std::size_t kBody = 6;  // place of the column Текст

jet::Database Open(FileSystem& files, const std::string& path) {
  return jet::Database::Open(files, path, jet::Access::kRead);
}

Fields FieldsOf(const jet::Table& table, const jet::Row& row) {
  Fields fields;
  for (const jet::Column& column : table.def().columns) fields.push_back(row.Get(column));
  return fields;
}

Messages MessagesOf(jet::Database base) {
  const jet::Table table = base.OpenTable("База"_ru);
  Messages messages;
  for (jet::TableCursor cursor = table.Scan(); cursor.Next();)
    messages[cursor.row().Int(table.def().columns[0])] = FieldsOf(table, cursor.row());
  return messages;
}

std::set<std::string> FaultsOf(jet::Database base) { return jet::FaultsOf(base); }

/// Puts messages into an empty base in no order; bodies of all kinds, Nulls, rows that have moved, and deleted ones.
void Fill(jet::Database base, int count, int first = 1) {
  const jet::Table table = base.OpenTable("База"_ru);
  jet::Transaction transaction(base.store());
  jet::TableWriter writer(transaction, table, base.PropertiesOf(table));
  using Values = std::vector<jet::Assignment>;
  const auto column = [&](std::size_t place) { return &table.def().columns[place]; };
  MessageGenerator messages(7);
  std::vector<jet::RowId> rows;
  for (int i = 0; i < count; ++i) {
    const MessageRecord message = messages.Next();
    const std::string body = message.Текст + std::string(i % 20 == 0 ? 9000 : (i % 3 == 0 ? 700 : 0), 'x');
    rows.push_back(writer.Insert(Values{{column(0), first + i * 7 % count}, {column(1), message.Вответ}}));
    writer.Update(rows.back(), Values{{column(3), *message.Дата}, {column(4), message.Автор}, {column(kBody), body}});
    if (i % 30 == 29) writer.Delete(rows.back());
  }
  for (int i = 0; i < count; i += 9) writer.Update(rows[std::size_t(i)], Values{{column(2), std::string(200, 'z')}});
  transaction.Commit();
}

class Stopping : public Progress {
 public:
  bool Advance(int percent) override { return percent < 40; }
};

class Rescuing : public testing::TestWithParam<Version> {
 protected:
  void Make(int count) {
    CreateMessageBase(disk, kOld, {GetParam()}, kClock);
    Fill(jet::Database::Open(disk, kOld, jet::Access::kReadWrite), count);
    def = Open(disk, kOld).OpenTable("База"_ru).def();
    messages = MessagesOf(Open(disk, kOld));
    good = disk.Content(kOld);
  }
  RescueResult Rescue(FileSystem& files) { return RescueMessages(files, kOld, kNew, kClock, nobody); }

  /// One of the pages of a kind that belong to `owner`: the middle one, or the one before all others.
  std::uint32_t PageOf(unsigned kind, std::uint32_t owner, double place = 0.5) const {
    std::vector<std::uint32_t> found;
    for (std::size_t at = 0; at < good.size(); at += layout.page_size)
      if (LoadU8(AsBytes(good), at) == kind && LoadU32(AsBytes(good), at + jet::kOwnerAt) == owner)
        found.push_back(static_cast<std::uint32_t>(at / layout.page_size));
    return found.at(static_cast<std::size_t>(place * static_cast<double>(found.size())));
  }
  std::string With(std::size_t at, std::string_view bytes) const {
    return std::string(good).replace(at, bytes.size(), bytes);
  }
  std::string Zeroed(std::size_t page) const {
    return With(page * layout.page_size, std::string(layout.page_size, '\0'));
  }
  std::string Random(std::size_t page) const {
    std::mt19937 random(11);
    std::string content(layout.page_size, '\0');
    for (char& byte : content) byte = static_cast<char>(random());
    return With(page * layout.page_size, content);
  }
  /// The rows of the damaged file that its indexes lead to and that can be read whole.
  Messages StillReadable(const std::string& image) const {
    const jet::PageFile whole(std::make_unique<MemoryFile>(good), layout),
        file(std::make_unique<MemoryFile>(image.substr(0, image.size() / layout.page_size * layout.page_size)), layout);
    Messages readable;
    for (jet::TableCursor cursor(whole, def); cursor.Next();) try {
        const jet::Table table(file, def);
        const Fields fields = FieldsOf(table, table.Read(cursor.row().id()));
        readable[std::get<std::int32_t>(fields[0])] = fields;
      } catch (const FormatError&) {
      }
    return readable;
  }
  /// A message that is not whole says so; what it holds is true.
  static bool IsBeginning(Fields saved, Fields original) {
    const std::string mark(IncompleteMessageMark()), body = std::get<std::string>(saved[kBody]);
    const std::string kept = body.substr(0, body.size() - std::min(body.size(), mark.size()));
    const bool is_true = std::get<std::string>(original[kBody]).starts_with(kept.substr(0, kept.find_last_of('<')));
    saved[kBody] = original[kBody] = {};
    return body == kept + mark && is_true && saved == original;
  }

  const jet::Layout& layout = jet::LayoutOf(GetParam());
  FaultyFileSystem disk;
  NoProgress nobody;
  jet::TableDef def;
  Messages messages;
  std::string good;
};
INSTANTIATE_TEST_SUITE_P(Both, Rescuing, testing::Values(Version::kJet3, Version::kJet4),
                         [](const auto& tested) { return tested.param == Version::kJet3 ? "Jet3" : "Jet4"; });

TEST_P(Rescuing, LosesOnlyWhatIsDamagedAndCountsIt) {
  Make(300);
  const std::size_t size = layout.page_size, half = size / 2, end = good.size();
  const std::uint32_t data = PageOf(jet::page_kind::kData, def.page),
                      leaf = PageOf(jet::page_kind::kIndexLeaf, def.page),
                      body = PageOf(jet::page_kind::kData, jet::kLongValueOwner), root = def.real_indexes[0].root,
                      catalog = PageOf(jet::page_kind::kData, jet::kCatalogPage);
  const std::string other = good.substr(PageOf(jet::page_kind::kData, def.page, 0) * size, size);
  const jet::TableDef objects = Open(disk, kOld).OpenTableAt(jet::kCatalogPage).def();
  const std::size_t author = good.find(jet::StoredName(GetParam(), "Автор"_ru), def.page * size);
  ASSERT_NE(leaf, root);
  const struct {
    std::string_view what;
    std::string image;
    bool losses = false, in_part = false;
    std::uint32_t damaged_page = 0;  // 0 = none that messages lie on
    std::string_view note = "";
  } cases[] = {
      {"undamaged", good},
      {"data page zeroed", Zeroed(data), true, false, data},
      {"data page random", Random(data), true, false, data},
      {"row outside", With(data * size + layout.data_page.row_table + 4, "\xFF\x1F"), true, false, data},
      {"data page written twice", With(data * size, other), true},
      {"index leaf zeroed", Zeroed(leaf)},
      {"index root zeroed", Zeroed(root)},
      {"usage maps zeroed", Zeroed(def.owned_map.page)},
      {"long values zeroed", Zeroed(body), true, true, body},
      {"long values random", Random(body), true, true, body},
      {"definition zeroed", Zeroed(def.page), true, false, 0, kNoDefinition},
      {"column's name flipped", With(author, "B"), false, false, 0, kNoDefinition},
      {"catalog zeroed", Zeroed(jet::kCatalogPage), false, false, 0, kNoCatalog},
      {"catalog's map zeroed", Zeroed(objects.owned_map.page)},
      {"catalog rows zeroed", Zeroed(catalog), false, false, 0, kNoCatalog},
      {"cut behind a third", good.substr(0, end / size / 3 * size), true, true},
      {"cut in a page", good.substr(0, end / size * 2 / 3 * size + half), true, true, 0, kCut},
      {"without the end", good.substr(0, end - half), true, false, 0, kCut},
  };
  for (const auto& c : cases) {
    const std::string what(c.what);
    FaultyFileSystem files(kOld, c.image);
    const RescueResult result = Rescue(files);
    EXPECT_TRUE(files.Content(kOld) == c.image) << what;
    EXPECT_THAT(FaultsOf(Open(files, kNew)), IsEmpty()) << what;
    EXPECT_EQ(result.HasLosses(), c.losses) << what << ": " << cp1251::ToUtf8(RescueSummary(result));
    EXPECT_EQ(!result.in_part.empty(), c.in_part) << what;
    EXPECT_EQ(result.saved + result.lost, messages.size()) << what;
    EXPECT_EQ(RescueDetails(result).empty(), !c.losses && c.note.empty()) << what;
    EXPECT_TRUE(c.damaged_page != data || result.lost_numbers.size() == result.lost) << what;
    EXPECT_TRUE(c.damaged_page == 0 || result.damaged_pages == std::vector{c.damaged_page}) << what;
    EXPECT_TRUE(c.note.empty() || testing::Value(result.notes, Contains(HasSubstr(c.note)))) << what;

    const Messages saved = MessagesOf(Open(files, kNew)), readable = StillReadable(c.image);
    EXPECT_EQ(saved.size(), result.saved) << what;
    for (const auto& [number, fields] : messages) {
      const bool in_part = std::ranges::binary_search(result.in_part, number), is_there = saved.count(number) == 1;
      const bool is_lost = std::ranges::binary_search(result.lost_numbers, number);
      EXPECT_TRUE(readable.count(number) == 0 || (is_there && !in_part)) << what << number;
      EXPECT_FALSE(is_lost && is_there) << what << number;
      if (!is_there) continue;
      EXPECT_TRUE(in_part ? IsBeginning(saved.at(number), fields) : saved.at(number) == fields) << what << number;
    }
  }
}

// Other rows or an Error, and what is saved is a sound base.
TEST_P(Rescuing, AnyByteMayLie) {
  Make(25);
  std::mt19937 random(3);
  int rescued = 0;
  for (int copy = 0; copy < 300; ++copy) {
    std::string image = good;
    for (int flips = 0; flips < 1 + copy % 30; ++flips)
      image[random() % image.size()] ^= static_cast<char>(1 + random() % 255);
    FaultyFileSystem files(kOld, image);
    try {
      const RescueResult result = Rescue(files);
      EXPECT_EQ(result.saved, MessagesOf(Open(files, kNew)).size()) << copy;
      EXPECT_THAT(FaultsOf(Open(files, kNew)), IsEmpty()) << copy;
      ++rescued;
    } catch (const Error&) {
      EXPECT_FALSE(files.Exists(kNew)) << copy;
    }
    EXPECT_TRUE(files.Content(kOld) == image) << copy;
  }
  EXPECT_GT(rescued, 150);
}

TEST_P(Rescuing, LeavesNoFileWhenItIsStoppedAndOverwritesNone) {
  Make(100);
  Stopping user;
  EXPECT_FALSE(RescueMessages(disk, kOld, kNew, kClock, user).complete);
  EXPECT_FALSE(disk.Exists(kNew) || disk.Exists(kNew + ".new") || disk.Exists(kNew + kJournal));
  disk.SetContent(kNew, "somebody's");
  EXPECT_EQ(ErrorOf([&] { Rescue(disk); }), error_number::kNoAccess);
  EXPECT_EQ(disk.Content(kNew), "somebody's");
  EXPECT_EQ(ErrorOf([&] { RescueMessages(disk, kOld, kOld, kClock, nobody); }), error_number::kNoAccess);
  EXPECT_EQ(ProposedRescuePath(disk, kOld), "kdv_rescued_2.mdb");
  disk.SetContent("x.mdb.new", good);  // the name under which a new base is made
  EXPECT_NE(ErrorOf([&] { RescueMessages(disk, "x.mdb.new", "x.mdb", kClock, nobody); }), 0);
  EXPECT_TRUE(disk.Content("x.mdb.new") == good && disk.Content(kOld) == good);
}

TEST_P(Rescuing, AFullDiskLeavesNoHalfFile) {
  Make(40);
  FaultyFileSystem counting(kOld, good);
  Rescue(counting);
  for (std::uint64_t operation = 1; operation <= counting.operations(); ++operation) {
    FaultyFileSystem files(kOld, good);
    files.FailAt(operation, FaultyFileSystem::Fault::kTear);
    const std::string& what = counting.log()[operation - 1];
    try {
      Rescue(files);
      EXPECT_EQ(MessagesOf(Open(files, kNew)), messages) << what;
    } catch (const FileError&) {
      // A name that may not last is left to a base without messages.
      EXPECT_TRUE(!files.Exists(kNew) || (what == "sync folder" && MessagesOf(Open(files, kNew)).empty())) << what;
      EXPECT_FALSE(files.Exists(kNew + ".new") || files.Exists(kNew + kJournal)) << what;
    }
    EXPECT_TRUE(files.Content(kOld) == good) << what;
  }
}

// A base that a crash left half written must be undone first; that would be writing.
TEST_P(Rescuing, AWaitingJournalIsLeftAlone) {
  Make(20);
  int refused = 0;
  for (std::uint64_t operation = 1; operation < 12; ++operation) {
    FaultyFileSystem crashing(kOld, good);
    crashing.FailAt(operation, FaultyFileSystem::Fault::kPowerCut);
    ErrorOf([&] { Fill(jet::Database::Open(crashing, kOld, jet::Access::kReadWrite), 3, 5000); });
    const auto files = crashing.AfterKill();
    const std::string before = files->Content(kOld), journal = files->Content(kOld + kJournal);
    if (ErrorOf([&] { EXPECT_GE(Rescue(*files).saved, messages.size()); }) != 0) ++refused;
    EXPECT_TRUE(files->Content(kOld) == before && files->Content(kOld + kJournal) == journal) << operation;
  }
  EXPECT_GT(refused, 0);
}

TEST(RescuingSamples, TheyComeOverRowForRow) {
  if (!std::filesystem::exists(FORUM_SAMPLES)) GTEST_SKIP() << "no sample bases at " << FORUM_SAMPLES;
  for (const std::string name : {"kdv_2002", "moysha_2001", "ptrv_2002"}) {
    DiskFileSystem real;
    FaultyFileSystem disk(kOld, ReadWholeFile(real, std::string(FORUM_SAMPLES) + "/" + name + ".mdb", 1u << 30));
    NoProgress nobody;
    EXPECT_FALSE(RescueMessages(disk, kOld, kNew, kClock, nobody).HasLosses()) << name;
    EXPECT_TRUE(MessagesOf(Open(disk, kNew)) == MessagesOf(Open(disk, kOld))) << name;
    EXPECT_THAT(FaultsOf(Open(disk, kNew)), IsEmpty()) << name;
    EXPECT_EQ(Open(disk, kNew).code_page(), Open(disk, kOld).code_page()) << name;
  }
}

}  // namespace
