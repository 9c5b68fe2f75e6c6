// The check finds nothing in real bases, and names what was damaged in their copies.

#include "jet/check.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "base/cp1251.h"
#include "base/error.h"
#include "base/file.h"
#include "base/ru_literal.h"
#include "jet/create.h"
#include "jet/data_page.h"
#include "jet/index_page.h"
#include "jet/long_value.h"
#include "jet/table_design.h"
#include "jet/tiny_base.h"
#include "jet/usage_map.h"
#include "jet/writing.h"

namespace jet {
namespace {

namespace fs = std::filesystem;

std::string Sample(std::string_view name) {
  const fs::path path = fs::path(FORUM_SAMPLES) / name;
  if (!fs::exists(path)) return "";
  const auto file = DiskFileSystem().Open(path.string(), OpenMode::kRead);
  std::string image(file->Size(), '\0');
  file->ReadAt(0, std::as_writable_bytes(std::span(image)));
  return image;
}

/// A forum of 2,000 messages with bodies of any length.
std::string MadeForum(Version version) {
  constexpr std::string_view kNumber = "Код"_ru, kText = "Текст"_ru;
  constexpr NewColumn kColumns[] = {{.name = kNumber, .type = ColumnType::kLong},
                                    {.name = kText, .type = ColumnType::kMemo}};
  const NewIndex indexes[] = {PrimaryKey("PrimaryKey", {kNumber})};
  FaultyFileSystem disk;
  CreateBase(disk, kBasePath, {version, SortOrder::kGeneral}, OleDate{40000},
             [&](CatalogWriter& catalog, const Header& header) {
               catalog.CreateTable("База"_ru, DesignTable(header, kColumns, indexes));
             });
  WritableBase made(disk.Content(kBasePath));
  Transaction transaction(made.base.store());
  TableWriter writer(transaction, made.messages, {});
  for (int number = 1; number <= 2000; ++number)
    writer.Insert(Values(made.messages, {{kNumber, number}, {kText, std::string(number % 90 * 10 + 1u, 'x')}}));
  transaction.Commit();
  return made.disk.Content(kBasePath);
}

CheckResult CheckImage(std::string image) {
  NoProgress progress;
  Database base = Database::OpenFile(std::make_unique<MemoryFile>(std::move(image)));
  return Check(base, progress);
}

std::string Texts(const CheckResult& result, Severity severity) {
  std::string texts;
  for (const Finding& finding : result.findings)
    if (finding.severity == severity) texts += cp1251::ToUtf8(finding.text) + "\n";
  return texts;
}

TEST(Check, FindsNoErrorInRealBases) {
  if (!fs::is_directory(FORUM_SAMPLES)) GTEST_SKIP() << "no sample bases in " << FORUM_SAMPLES;
  for (const fs::directory_entry& entry : fs::directory_iterator(FORUM_SAMPLES)) {
    const std::string name = entry.path().filename().string();
    if (entry.path().extension() != ".mdb" || name.starts_with("refuse_")) continue;
    const CheckResult result = CheckImage(Sample(name));
    EXPECT_EQ(result.errors, 0u) << name << "\n" << Texts(result, Severity::kError);
    EXPECT_TRUE(result.complete);
  }
}

/// A forum base, and the places in it where damage is done.
class Patient {
 public:
  explicit Patient(std::string sample)
      : image(std::move(sample)),
        base_(Database::OpenFile(std::make_unique<MemoryFile>(image))),
        table_(base_.OpenTable("База"_ru)) {
    UsageMap owned(file(), def().owned_map);
    for (auto page = owned.NextFrom(0); page; page = owned.NextFrom(*page + 1)) data.push_back(*page);
    const RealIndex* const key = def().IndexOn(*def().FindColumn("Код"_ru));
    IndexEntries node = Entries(root = key->root);
    while (!node.leaf() && node.Next()) {
      leaves.push_back(node.child());
    }
    leaves.push_back(node.tail());
    node_entry = At(root, layout().index_page.entries);
    map = key->usage_map;
  }

