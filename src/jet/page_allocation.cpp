#include "jet/page_allocation.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "base/bytes.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "jet/data_page.h"
#include "jet/usage_map.h"

namespace jet {
namespace {

// A set bit here is a free page.
constexpr RowId kGlobalMap{1, 0};

constexpr unsigned kBitsOfByte = 8;

/// One bit of a map: a byte of some page and a place in it.
struct BitPlace {
  std::uint32_t page;
  std::size_t byte;
  unsigned mask;
};

/// The row of a map, to be changed. A map that has its bits in the row itself knows no pages outside
/// their range; one of references knows all pages, but may lack the page of bits.
class MapRow {
 public:
  MapRow(Transaction& transaction, RowId where) : transaction_(&transaction), where_(where) {
    if (where.page == 0) throw FormatError("В определении таблицы не указана карта страниц"_ru);
    page_ = transaction.pages().Read(where.page);
    const Bytes row = DataPage(layout(), page_).Row(where.slot);
    at_ = static_cast<std::size_t>(row.data() - page_.bytes().data());
    size_ = row.size();
    if (size_ < kInlineMapBitsAt || kind() > kReferenceMap) ThrowDamaged();
  }

  bool by_reference() const { return kind() == kReferenceMap; }
  std::uint32_t pages_per_reference() const {
    return static_cast<std::uint32_t>((layout().page_size - kBitmapAt) * kBitsOfByte);
  }
  std::size_t references() const { return (size_ - kReferencesAt) / 4; }

  std::uint32_t Reference(std::size_t i) const { return i < references() ? page_.U32(at_ + kReferencesAt + 4 * i) : 0; }
  void SetReference(std::size_t i, std::uint32_t bitmap) const {
    if (i >= references()) throw Error(error_number::kNoAccess, "Карта страниц в базе заполнена: базу нужно сжать"_ru);
    transaction_->Change(where_.page).SetU32(at_ + kReferencesAt + 4 * i, bitmap);
  }

  /// None when there is no bit for this page.
  std::optional<BitPlace> Find(std::uint32_t page) const {
    return by_reference() ? FindByReference(page) : FindInline(page);
  }
  /// @return false when there is no bit for this page
  bool Set(std::uint32_t page, bool value) const;
  /// From now on a row of references, all missing. @return the pages whose bits were set
  std::vector<std::uint32_t> Convert() const;

 private:
  const Layout& layout() const { return transaction_->pages().layout(); }
  unsigned kind() const { return page_.U8(at_); }
  [[noreturn]] void ThrowDamaged() const { throw FormatError("Карта страниц повреждена"_ru, where_.page, where_.slot); }
  std::optional<BitPlace> FindInline(std::uint32_t page) const;
  std::optional<BitPlace> FindByReference(std::uint32_t page) const;

  Transaction* transaction_;
  RowId where_;
  Page page_;
  std::size_t at_ = 0, size_ = 0;
};

std::optional<BitPlace> MapRow::FindInline(std::uint32_t page) const {
  const std::uint32_t start = page_.U32(at_ + kInlineMapStartAt);
  if (page < start || (page - start) / kBitsOfByte >= size_ - kInlineMapBitsAt) return std::nullopt;
  const std::uint32_t bit = page - start;
  return BitPlace{where_.page, at_ + kInlineMapBitsAt + bit / kBitsOfByte, 1u << (bit % kBitsOfByte)};
}

std::optional<BitPlace> MapRow::FindByReference(std::uint32_t page) const {
  const std::uint32_t bitmap = Reference(page / pages_per_reference());
  if (bitmap == 0) return std::nullopt;
  if (transaction_->pages().Read(bitmap).kind() != page_kind::kUsageMap)
    throw FormatError("Это не страница карты"_ru, bitmap);
  const std::uint32_t bit = page % pages_per_reference();
  return BitPlace{bitmap, kBitmapAt + bit / kBitsOfByte, 1u << (bit % kBitsOfByte)};
}

bool MapRow::Set(std::uint32_t page, bool value) const {
  const std::optional<BitPlace> bit = Find(page);
  if (!bit) return false;
  const unsigned before = transaction_->pages().Read(bit->page).U8(bit->byte);
  const unsigned after = value ? before | bit->mask : before & ~bit->mask;
  if (after != before) transaction_->Change(bit->page).SetU8(bit->byte, after);
  return true;
}

std::vector<std::uint32_t> MapRow::Convert() const {
  std::vector<std::uint32_t> set;
  UsageMap map(transaction_->pages(), where_);
  for (auto page = map.NextFrom(0); page; page = map.NextFrom(*page + 1)) set.push_back(*page);
  const MutableBytes row = transaction_->Change(where_.page).Slice(at_, size_);
  std::ranges::fill(row, std::byte{0});
  StoreU8(row, 0, kReferenceMap);
  return set;
}

void MakeBitmap(const MutablePage& page) {
  page.SetU8(kPageKindAt, page_kind::kUsageMap);
  page.SetU8(kPageKindAt + 1, 1);
}

/// Changes the global map. A page that exists and of which it does not say that it is free, because
/// it has no bit for it, is taken to be used.
class GlobalMap {
 public:
  explicit GlobalMap(Transaction& transaction) : transaction_(transaction), row_(transaction, kGlobalMap) {}

