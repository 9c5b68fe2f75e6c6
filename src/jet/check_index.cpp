#include "jet/check_index.h"

#include <algorithm>
#include <utility>

#include "jet/index.h"
#include "jet/index_key.h"

namespace jet {

IndexCheck::IndexCheck(CheckContext& context, const Table& table, std::size_t index, std::string name,
                       const RowSet& live, const RowSet& unreadable)
    : context_(context),
      table_(table),
      index_(table.def().real_indexes[index]),
      position_(index),
      name_(std::move(name)),
      live_(live),
      unreadable_(unreadable),
      owner_(context.NewOwner(Cat("индекс: "_ru, name_))) {}

void IndexCheck::Fail(std::uint32_t page, std::string_view what) {
  context_.Error(Cat(name_, ", страница "_ru, page, ": "_ru, what));
}

void IndexCheck::Run(const std::vector<std::uint32_t>& map, const std::vector<std::uint32_t>& data) {
  Walk(index_.root, 0);
  if (context_.stopped()) return;
  for (const std::uint32_t page : map)
    if (context_.OwnerOf(page) != owner_) Fail(page, "карта называет страницу, которой в дереве нет"_ru);
  for (const std::uint32_t page : pages_)
    if (!std::ranges::binary_search(map, page)) Fail(page, "страница дерева не внесена в карту"_ru);
  if (broken_) return;
  if (next_leaf_ != 0) Fail(last_leaf_, "за последним листом есть ещё один"_ru);
  CheckMissingRows(data);
  CheckDistinctKeys();
}

// @return the height of what is below the page; -1 when that is not known
int IndexCheck::Walk(std::uint32_t page, int depth) {
  int height = -1;
  if (context_.stopped() || !context_.Claim(page, owner_)) {
    broken_ = true;
    return height;
  }
  pages_.push_back(page);
  context_.Advance();
  const bool walked = context_.Try(name_, [&] {
    if (depth > kDeepestIndex) throw FormatError("Индекс ходит по кругу"_ru, page);
    const Page handle = context_.file().Read(page);
    IndexEntries entries(context_.file(), handle, table_.def().page);
    CheckHead(entries);
    if (entries.leaf())
      WalkLeaf(entries, depth);
    else
      height = WalkNode(entries, depth);
    if (entries.leaf()) height = 0;
    const int told = static_cast<int>(handle.U8(context_.layout().index_page.level));
    if (height >= 0 && told != 0 && told != height) Fail(page, "неверно записана высота над листьями"_ru);
  });
  if (!walked) broken_ = true;
  return height;
}

void IndexCheck::CheckHead(IndexEntries& entries) {
  const Page page = context_.file().Read(entries.page());
  entries.ToEnd();
  const std::size_t free = context_.layout().page_size - context_.layout().index_page.entries - entries.end();
  if (page.U16(kFreeSpaceAt) != free)
    Fail(page.number(),
         Cat("свободное место посчитано неверно: записано "_ru, page.U16(kFreeSpaceAt), ", на деле "_ru, free));
  entries = IndexEntries(context_.file(), page, table_.def().page);
}

int IndexCheck::WalkNode(IndexEntries& entries, int depth) {
  int height = -1;
  bool empty = true;
  while (entries.Next()) {
    empty = false;
    height = Walk(entries.child(), depth + 1);
    if (context_.stopped()) return -1;
    if (!broken_ && CompareBytes(AsBytes(last_), entries.key_and_row()) != 0)
      Fail(entries.page(), Cat("запись не совпадает с последней записью страницы "_ru, entries.child()));
  }
  if (entries.tail() != 0) {
    height = Walk(entries.tail(), depth + 1);
  } else if (empty) {
    throw FormatError("Узел индекса пуст"_ru, entries.page());
  }
  return height < 0 ? -1 : height + 1;
}

void IndexCheck::WalkLeaf(IndexEntries& entries, int depth) {
  if (leaf_depth_ >= 0 && leaf_depth_ != depth) Fail(entries.page(), "листья индекса лежат на разной глубине"_ru);
  leaf_depth_ = depth;
  const bool linked = entries.previous() == last_leaf_ && (last_leaf_ == 0 || next_leaf_ == entries.page());
  if (!broken_ && !linked) Fail(entries.page(), "нарушена цепочка листьев"_ru);
  last_leaf_ = entries.page();
  next_leaf_ = entries.next();
  while (entries.Next()) CheckEntry(entries);
}

void IndexCheck::CheckEntry(const IndexEntries& entries) {
  const RowId id = entries.row();
  const Bytes entry = entries.entry(), key = entries.key();
  const bool first = last_.empty();
  if (!first && CompareBytes(AsBytes(last_), entry) >= 0) Fail(entries.page(), "записи стоят не по порядку"_ru);
  const bool repeated = !first && AsText(key) == std::string_view(last_).substr(0, last_.size() - kEntryRowSize);
  if (repeated && index_.unique && !IsAllNull(key))
    Fail(entries.page(), Cat("ключ повторяется: строка "_ru, id.slot, " страницы "_ru, id.page));
  if (!repeated) ++distinct_;
  last_.assign(AsText(entry));
  if (!live_.Contains(id))
    Fail(entries.page(), Cat("запись ведёт к строке, которой нет: "_ru, id.slot, " на странице "_ru, id.page));
  else if (!entered_.Insert(id))
    Fail(entries.page(), Cat("строка внесена дважды: "_ru, id.slot, " на странице "_ru, id.page));
  else if (!unreadable_.Contains(id))
    CheckRow(id, key);
}

void IndexCheck::CheckRow(RowId id, Bytes key) {
  context_.Try(name_, [&] {
    table_.Read(id, row_);
    const auto expected = KeyOfRow(context_.layout().version, table_.def(), index_, row_);
    if (expected && *expected != AsText(key)) context_.Error(Cat(PlaceOf(name_, id), ": ключ не тот, что у строки"_ru));
  });
}

void IndexCheck::CheckMissingRows(const std::vector<std::uint32_t>& data) {
  if (entered_.size() == live_.size()) return;
  for (const std::uint32_t page : data)
    for (unsigned slot = 0; slot < kMostSlots && live_.HasPage(page); ++slot) {
      const RowId id{page, static_cast<std::uint8_t>(slot)};
      if (!live_.Contains(id) || entered_.Contains(id) || unreadable_.Contains(id)) continue;
      context_.Try(name_, [&] {
        table_.Read(id, row_);
        if (!index_.ignore_nulls || !AllKeyColumnsNull(table_.def(), index_, row_))
          context_.Error(Cat(PlaceOf(name_, id), ": строки нет в индексе"_ru));
      });
    }
}

void IndexCheck::CheckDistinctKeys() const {
  const TableDefLayout& at = context_.layout().table_def;
  const std::size_t counter = at.size + position_ * at.index_counter_size + kDistinctKeysAt;
  const std::uint32_t told = context_.file().Read(table_.def().page).U32(counter);
  if (told < distinct_) context_.Warning(Cat(name_, ": разных ключей "_ru, distinct_, ", а записано только "_ru, told));
}

bool IndexCheck::IsAllNull(Bytes key) const {
  if (key.size() != index_.columns.size()) return false;
  for (std::size_t i = 0; i < key.size(); ++i)
    if (LoadU8(key, i) != NullKey(index_.columns[i].ascending)) return false;
  return true;
}

}  // namespace jet