  const Layout& layout() const { return file().layout(); }
  const TableDef& def() const { return table_.def(); }
  std::size_t At(std::uint32_t page, std::size_t offset) const { return page * layout().page_size + offset; }
  /// A row's entry in its page's row table.
  std::size_t SlotAt(RowId row) const { return At(row.page, layout().data_page.row_table + 2u * row.slot); }
  std::size_t RowAt(RowId row) const {
    return OffsetOf(DataPage(layout(), file().Read(row.page)).Row(row.slot), row.page);
  }
  /// Where the stored head of a value begins that lies outside its row.
  std::size_t LongValueAt() const {
    for (TableCursor cursor = table_.Scan(); cursor.Next();) {
      const Bytes stored = cursor.row().Stored(*def().FindColumn("Текст"_ru));
      if (stored.size() == kLongValueHead) return OffsetOf(stored, cursor.row().id().page);
    }
    return 0;
  }
  std::size_t FirstCatalogRow() const {
    return RowAt({UsageMap(file(), base_.OpenTableAt(2).def().owned_map).NextFrom(0).value(), 0});
  }
  std::uint32_t FirstFree() const { return UsageMap(file(), {1, 0}).NextFrom(0).value(); }

  void Set(std::size_t at, unsigned byte) { image[at] = static_cast<char>(static_cast<std::uint8_t>(byte)); }
  void Flip(std::size_t at, unsigned bits = 0x01) {
    image[at] = static_cast<char>(image[at] ^ static_cast<char>(bits));
  }
  void SetNumber(std::size_t at, std::uint32_t number) {
    StoreU32(std::as_writable_bytes(std::span(image)), at, number);
  }
  void FlipInMap(RowId where, std::uint32_t page) {
    const std::size_t row = RowAt(where);
    if (image[row] == kInlineMap) {
      const std::uint32_t start = LoadU32(AsBytes(image), row + kInlineMapStartAt), bit = page - start;
      ASSERT_GE(page, start);
      return Flip(row + kInlineMapBitsAt + bit / 8, 1u << bit % 8);
    }
    const std::size_t each = (layout().page_size - kBitmapAt) * 8;
    const std::uint32_t bitmap = LoadU32(AsBytes(image), row + kReferencesAt + 4 * (page / each));
    Flip(At(bitmap, kBitmapAt + page % each / 8), 1u << page % 8);
  }

  std::string image;
  std::vector<std::uint32_t> data, leaves;  // of the table; of its primary key, in order
  std::size_t node_entry = 0;               // the first one of its root
  std::uint32_t root = 0;
  RowId map;  // of the primary key

 private:
  const PageFile& file() const { return base_.pages(); }
  IndexEntries Entries(std::uint32_t page) const { return {file(), file().Read(page), def().page}; }
  std::size_t OffsetOf(Bytes bytes, std::uint32_t page) const {
    return At(page, static_cast<std::size_t>(bytes.data() - file().Read(page).bytes().data()));
  }

