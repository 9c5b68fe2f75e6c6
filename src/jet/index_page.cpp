#include "jet/index_page.h"

#include <algorithm>
#include <utility>

#include "base/error.h"
#include "base/ru_literal.h"
#include "jet/bit_search.h"

namespace jet {
namespace {

[[noreturn]] void ThrowDamaged(std::uint32_t page) { throw FormatError("Страница индекса повреждена"_ru, page); }

std::uint32_t LoadBigEndian(Bytes bytes, std::size_t at, std::size_t size) {
  std::uint32_t value = 0;
  for (std::size_t i = 0; i < size; ++i) value = (value << 8) | LoadU8(bytes, at + i);
  return value;
}

}  // namespace

IndexEntries::IndexEntries(const PageFile& file, Page page, std::uint32_t table)
    : layout_(&file.layout().index_page), page_(std::move(page)) {
  const unsigned kind = page_.kind();
  if (kind != page_kind::kIndexLeaf && kind != page_kind::kIndexNode)
    throw FormatError("Это не страница индекса"_ru, page_.number());
  if (page_.U32(kOwnerAt) != table) throw FormatError("Страница индекса принадлежит другой таблице"_ru, page_.number());
  leaf_ = kind == page_kind::kIndexLeaf;
  prefix_ = layout_->prefix_size == 1 ? page_.U8(layout_->prefix) : page_.U16(layout_->prefix);
  if (prefix_ != 0) KeepPrefix(file.layout().page_size);
}

void IndexEntries::KeepPrefix(std::size_t page_size) {
  const std::size_t first_end = NextEnd(0);
  if (first_end == 0) return;  // an empty page: nothing needs the prefix
  if (prefix_ > first_end) ThrowDamaged(page_.number());
  whole_ = std::make_unique_for_overwrite<std::byte[]>(2 * page_size);  // two parts, each within the page
  const Bytes first = page_.Slice(layout_->entries, prefix_);
  std::copy(first.begin(), first.end(), whole_.get());
}

std::uint32_t IndexEntries::previous() const { return page_.U32(layout_->previous); }
std::uint32_t IndexEntries::next() const { return page_.U32(layout_->next); }
std::uint32_t IndexEntries::tail() const { return page_.U32(layout_->tail); }

// Where the entry that begins at `from` ends; 0 when none begins there.
std::size_t IndexEntries::NextEnd(std::size_t from) const {
  const std::optional<std::size_t> end = FirstBit(mask(), from + 1);
  if (end && *end > page_.bytes().size() - layout_->entries) ThrowDamaged(page_.number());
  return end.value_or(0);
}

// The nearest end of an entry before `before`; 0, where the first entry begins, when there is none.
std::size_t IndexEntries::PreviousEnd(std::size_t before) const { return LastBit(mask(), before).value_or(0); }

bool IndexEntries::Next() {
  const std::size_t end = NextEnd(end_);
  begin_ = end_;
  if (end == 0) return false;
  Take(begin_, end);
  return true;
}

bool IndexEntries::Previous() {
  const std::size_t end = begin_;
  if (end == 0) {
    end_ = 0;
    return false;
  }
  Take(PreviousEnd(end), end);
  return true;
}

void IndexEntries::ToEnd() {
  const std::size_t bits =
      std::min(8 * (layout_->entries - layout_->mask), page_.bytes().size() - layout_->entries + 1);
  begin_ = end_ = PreviousEnd(bits);
}

std::uint32_t IndexEntries::ChildHere() {
  if (Next()) return child();
  if (tail() != 0) return tail();
  if (!Previous()) ThrowDamaged(page());
  return child();  // a node with a single child has no tail
}

void IndexEntries::Take(std::size_t begin, std::size_t end) {
  entry_ = page_.Slice(layout_->entries + begin, end - begin);
  if (begin != 0 && whole_) {
    std::copy(entry_.begin(), entry_.end(), whole_.get() + prefix_);
    entry_ = {whole_.get(), prefix_ + entry_.size()};
  }
  if (entry_.size() < tail_size()) ThrowDamaged(page_.number());
  begin_ = begin;
  end_ = end;
}

RowId IndexEntries::row() const {
  const std::size_t at = entry_.size() - tail_size();
  return {LoadBigEndian(entry(), at, 3), LoadU8(entry(), at + 3)};
}

std::uint32_t IndexEntries::child() const { return LoadBigEndian(entry(), entry_.size() - kEntryChildSize, 4); }

}  // namespace jet