  void Take(std::uint32_t page) { Set(page, false); }
  void Free(std::uint32_t page) { Set(page, true); }

 private:
  void Set(std::uint32_t page, bool free) {
    if (row_.Set(page, free)) return;
    if (!row_.by_reference()) Convert();
    if (row_.Set(page, free)) return;
    AddBitmap(page / row_.pages_per_reference());
    row_.Set(page, free);
  }

  void Convert() {
    const std::vector<std::uint32_t> free = row_.Convert();
    const std::uint32_t existing = transaction_.pages().page_count();
    for (std::uint32_t first = 0; first < existing; first += row_.pages_per_reference())
      if (row_.Reference(first / row_.pages_per_reference()) == 0) AddBitmap(first / row_.pages_per_reference());
    for (const std::uint32_t page : free)
      if (page < existing) Free(page);
  }

  // At the end of the file: what is looked for elsewhere would be looked for in this map.
  void AddBitmap(std::uint32_t reference) {
    const MutablePage bitmap = transaction_.AppendPage();
    row_.SetReference(reference, bitmap.number());
    MakeBitmap(bitmap);
    std::ranges::fill(bitmap.bytes().subspan(kBitmapAt), std::byte{0xFF});
    const std::uint32_t first = reference * row_.pages_per_reference();
    const std::uint32_t end = std::min(transaction_.pages().page_count(), first + row_.pages_per_reference());
    for (std::uint32_t page = first; page < end; ++page) row_.Set(page, false);
    Take(bitmap.number());
  }

  Transaction& transaction_;
  MapRow row_;
};

}  // namespace

MutablePage PageAllocator::Allocate() {
  const PageFile& pages = transaction_->pages();
  const std::optional<std::uint32_t> free = UsageMap(pages, kGlobalMap).NextFrom(transaction_->lowest_free());
  transaction_->SetLowestFree(std::min(free.value_or(pages.page_count()), pages.page_count()));
  if (!free || *free >= pages.page_count()) {
    MutablePage page = transaction_->AppendPage();
    GlobalMap(*transaction_).Take(page.number());
    return page;
  }
  if (*free <= kCatalogPage) throw FormatError("Карта свободных страниц повреждена"_ru, *free);
  MutablePage page = transaction_->Change(*free);
  std::ranges::fill(page.bytes(), std::byte{0});
  GlobalMap(*transaction_).Take(page.number());
  return page;
}

void PageAllocator::Free(std::uint32_t page) {
  GlobalMap(*transaction_).Free(page);
  transaction_->SetLowestFree(std::min(transaction_->lowest_free(), page));
}

void UsageMapWriter::Add(std::uint32_t page) {
  const MapRow row(*transaction_, where_);
  if (row.Set(page, true)) return;
  if (!row.by_reference()) {
    const std::vector<std::uint32_t> set = row.Convert();
    for (const std::uint32_t known : set) Add(known);
    return Add(page);
  }
  const MutablePage bitmap = PageAllocator(*transaction_).Allocate();
  MakeBitmap(bitmap);
  row.SetReference(page / row.pages_per_reference(), bitmap.number());
  row.Set(page, true);
}

void UsageMapWriter::Remove(std::uint32_t page) { MapRow(*transaction_, where_).Set(page, false); }

}  // namespace jet