  mutable Database base_;
  Table table_;
};

struct DamageCase {
  const char* what;
  Severity severity;
  const char* words;
  std::function<void(Patient&)> damage;
};

const DamageCase kDamages[] = {
    {"free bytes of a data page", Severity::kError, "свободное место посчитано неверно",
     [](Patient& p) { p.Flip(p.At(p.data[1], kFreeSpaceAt)); }},
    {"data page of another table", Severity::kError, "принадлежит другой таблице",
     [](Patient& p) { p.Flip(p.At(p.data[1], kOwnerAt)); }},
    {"row behind the page's end", Severity::kError, "Строка выходит за край страницы",
     [](Patient& p) {
       p.Set(p.SlotAt({p.data[1], 0}) + 1, 0x1F);
     }},
    {"a page of data taken out of the table's map", Severity::kError, "запись ведёт к строке, которой нет",
     [](Patient& p) { p.FlipInMap(p.def().owned_map, p.data[1]); }},
    {"the same", Severity::kWarning, "никому не принадлежат",
     [](Patient& p) { p.FlipInMap(p.def().owned_map, p.data[1]); }},
    {"an index page in the table's map", Severity::kError, "занята дважды",
     [](Patient& p) { p.FlipInMap(p.def().owned_map, p.leaves[1]); }},
    {"a page with data called free", Severity::kError, "числится свободной, но занята: данные таблицы «База»",
     [](Patient& p) {
       p.FlipInMap({1, 0}, p.data.back());
     }},
    {"a free page called used", Severity::kWarning, "числятся занятыми страниц: 1",
     [](Patient& p) {
       p.FlipInMap({1, 0}, std::max(p.FirstFree(), std::uint32_t(p.image.size() / p.layout().page_size)));
     }},
    {"a row deleted, but not its entries", Severity::kError, "запись ведёт к строке, которой нет: 0 на странице",
     [](Patient& p) {
       p.Flip(p.SlotAt({p.data[1], 0}) + 1, 0xC0);
     }},
    {"a row hidden", Severity::kError, "не ведёт ни один указатель",
     [](Patient& p) {
       p.Flip(p.SlotAt({p.data[1], 0}) + 1, 0x80);
     }},
    {"a row that says it was moved", Severity::kError, "указатель ведёт на чужую страницу",
     [](Patient& p) {
       p.Flip(p.SlotAt({p.data[1], 0}) + 1, 0x40);
     }},
    {"a row's offsets", Severity::kError, "строка 0)",
     [](Patient& p) {
       p.Flip(p.RowAt({p.data[1], 0}) + p.layout().page_size - p.RowAt({p.data[1], 0}) % p.layout().page_size - 4,
              0xFF);
     }},
    {"the definition's length", Severity::kError, "Определение таблицы повреждено",
     [](Patient& p) { p.Flip(p.At(p.def().page, kDefinitionLengthAt)); }},
    {"the row count", Severity::kWarning, "число строк посчитано неверно",
     [](Patient& p) { p.Flip(p.At(p.def().page, p.layout().table_def.rows)); }},
    {"leaf without its mark", Severity::kError, "Это не страница индекса",
     [](Patient& p) { p.Set(p.At(p.leaves[1], 0), page_kind::kData); }},
    {"free bytes of a leaf", Severity::kError, "«PrimaryKey», страница",
     [](Patient& p) { p.Flip(p.At(p.leaves[1], kFreeSpaceAt)); }},
    {"chain of leaves", Severity::kError, "нарушена цепочка листьев",
     [](Patient& p) { p.Flip(p.At(p.leaves[0], p.layout().index_page.next)); }},
    {"key of an entry", Severity::kError, "ключ не тот, что у строки",
     [](Patient& p) { p.Flip(p.At(p.leaves[0], p.layout().index_page.entries + 4)); }},
    {"order of entries", Severity::kError, "записи стоят не по порядку",
     [](Patient& p) { p.Flip(p.At(p.leaves[0], p.layout().index_page.entries + 1)); }},
    {"entry of a node", Severity::kError, "запись не совпадает с последней записью",
     [](Patient& p) { p.Flip(p.node_entry + 4, 0x80); }},
    {"two children of a node are one leaf", Severity::kError, "занята дважды",
     [](Patient& p) { p.SetNumber(p.At(p.root, p.layout().index_page.tail), p.leaves[0]); }},
    {"a leaf missing in the index's map", Severity::kError, "страница дерева не внесена в карту",
     [](Patient& p) { p.FlipInMap(p.map, p.leaves[1]); }},
    {"a free page in the index's map", Severity::kError, "карта называет страницу, которой в дереве нет",
     [](Patient& p) { p.FlipInMap(p.map, p.data[0]); }},
    {"length of a message's text", Severity::kError, "поле «Текст», страница",
     [](Patient& p) { p.Flip(p.LongValueAt()); }},
    {"text that lies on a page of data", Severity::kError, "лежит не на своих страницах",
     [](Patient& p) { p.SetNumber(p.LongValueAt() + kLongValueRowAt, p.data[1] << 8); }},
    {"number of a catalog object", Severity::kError, "Каталог",
     [](Patient& p) { p.Flip(p.FirstCatalogRow() + p.layout().row_number_size, 0x03); }},
    {"kind of a usage map", Severity::kError, "карта страниц",
     [](Patient& p) { p.Set(p.RowAt(p.def().owned_map), 7); }},
};

struct PatientKind {
  const char* name;
  std::string (*make)();
};

class CheckDamage : public testing::TestWithParam<PatientKind> {};
INSTANTIATE_TEST_SUITE_P(Of, CheckDamage,
                         testing::Values(PatientKind{"MadeJet3", [] { return MadeForum(Version::kJet3); }},
                                         PatientKind{"MadeJet4", [] { return MadeForum(Version::kJet4); }},
                                         PatientKind{"RealJet3", [] { return Sample("moysha_2001.mdb"); }},
                                         PatientKind{"RealJet4", [] { return Sample("kdv_2002.mdb"); }}),
                         [](const auto& kind) { return std::string(kind.param.name); });

TEST_P(CheckDamage, IsNamed) {
  const std::string good = GetParam().make();
  if (good.empty()) GTEST_SKIP() << "no sample bases in " << FORUM_SAMPLES;
  const CheckResult before = CheckImage(good);
  EXPECT_EQ(before.errors, 0u) << Texts(before, Severity::kError);
  for (const DamageCase& c : kDamages) {
    SCOPED_TRACE(c.what);
    Patient patient(good);
    c.damage(patient);
    const CheckResult result = CheckImage(patient.image);
    EXPECT_THAT(Texts(result, c.severity), testing::HasSubstr(c.words));
    EXPECT_GT(result.errors + result.warnings, before.errors + before.warnings);
  }
}

// Under the sanitizers: whatever the bytes are, the check ends, and its findings are few enough to show.
TEST(Check, AnyByteMayLie) {
  for (const std::string& good : {TinyBase(Version::kJet3), TinyBase(Version::kJet4), Sample("access97_overflow.mdb"),
                                  Sample("access2000_bigindex.mdb")}) {
    for (std::size_t at = kHeaderSize; at < good.size(); at += good[at] == 0 ? 97 : 5) {
      std::string image = good;
      image[at] = static_cast<char>(image[at] ^ (at % 2 == 0 ? 0x55 : 0xFF));
      try {
        EXPECT_LE(CheckImage(image).findings.size(), 2 * CheckResult::kMostFindings);
      } catch (const Error& error) {
        ADD_FAILURE() << at << ": " << cp1251::ToUtf8(error.what());
      }
    }
  }
}

TEST(Check, ABaseCutShortIsReported) {
  const std::string good = Sample("moysha_2001.mdb");
  if (good.empty()) GTEST_SKIP() << "no sample bases in " << FORUM_SAMPLES;
  for (std::size_t pages = 1; pages < good.size() / kJet3.page_size; pages += 9)
    EXPECT_GT(CheckImage(good.substr(0, pages * kJet3.page_size)).errors, 0u) << pages;
}

TEST(Check, CountsMoreThanItLists) {
  const std::string good = Sample("kdv_2002.mdb");
  if (good.empty()) GTEST_SKIP() << "no sample bases in " << FORUM_SAMPLES;
  Patient patient(good);
  for (const std::uint32_t page : patient.data) patient.FlipInMap(patient.def().owned_map, page);
  const CheckResult result = CheckImage(patient.image);
  EXPECT_GT(result.errors, 2000u);
  EXPECT_LE(result.findings.size(), CheckResult::kMostFindings + result.warnings);
}

TEST(Check, EndsWhenTheUserStopsIt) {
  struct Stopper : Progress {
    bool Advance(int percent) override {
      EXPECT_LE(percent, 50);
      return percent < 50;
    }
  } progress;
  const std::string good = Sample("kdv_2002.mdb");
  if (good.empty()) GTEST_SKIP() << "no sample bases in " << FORUM_SAMPLES;
  Database base = Database::OpenFile(std::make_unique<MemoryFile>(good));
  const CheckResult result = Check(base, progress);
  EXPECT_FALSE(result.complete);
  EXPECT_EQ(result.errors, 0u);
}

}  // namespace
}  // namespace jet
