#include "jet/journal.h"

#include <algorithm>
#include <array>
#include <bit>
#include <utility>

#include "base/error.h"
#include "base/ru_literal.h"

namespace jet {
namespace {

// The header, alone in its sector; then the records without gaps.
constexpr std::string_view kMagic{"\xD0JRNL\x01\r\n", 8};
constexpr std::size_t kPageSizeAt = 8;         // u32
constexpr std::size_t kPageCountAt = 12;       // u32
constexpr std::size_t kCommitBeforeAt = 16;    // u16
constexpr std::size_t kCommitAfterAt = 18;     // u16
constexpr std::size_t kSaltAt = 24;            // u64
constexpr std::size_t kHeaderChecksumAt = 32;  // u64 over all before it
constexpr std::size_t kHeaderEnd = 40;
constexpr std::uint64_t kRecordsAt = 512;

// A record: u32 page, its image, u64 checksum.
constexpr std::size_t kImageAt = 4;
constexpr std::size_t kChecksumSize = 8;
constexpr std::size_t RecordSize(std::size_t page_size) { return kImageAt + page_size + kChecksumSize; }

constexpr std::size_t kBufferSize = 1u << 20;
// The file grows in such steps, so that most transactions overwrite what is there: syncing that does
// not wait for the file system's own journal.
constexpr std::uint64_t kGrowth = 64u << 10;

// Notices what was not written or written by halves; nobody attacks a journal.
std::uint64_t Checksum(std::uint64_t seed, Bytes bytes) {
  constexpr std::uint64_t kFactor = 0x9E3779B97F4A7C15;
  std::uint64_t sum = seed ^ (bytes.size() * kFactor);
  std::size_t at = 0;
  for (; at + 8 <= bytes.size(); at += 8) sum = std::rotl((sum ^ LoadU64(bytes, at)) * kFactor, 29);
  for (; at < bytes.size(); ++at) sum = std::rotl((sum ^ LoadU8(bytes, at)) * kFactor, 29);
  return sum ^ (sum >> 32);
}

using HeaderBytes = std::array<std::byte, kHeaderEnd>;

HeaderBytes Encode(const JournalHeader& header) {
  HeaderBytes bytes{};
  std::ranges::copy(AsBytes(kMagic), bytes.begin());
  StoreU32(bytes, kPageSizeAt, header.page_size);
  StoreU32(bytes, kPageCountAt, header.page_count);
  StoreU16(bytes, kCommitBeforeAt, header.commit_before);
  StoreU16(bytes, kCommitAfterAt, header.commit_after);
  StoreU64(bytes, kSaltAt, header.salt);
  StoreU64(bytes, kHeaderChecksumAt, Checksum(0, Bytes(bytes).first(kHeaderChecksumAt)));
  return bytes;
}

std::optional<JournalHeader> ReadHeader(const File& journal) {
  HeaderBytes bytes{};
  if (journal.Size() < bytes.size()) return std::nullopt;
  journal.ReadAt(0, bytes);
  const JournalHeader header = {.page_size = LoadU32(bytes, kPageSizeAt),
                                .page_count = LoadU32(bytes, kPageCountAt),
                                .commit_before = LoadU16(bytes, kCommitBeforeAt),
                                .commit_after = LoadU16(bytes, kCommitAfterAt),
                                .salt = LoadU64(bytes, kSaltAt)};
  const bool known_size = header.page_size == kJet3.page_size || header.page_size == kJet4.page_size;
  return known_size && Encode(header) == bytes ? std::optional(header) : std::nullopt;
}

// The records up to the first that is not whole. What lies behind that one was never synced, so the
// base still holds those pages as they were.
class RecordReader {
 public:
  RecordReader(const File& journal, const JournalHeader& header)
      : journal_(journal), header_(header), size_(journal.Size()), record_(RecordSize(header.page_size)) {}

  bool Next() {
    if (at_ > size_ || record_.size() > size_ - at_) return false;
    journal_.ReadAt(at_, record_);
    at_ += record_.size();
    const std::size_t sum_at = record_.size() - kChecksumSize;
    return page() < header_.page_count &&
           LoadU64(record_, sum_at) == Checksum(header_.salt, Bytes(record_).first(sum_at));
  }
  std::uint32_t page() const { return LoadU32(record_, 0); }
  Bytes image() const { return Bytes(record_).subspan(kImageAt, header_.page_size); }

