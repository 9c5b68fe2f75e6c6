// A base that has the largest size: whoever adds to it is told so, and nothing is written.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "base/cp1251.h"
#include "base/error.h"
#include "jet/create.h"
#include "jet/data_page.h"
#include "jet/table_design.h"
#include "jet/writing.h"
#include "support/temp_folder.h"

namespace jet {
namespace {

constexpr std::string_view kNumber = "Код"_ru, kText = "Текст"_ru;

class FullBase : public testing::TestWithParam<Version> {
 protected:
  void SetUp() override {
    constexpr NewColumn kColumns[] = {{.name = kNumber, .type = ColumnType::kLong},
                                      {.name = kText, .type = ColumnType::kMemo}};
    const NewIndex indexes[] = {PrimaryKey("PrimaryKey", {kNumber})};
    CreateBase(files, path, {GetParam(), SortOrder::kGeneral}, OleDate{40000},
               [&](CatalogWriter& catalog, const Header& header) {
                 catalog.CreateTable("База"_ru, DesignTable(header, kColumns, indexes));
               });
    Add(1, "x");
    FillUp();
  }

  void Add(int number, std::string_view text) {
    Database base = Database::Open(files, path, Access::kReadWrite);
    const Table table = base.OpenTable("База"_ru);
    Transaction transaction(base.store());
    TableWriter writer(transaction, table, {});
    writer.Insert(Values(table, {{kNumber, number}, {kText, Text(text)}}));
    transaction.Commit();
  }

  /// Makes the file as long as can be, with no page called free. What is added takes no room on the disk.
  void FillUp() {
    const std::unique_ptr<File> file = files.Open(path, OpenMode::kReadWrite);
    std::uint64_t at = 0;
    std::size_t size = 0;
    {
      Database base = Database::Open(files, path, Access::kRead);
      const Page page = base.pages().Read(kGlobalMapPage);
      const Bytes row = DataPage(base.pages().layout(), page).Row(0);
      size = row.size() - kInlineMapBitsAt;
      at = page_size() * kGlobalMapPage + static_cast<std::size_t>(row.data() - page.bytes().data()) + kInlineMapBitsAt;
    }
    file->WriteAt(at, AsBytes(std::string(size, '\0')));
    file->Truncate(std::uint64_t{kLargestBase} * page_size());
  }

  std::size_t page_size() const { return LayoutOf(GetParam()).page_size; }
  std::string FirstPages() {
    std::string bytes(64 * page_size(), '\0');
    files.Open(path, OpenMode::kRead)->ReadAt(0, std::as_writable_bytes(std::span(bytes)));
    return bytes;
  }

  TempFolder folder;
  DiskFileSystem files;
  std::string path = folder / "full.mdb";
};

INSTANTIATE_TEST_SUITE_P(BothVersions, FullBase, testing::ValuesIn(kBothVersions),
                         [](const auto& version) { return version.param == Version::kJet3 ? "Jet3" : "Jet4"; });

TEST_P(FullBase, SaysThatNothingMoreFitsAndStaysAsItWas) {
  const std::string before = FirstPages();
  try {
    Add(2, std::string(9000, 'x'));
    ADD_FAILURE() << "a row was added";
  } catch (const Error& error) {
    EXPECT_THAT(cp1251::ToUtf8(error.what()), testing::HasSubstr("База достигла наибольшего размера"));
  }
  EXPECT_TRUE(FirstPages() == before);
  EXPECT_EQ(std::filesystem::file_size(path), std::uint64_t{kLargestBase} * page_size());
  EXPECT_FALSE(files.Exists(JournalPath(path)));
  Add(3, "x");  // there is room for it on a page that is there
  EXPECT_EQ(Database::Open(files, path, Access::kRead).OpenTable("База"_ru).CountRows(), 2u);
}

}  // namespace
}  // namespace jet
