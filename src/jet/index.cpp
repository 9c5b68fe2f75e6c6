#include "jet/index.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "base/error.h"
#include "base/ru_literal.h"

namespace jet {
int CompareBytes(Bytes a, Bytes b) {
  const std::size_t common = std::min(a.size(), b.size());
  const int order = common == 0 ? 0 : std::memcmp(a.data(), b.data(), common);
  if (order != 0) return order;
  return a.size() < b.size() ? -1 : a.size() > b.size() ? 1 : 0;
}

bool BeginsWith(Bytes text, Bytes beginning) {
  return text.size() >= beginning.size() && CompareBytes(text.first(beginning.size()), beginning) == 0;
}

IndexCursor::IndexCursor(const PageFile& file, std::uint32_t table, std::uint32_t root, Direction direction)
    : file_(&file), table_(table), root_(root), direction_(direction) {}

// Is the entry on this side of the place where the cursor shall stand? Forward that is before all
// entries that begin with the key, backward behind them.
bool IndexCursor::LiesBefore(Bytes entry, Bytes key) const {
  return CompareBytes(entry, key) < 0 || (direction_ == Direction::kBackward && BeginsWith(entry, key));
}

std::uint32_t IndexCursor::ChildFor(IndexEntries& node, Bytes key) const {
  node.SkipWhile([&](Bytes entry) { return LiesBefore(entry, key); });
  return node.ChildHere();
}

void IndexCursor::Seek(Bytes key) {
  started_ = true;
  leaves_seen_ = 1;
  entries_ = IndexEntries(*file_, file_->Read(root_), table_);
  for (int level = 0; !entries_.leaf(); ++level) {
    if (level == kDeepestIndex) throw FormatError("Индекс ходит по кругу"_ru, root_);
    entries_ = IndexEntries(*file_, file_->Read(ChildFor(entries_, key)), table_);
  }
  entries_.SkipWhile([&](Bytes entry) { return LiesBefore(entry, key); });
}

bool IndexCursor::Next() {
  if (!started_) Seek({});
  do {
    if (direction_ == Direction::kForward ? entries_.Next() : entries_.Previous()) return true;
  } while (StepToNeighbour());
  return false;
}

bool IndexCursor::StepToNeighbour() {
  const std::uint32_t from = entries_.page();
  const std::uint32_t to = direction_ == Direction::kForward ? entries_.next() : entries_.previous();
  if (to == 0) return false;
  if (++leaves_seen_ > file_->page_count()) throw FormatError("Индекс ходит по кругу"_ru, from);
  entries_ = IndexEntries(*file_, file_->Read(to), table_);
  if (!entries_.leaf()) throw FormatError("Страница индекса повреждена"_ru, to);
  if (direction_ == Direction::kBackward) entries_.ToEnd();
  return true;
}

RowId IndexCursor::id() const { return entries_.row(); }

Bytes IndexCursor::key() const { return entries_.key(); }

}  // namespace jet
