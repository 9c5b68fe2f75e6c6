#include "store/rescue_messages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "jet/salvage_cursor.h"
#include "jet/table_design.h"
#include "store/rescue_report.h"
#include "store/rescue_stage.h"
#include "support/error_of.h"

namespace {

using namespace rescue_stage;
using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr std::string_view kNoDefinition = "Определение таблицы База"_ru, kNoCatalog = "Список таблиц"_ru,
                           kCut = "посреди страницы"_ru, kNoHeader = "Начало файла"_ru, kMisnamed = "похожей на неё"_ru;

class Stopping : public Progress {
 public:
  explicit Stopping(int at) : at_(at) {}
  bool Advance(int percent) override { return percent < at_; }

 private:
  int at_;
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
  const std::string other = good.substr(PagesOf(jet::page_kind::kData, def.page).at(0) * size, size);
  const jet::TableDef objects = Open(disk, kOld).OpenTableAt(jet::kCatalogPage).def();
  const std::size_t author = good.find(jet::StoredName(GetParam(), "Автор"_ru), def.page * size);
  const std::size_t name = good.rfind(jet::StoredName(GetParam(), "База"_ru), catalog * size + size);
  const std::size_t slots = data * size + layout.data_page.row_count;
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
      {"impossible count of rows", With(slots, "\xFF")},
      {"too small a count of rows", With(slots, "\x02")},
      {"head of the file zeroed", Zeroed(0), false, false, 0, kNoHeader},
      {"table misnamed", With(name, "X"), false, false, 0, kMisnamed},
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

// None of these pages holds a message. What looks like a password counts as one.
TEST_P(Rescuing, OneByteOfTheHeadOrOfADefinitionCostsNoMessage) {
  Make(12);
  const auto length = [&](std::size_t page) {
    return LoadU32(AsBytes(good), page * layout.page_size + jet::kDefinitionLengthAt);
  };
  const std::pair<std::size_t, std::size_t> parts[] = {
      {0, jet::kHeaderSize}, {jet::kCatalogPage, length(jet::kCatalogPage)}, {def.page, length(def.page)}};
  std::size_t refused = 0;
  for (const auto& [page, end] : parts)
    for (std::size_t at = page * layout.page_size; at < page * layout.page_size + end; ++at) {
      FaultyFileSystem files(kOld, With(at, std::string(1, static_cast<char>(good[at] ^ (at % 2 == 0 ? 0x01 : 0xFF)))));
      try {
        EXPECT_EQ(Rescue(files).in_part.size(), 0u) << page << '+' << at % layout.page_size;
        EXPECT_TRUE(MessagesOf(Open(files, kNew)) == messages) << page << '+' << at % layout.page_size;
      } catch (const Error& error) {
        ++refused;
        EXPECT_THAT(error.what(), HasSubstr("паролем"_ru)) << page << '+' << at % layout.page_size;
      }
    }
  EXPECT_LE(refused, 2u);
}

TEST_P(Rescuing, CountsWhatIsLostAsFarAsAnythingTells) {
  Make(900);
  for (const std::uint32_t page : PagesOf(jet::page_kind::kData, def.page)) good = Zeroed(page);
  const auto details = [this](const std::string& image, bool sure) {
    FaultyFileSystem files(kOld, image);
    const RescueResult result = Rescue(files);
    EXPECT_TRUE(result.HasLosses() && result.saved == 0);
    EXPECT_TRUE(sure ? result.lost_is_sure && result.lost == messages.size() : !result.lost_is_sure);
    return RescueDetails(result);
  };
  EXPECT_THAT(details(good, true), Contains(HasSubstr("Потеряны сообщения с номерами: "_ru)));
  EXPECT_THAT(details(Zeroed(def.page), false), Contains(HasSubstr(kNoDefinition)));
  bool has_some = false;
  for (const std::uint32_t leaf : PagesOf(jet::page_kind::kIndexLeaf, def.page))
    has_some |= testing::Value(details(Zeroed(leaf), true), Contains(HasSubstr("Среди потерянных "_ru)));
  EXPECT_TRUE(has_some);
}

// Another page's rows lie where a page was, and are damaged there.
TEST_P(Rescuing, OfTwoRowsOfANumberTheWholeOneIsTaken) {
  Make(200);
  const auto pages = PagesOf(jet::page_kind::kData, def.page);
  const std::size_t size = layout.page_size, from = pages.at(2) * size, to = pages.at(1) * size;
  std::string image = With(to, good.substr(from, size));
  const jet::PageFile file(std::make_unique<MemoryFile>(image), layout);
  std::vector<int> numbers;
  for (jet::TableCursor cursor(file, def); cursor.Next();) {
    const std::string head(AsText(cursor.row().Stored(def.columns[kBody])));
    if (cursor.row().id().page != pages[1] || head.size() < 4) continue;
    if (const std::size_t at = image.find(head, to); at < to + size) image[at + 3] = 0x20;  // no kind of long value
    numbers.push_back(cursor.row().Int(def.columns[0]));
  }
  ASSERT_FALSE(numbers.empty());
  FaultyFileSystem files(kOld, image);
  EXPECT_THAT(Rescue(files).damaged_pages, Contains(pages[1]));
  const Messages saved = MessagesOf(Open(files, kNew));
  for (const int number : numbers) EXPECT_TRUE(saved.at(number) == messages.at(number)) << number;
}

// Other rows or an Error, and what is saved is a sound base; the messages of untouched pages are what they were.
TEST_P(Rescuing, AnyByteMayLie) {
  Make(25);
  std::map<int, std::uint32_t> page_of;
  const jet::PageFile file(std::make_unique<MemoryFile>(good), layout);
  for (jet::SalvageCursor cursor(file, def); cursor.NextPage();)
    while (cursor.NextRow()) page_of[cursor.row().Int(def.columns[0])] = cursor.page();
  const auto bodies = PagesOf(jet::page_kind::kData, jet::kLongValueOwner);
  std::mt19937 random(3);
  int rescued = 0;
  for (int copy = 0; copy < 300; ++copy) {
    std::string image = good;
    std::set<std::uint32_t> hit;
    for (int flips = 0; flips < 1 + copy % 30; ++flips) {
      const std::size_t at = random() % image.size();
      image[at] ^= static_cast<char>(1 + random() % 255);
      hit.insert(static_cast<std::uint32_t>(at / layout.page_size));
    }
    const bool bodies_hit = std::ranges::any_of(bodies, [&](std::uint32_t page) { return hit.contains(page); });
    FaultyFileSystem files(kOld, image);
    try {
      const RescueResult result = Rescue(files);
      const Messages saved = MessagesOf(Open(files, kNew));
      EXPECT_EQ(result.saved, saved.size()) << copy;
      for (const auto& [number, fields] : saved)
        EXPECT_TRUE(bodies_hit || hit.contains(page_of[number]) || page_of[number] == 0 ||
                    std::ranges::binary_search(result.in_part, number) || fields == messages.at(number))
            << copy << ": " << number;
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
  for (const int percent : {0, 40}) {  // the table is still looked for; its rows are being read
    disk.SetContent(kOld, percent == 0 ? Zeroed(def.page) : good);
    Stopping user(percent);
    EXPECT_FALSE(RescueMessages(disk, kOld, kNew, kClock, user).complete);
    EXPECT_FALSE(disk.Exists(kNew) || disk.Exists(kUnfinished) || disk.Exists(kUnfinished + kJournal));
  }
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
  AtEachOperation(FaultyFileSystem::Fault::kTear, [&](FaultyFileSystem& files, const std::string& what) {
    try {
      Rescue(files);
      EXPECT_TRUE(MessagesOf(Open(files, kNew)) == messages) << what;
    } catch (const FileError&) {
      // A name that may not last belongs to a whole base.
      EXPECT_TRUE(!files.Exists(kNew) || (what == "sync folder" && MessagesOf(Open(files, kNew)) == messages)) << what;
      EXPECT_FALSE(files.Exists(kUnfinished) || files.Exists(kUnfinished + kJournal)) << what;
    }
    EXPECT_TRUE(files.Content(kOld) == good) << what;
  });
}

TEST_P(Rescuing, AKillLeavesNoBaseThatLacksMessages) {
  AtEachOperation(FaultyFileSystem::Fault::kPowerCut, [&](FaultyFileSystem& dying, const std::string& what) {
    ErrorOf([&] { Rescue(dying); });
    const auto files = dying.AfterKill();
    if (files->Content(kNew).empty()) {
      if (files->Exists(kNew)) files->Remove(kNew);  // its name is all that it has got
      Rescue(*files);
      EXPECT_FALSE(files->Exists(kUnfinished) || files->Exists(kUnfinished + kJournal)) << what;
    }
    EXPECT_TRUE(MessagesOf(Open(*files, kNew)) == messages) << what;
  });
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
  for (const std::string name :
       {"kdv_2002", "moysha_2001", "ptrv_2002", "refuse_password_2000", "refuse_password_2003"}) {
    DiskFileSystem real;
    FaultyFileSystem disk(kOld, ReadWholeFile(real, std::string(FORUM_SAMPLES) + "/" + name + ".mdb", 1u << 30));
    NoProgress nobody;
    if (name.starts_with("refuse")) {
      EXPECT_EQ(ErrorOf([&] { RescueMessages(disk, kOld, kNew, kClock, nobody); }), error_number::kNotABase) << name;
      continue;
    }
    EXPECT_FALSE(RescueMessages(disk, kOld, kNew, kClock, nobody).HasLosses()) << name;
    EXPECT_TRUE(MessagesOf(Open(disk, kNew)) == MessagesOf(Open(disk, kOld))) << name;
    EXPECT_THAT(FaultsOf(Open(disk, kNew)), IsEmpty()) << name;
    EXPECT_EQ(Open(disk, kNew).code_page(), Open(disk, kOld).code_page()) << name;
  }
}

}  // namespace
