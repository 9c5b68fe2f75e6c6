#include "jet/new_file.h"

#include <algorithm>
#include <bit>
#include <span>

#include "jet/data_page.h"
#include "jet/data_page_writer.h"
#include "jet/layout.h"

namespace jet {
namespace {

constexpr std::uint16_t kEnglish = 0x0409, kRussian = 0x0419;  // languages
constexpr std::uint16_t kLatin = 1252, kCyrillic = 1251;       // code pages
constexpr std::uint16_t kJet3Build = 0x0AA3;

// 2004-06-05, as an engine of this build wrote it into a base. The key that hides the user ids of a
// Jet 4 base follows from both.
constexpr std::uint16_t kJet4Build = 0x21AA;
constexpr std::uint64_t kJet4Created = 0x40E29FF17D1F72BC;
constexpr std::string_view kJet4Key{"\xA5\x32", 2};

constexpr std::string_view kEngineId{"\x02\x03", 2}, kAdminId{"\x03\x01", 2}, kCreatorId{"\x02\x04", 2},
    kUsersId{"\x02\x01", 2};

constexpr std::uint32_t kFirstPages = 2;
constexpr unsigned kBitsOfByte = 8;

std::string Combine(std::string_view a, std::string_view b) {
  std::string combined(a);
  for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i) combined[i] = static_cast<char>(a[i] ^ b[i]);
  return combined;
}

// The password's place holds the day of creation again and again: no password.
void WriteNoPassword(const Layout& layout, OleDate created, MutableBytes page) {
  for (std::size_t at = 0; at < layout.header.password_size; at += 4)
    StoreU32(page, layout.header.password + at, CreationDay(created));
}

void WriteHeader(const Layout& layout, const Header& header, MutableBytes page) {
  std::ranges::copy(AsBytes(kFileMagic), page.begin());
  std::ranges::copy(AsBytes(kProduct), page.begin() + kProductAt);
  StoreU8(page, kVersionAt, static_cast<unsigned>(header.version));
  StoreRowPointer(page, kHeaderMapsAt, {kGlobalMapPage, 0});
  StoreRowPointer(page, kHeaderMapsAt + kRowPointerSize, {kGlobalMapPage, 1});
  for (const std::uint32_t table : {kCatalogPage, kPermissionsPage, kQueriesPage, kRelationshipsPage})
    StoreU32(page, kHeaderTablesAt + 4 * (table - kCatalogPage), table);
  StoreU16(page, layout.header.collation, header.collation);
  StoreU16(page, kCodePageAt, header.code_page);
  if (layout.header.created != 0) {
    WriteNoPassword(layout, header.created, page);
    StoreF64(page, layout.header.created, header.created.days);
  }
  StoreU16(page, layout.header.build, header.build);
  if (layout.header.collation_version != 0) StoreU8(page, layout.header.collation_version, header.collation_version);
  ApplyHeaderMask(layout, page);
  if (layout.header.engine != 0) {
    StoreU32(page, layout.header.engine, kEngineMark);
    std::ranges::copy(AsBytes(kEngineVersion), page.begin() + std::ptrdiff_t(layout.header.engine + 4));
  }
  for (std::size_t at = page.size() - kCommitCountersSize; at < page.size(); at += 2) StoreU16(page, at, kFirstCommit);
  StoreU16(page, page.size() - kCommitCountersSize, kFirstExclusiveCommit);
}

// All pages behind the first two are free: those that do not exist too.
void WriteGlobalMaps(const Layout& layout, MutableBytes page) {
  const std::size_t slots = layout.data_page.row_table, size = layout.new_map_size;
  const std::size_t first = page.size() - size, second = first - size;
  StoreU8(page, kPageKindAt, page_kind::kData);
  StoreU8(page, kPageKindAt + 1, 1);
  StoreU32(page, kOwnerAt, kGlobalMapOwner);
  StoreU16(page, layout.data_page.row_count, 2);
  StoreU16(page, slots, static_cast<unsigned>(first));
  StoreU16(page, slots + kRowSlotSize, static_cast<unsigned>(second));
  StoreU16(page, kFreeSpaceAt, static_cast<unsigned>(second - slots - 2 * kRowSlotSize));
  std::ranges::fill(page.subspan(first + kInlineMapBitsAt), std::byte{0xFF});
  static_assert(kFirstPages < kBitsOfByte);
  StoreU8(page, first + kInlineMapBitsAt, 0xFFu << kFirstPages);
}

}  // namespace

Header NewHeader(Version version, SortOrder order) {
  const bool russian = order == SortOrder::kRussian;
  Header header;
  header.version = version;
  header.collation = russian ? kRussian : kEnglish;
  header.code_page = russian ? kCyrillic : kLatin;
  header.build = version == Version::kJet3 ? kJet3Build : kJet4Build;
  if (version == Version::kJet4) header.created.days = std::bit_cast<double>(kJet4Created);
  return header;
}

std::string NewFileImage(const Header& header) {
  const Layout& layout = LayoutOf(header.version);
  std::string image(kFirstPages * layout.page_size, '\0');
  const MutableBytes bytes = std::as_writable_bytes(std::span(image));
  WriteHeader(layout, header, bytes.first(layout.page_size));
  WriteGlobalMaps(layout, bytes.subspan(kGlobalMapPage * layout.page_size, layout.page_size));
  return image;
}

UserIds UserIdsFrom(std::string_view engine) {
  const std::string key = Combine(engine, kEngineId);
  return {Combine(kEngineId, key), Combine(kAdminId, key), Combine(kCreatorId, key), Combine(kUsersId, key)};
}

UserIds NewUserIds(Version version) {
  return UserIdsFrom(version == Version::kJet4 ? Combine(kEngineId, kJet4Key) : std::string(kEngineId));
}

}  // namespace jet
