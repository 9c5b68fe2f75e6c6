#include "jet/read_ahead.h"

#include <gtest/gtest.h>

#include <string>

#include "base/error.h"

namespace jet {
namespace {

constexpr std::size_t kPageSize = 2048;
constexpr std::uint32_t kPages = 200;

/// Each page is full of its number.
class CountedFile : public MemoryFile {
 public:
  CountedFile() {
    for (std::uint32_t page = 0; page < kPages; ++page) Fill(page, page);
  }
  void Fill(std::uint32_t page, std::uint32_t byte) {
    const std::string bytes(kPageSize, static_cast<char>(byte));
    WriteAt(page * kPageSize, AsBytes(bytes));
  }
  void ReadAt(std::uint64_t offset, MutableBytes to) const override {
    ++reads;
    const std::uint64_t bad = std::uint64_t{bad_page} * kPageSize;
    if (offset <= bad && bad < offset + to.size()) throw FileError(error_number::kNoAccess, "a bad sector");
    MemoryFile::ReadAt(offset, to);
  }

  std::uint32_t bad_page = kPages;
  mutable int reads = 0;
};

class ReadAheadOf : public testing::Test {
 protected:
  unsigned Read(std::uint32_t page) {
    std::string bytes(kPageSize, '\0');
    reader.Read(page, kPages, std::as_writable_bytes(std::span(bytes)));
    return static_cast<unsigned char>(bytes[page % kPageSize]);
  }

  CountedFile file;
  ReadAhead reader{file, kPageSize};
};

TEST_F(ReadAheadOf, AScanTakesFewReadsEvenInSeveralPlacesAtOnce) {
  for (std::uint32_t page = 0; page < kPages; ++page) ASSERT_EQ(Read(page), page);
  EXPECT_LT(file.reads, 10);
  reader.Forget();
  file.reads = 0;
  for (std::uint32_t page = 0; page < kPages / 2; ++page)
    for (const std::uint32_t number : {page, kPages - 1 - page}) ASSERT_EQ(Read(number), number);
  EXPECT_LT(file.reads, 12);
}

TEST_F(ReadAheadOf, ScatteredPagesAreReadAlone) {
  for (const std::uint32_t page : {150u, 3u, 199u, 70u}) EXPECT_EQ(Read(page), page);
  EXPECT_EQ(file.reads, 4);
}

TEST_F(ReadAheadOf, ABadNeighbourHidesNoPage) {
  file.bad_page = 40;
  for (std::uint32_t page = 30; page < 50; ++page) {
    if (page == file.bad_page) {
      EXPECT_THROW(Read(page), FileError);
    } else {
      EXPECT_EQ(Read(page), page);
    }
  }
}

TEST_F(ReadAheadOf, AfterForgetWhatIsInTheFileNowIsRead) {
  for (const std::uint32_t page : {5u, 6u, 7u}) EXPECT_EQ(Read(page), page);
  file.Fill(7, 77);
  reader.Forget();
  EXPECT_EQ(Read(7), 77u);
}

}  // namespace
}  // namespace jet