 private:
  const File& journal_;
  JournalHeader header_;
  std::uint64_t size_;
  std::uint64_t at_ = kRecordsAt;
  std::vector<std::byte> record_;
};

// Page 0 as it was, but for the commit counter, which a cut-off write may have left anywhere between
// its old and its new value.
bool IsHeaderPageOf(const JournalHeader& header, Bytes before, Bytes now) {
  const std::size_t counter = header.page_size - kCommitCountersSize;
  const auto is_either = [&](std::size_t byte) {
    const unsigned value = LoadU8(now, counter + byte), shift = static_cast<unsigned>(8 * byte);
    return value == (header.commit_before >> shift & 0xFFu) || value == (header.commit_after >> shift & 0xFFu);
  };
  return is_either(0) && is_either(1) && std::ranges::equal(before.first(counter), now.first(counter)) &&
         std::ranges::equal(before.subspan(counter + 2), now.subspan(counter + 2));
}

}  // namespace

std::string JournalPath(const std::string& base) { return base + "-journal"; }

JournalWriter::~JournalWriter() {
  if (file_ == nullptr || hot_) return;
  file_.reset();
  try {
    files_.Remove(path_);
    files_.SyncFolderOf(path_);
  } catch (const FileError&) {
    // A finished journal that stays does no harm.
  }
}

void JournalWriter::OpenFile() {
  if (file_ == nullptr) file_ = files_.Open(path_, files_.Exists(path_) ? OpenMode::kReadWrite : OpenMode::kCreate);
}

void JournalWriter::Begin(const JournalHeader& header) {
  OpenFile();
  header_ = header;
  count_ = synced_ = end_ = 0;
  const HeaderBytes bytes = Encode(header);
  buffer_.assign(kRecordsAt, std::byte{0});
  std::ranges::copy(bytes, buffer_.begin());
}

void JournalWriter::Add(std::uint32_t page, Bytes image) {
  const std::size_t at = buffer_.size();
  buffer_.resize(at + RecordSize(image.size()));
  const MutableBytes record = MutableBytes(buffer_).subspan(at);
  StoreU32(record, 0, page);
  std::ranges::copy(image, record.begin() + kImageAt);
  const std::size_t sum_at = kImageAt + image.size();
  StoreU64(record, sum_at, Checksum(header_.salt, record.first(sum_at)));
  ++count_;
  if (buffer_.size() >= kBufferSize) Flush();
}

void JournalWriter::Flush() {
  hot_ = true;
  file_->WriteAt(end_, buffer_);
  end_ += buffer_.size();
  buffer_.clear();
}

void JournalWriter::Sync() {
  const std::uint64_t end = end_ + buffer_.size();
  const std::size_t used = buffer_.size();
  if (end > file_->Size()) buffer_.resize(used + (kGrowth - end % kGrowth) % kGrowth);
  Flush();
  end_ = end;
  file_->Sync();
  synced_ = count_;
  if (!std::exchange(folder_synced_, true)) files_.SyncFolderOf(path_);
}

void JournalWriter::Invalidate() {
  jet::Invalidate(*file_);
  hot_ = false;
}

void JournalWriter::Revive() {
  file_->WriteAt(0, Encode(header_));
  file_->Sync();
}

void JournalWriter::Discard() noexcept {
  if (!hot_) return;
  try {
    Invalidate();
  } catch (const FileError&) {
    // Undoing nothing once more changes nothing; the next transaction overwrites the journal.
  }
}

JournalState Examine(const File& journal, const File& base, const Layout& layout) {
  const std::optional<JournalHeader> header = ReadHeader(journal);
  if (!header) return JournalState::kNeedless;
  RecordReader records(journal, *header);
  if (!records.Next() || records.page() != 0) return JournalState::kNeedless;
  if (header->page_size != layout.page_size) return JournalState::kForeign;
  if (base.Size() < std::uint64_t{header->page_count} * header->page_size) return JournalState::kForeign;
  std::vector<std::byte> page(header->page_size);
  base.ReadAt(0, page);
  return IsHeaderPageOf(*header, records.image(), page) ? JournalState::kHot : JournalState::kForeign;
}

std::uint64_t RollBack(const File& journal, File& base) {
  const std::optional<JournalHeader> header = ReadHeader(journal);
  if (!header) throw Error(error_number::kNoAccess, "Журнал базы повреждён"_ru);
  RecordReader records(journal, *header);
  std::uint64_t count = 0;
  for (; records.Next(); ++count) base.WriteAt(std::uint64_t{records.page()} * header->page_size, records.image());
  const std::uint64_t size = std::uint64_t{header->page_count} * header->page_size;
  if (base.Size() != size) base.Truncate(size);
  base.Sync();
  return count;
}

void Invalidate(File& journal) {
  journal.WriteAt(0, HeaderBytes{});
  journal.Sync();
}

}  // namespace jet
