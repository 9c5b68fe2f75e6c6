#include "jet/index_page_writer.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <optional>

#include "base/error.h"
#include "base/ru_literal.h"
#include "jet/index.h"
#include "jet/index_page.h"

namespace jet {
namespace {

std::size_t CommonBeginning(std::string_view a, std::string_view b) {
  return static_cast<std::size_t>(
      std::mismatch(a.begin(), a.begin() + std::ptrdiff_t(std::min(a.size(), b.size())), b.begin()).first - a.begin());
}

// How many bytes all entries but the first should leave away; none when they do not fit at all. As few
// changes as can be: nothing, then what the keys share, and what the rows' addresses share only when
// another engine has filled the page so.
std::optional<std::size_t> PrefixFor(const Layout& layout, bool leaf, std::span<const std::string> entries) {
  const std::size_t capacity = IndexPageCapacity(layout);
  std::size_t whole = 0, shortest = capacity;
  for (const std::string& entry : entries) {
    whole += entry.size();
    shortest = std::min(shortest, entry.size());
  }
  if (whole <= capacity) return 0;
  if (!leaf || shortest < kEntryRowSize) return std::nullopt;
  const std::size_t longest = layout.index_page.prefix_size == 1 ? 0xFF : capacity;
  const std::size_t common = std::min(longest, CommonBeginning(entries.front(), entries.back()));
  for (const std::size_t prefix : {std::min(common, shortest - kEntryRowSize), common})
    if (whole - prefix * (entries.size() - 1) <= capacity) return prefix;
  return std::nullopt;
}

std::size_t StoredPrefix(const Layout& layout, const Page& page) {
  const IndexPageLayout& at = layout.index_page;
  return at.prefix_size == 1 ? page.U8(at.prefix) : page.U16(at.prefix);
}

void SetPrefix(const Layout& layout, const MutablePage& page, std::size_t prefix) {
  const IndexPageLayout& at = layout.index_page;
  if (at.prefix_size == 1)
    page.SetU8(at.prefix, static_cast<unsigned>(prefix));
  else
    page.SetU16(at.prefix, static_cast<unsigned>(prefix));
}

// Some engines do not tell the level of their nodes.
unsigned LevelOf(const PageFile& file, const Page& page, std::uint32_t table) {
  const IndexPageLayout& at = file.layout().index_page;
  unsigned level = 0;
  for (IndexEntries entries(file, page, table); !entries.leaf(); ++level) {
    const unsigned told = file.Read(entries.page()).U8(at.level);
    if (told != 0 || level == kDeepestIndex) return level + told;
    entries = IndexEntries(file, file.Read(entries.ChildHere()), table);
  }
  return level;
}

void SetBit(MutableBytes mask, std::size_t bit) { mask[bit / 8] |= std::byte{1} << (bit % 8); }

}  // namespace

IndexPageContent ReadIndexPage(const PageFile& file, std::uint32_t page, std::uint32_t table) {
  const Page handle = file.Read(page);
  IndexEntries entries(file, handle, table);
  IndexPageContent content;
  content.level = LevelOf(file, handle, table);
  content.previous = entries.previous();
  content.next = entries.next();
  content.tail = entries.leaf() ? 0 : entries.tail();
  while (entries.Next()) content.entries.emplace_back(AsText(entries.entry()));
  return content;
}

bool FitsIndexPage(const Layout& layout, bool leaf, std::span<const std::string> entries) {
  return PrefixFor(layout, leaf, entries).has_value();
}

void WriteIndexPage(const Layout& layout, const MutablePage& page, std::uint32_t table,
                    const IndexPageContent& content) {
  const IndexPageLayout& at = layout.index_page;
  const bool leaf = content.level == 0;
  const std::optional<std::size_t> prefix = PrefixFor(layout, leaf, content.entries);
  if (!prefix) throw FormatError("Записи не помещаются на страницу индекса"_ru, page.number());
  std::ranges::fill(page.bytes(), std::byte{0});
  page.SetU8(kPageKindAt, leaf ? page_kind::kIndexLeaf : page_kind::kIndexNode);
  page.SetU8(kPageKindAt + 1, 1);
  page.SetU32(kOwnerAt, table);
  page.SetU32(at.previous, content.previous);
  page.SetU32(at.next, content.next);
  page.SetU32(at.tail, content.tail);
  page.SetU8(at.level, content.level);
  SetPrefix(layout, page, *prefix);
  std::size_t used = 0;
  for (const std::string& entry : content.entries) {
    const Bytes stored = AsBytes(entry).subspan(used == 0 ? 0 : *prefix);
    std::ranges::copy(stored, page.Slice(at.entries + used, stored.size()).begin());
    used += stored.size();
    SetBit(page.Slice(at.mask, at.entries - at.mask), used);
  }
  page.SetU16(kFreeSpaceAt, static_cast<unsigned>(IndexPageCapacity(layout) - used));
}

IndexPageEditor::IndexPageEditor(const Layout& layout, const MutablePage& page, std::size_t used)
    : layout_(layout), page_(page), prefix_(StoredPrefix(layout, page)), used_(used) {}

bool IndexPageEditor::Insert(std::size_t at, Bytes entry) {
  const std::size_t begin = layout_.index_page.entries;
  if (prefix_ != 0) {
    if (at == 0 || entry.size() < prefix_ + kEntryRowSize) return false;
    if (!BeginsWith(entry, page_.Slice(begin, prefix_))) return false;
    entry = entry.subspan(prefix_);
  }
  if (entry.size() > IndexPageCapacity(layout_) - used_) return false;
  const MutableBytes room = page_.Slice(begin + at, used_ - at + entry.size());
  std::memmove(room.data() + entry.size(), room.data(), used_ - at);
  std::ranges::copy(entry, room.begin());
  MoveMask(at, at + entry.size());
  SetBit(page_.Slice(layout_.index_page.mask, layout_.index_page.entries - layout_.index_page.mask), at + entry.size());
  SetUsed(used_ + entry.size());
  return true;
}

bool IndexPageEditor::Erase(std::size_t begin, std::size_t end) {
  if (begin == 0 && end != used_) begin = prefix_;  // the next one, first now, stands whole behind that beginning
  if (begin == end) return false;
  const MutableBytes rest = page_.Slice(layout_.index_page.entries + begin, used_ - begin);
  std::memmove(rest.data(), rest.data() + (end - begin), used_ - end);
  MoveMask(end, begin);
  SetUsed(used_ - (end - begin));
  return true;
}

// The ends of entries behind `from` are as far behind `to` now; none is between the two.
void IndexPageEditor::MoveMask(std::size_t from, std::size_t to) {
  const MutableBytes mask = page_.Slice(layout_.index_page.mask, layout_.index_page.entries - layout_.index_page.mask);
  std::array<std::byte, kLargestPage / 8> before;
  std::ranges::copy(mask, before.begin());
  const std::size_t cleared = std::min(from, to) + 1, last = used_ / 8;
  for (std::size_t at = cleared / 8; at <= last; ++at)
    mask[at] &= at == cleared / 8 ? static_cast<std::byte>((1u << (cleared % 8)) - 1) : std::byte{0};
  for (std::size_t at = (from + 1) / 8; at <= last; ++at) {
    unsigned bits = std::to_integer<unsigned>(before[at]);
    if (at == (from + 1) / 8) bits &= 0xFFu << ((from + 1) % 8);
    if (bits == 0) continue;
    const auto lowest = static_cast<std::size_t>(std::countr_zero(bits));
    const std::size_t target = 8 * at + lowest - from + to;
    const unsigned moved = (bits >> lowest) << (target % 8);
    mask[target / 8] |= static_cast<std::byte>(moved & 0xFF);
    if (moved > 0xFF) mask[target / 8 + 1] |= static_cast<std::byte>(moved >> 8);
  }
}

void IndexPageEditor::SetUsed(std::size_t used) {
  used_ = used;
  page_.SetU16(kFreeSpaceAt, static_cast<unsigned>(IndexPageCapacity(layout_) - used));
}

}  // namespace jet
