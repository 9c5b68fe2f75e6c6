#include "jet/index_writer.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <span>
#include <utility>

#include "base/error.h"
#include "base/ru_literal.h"
#include "jet/index.h"
#include "jet/page_allocation.h"

namespace jet {
namespace {

std::string EntryOf(std::string_view key, RowId row) {
  std::string entry(key);
  for (const int shift : {16, 8, 0}) entry += static_cast<char>(static_cast<std::uint8_t>(row.page >> shift));
  return entry += static_cast<char>(row.slot);
}

[[noreturn]] void ThrowDamaged(std::uint32_t page) { throw FormatError("Страница индекса повреждена"_ru, page); }

// How many of `count` stay on the left of two pages: half of them, or as near to that as fits.
// @param least  of either page
template <typename Fits>
std::size_t SplitPoint(std::uint32_t page, std::size_t count, std::size_t least, Fits fits) {
  const std::size_t middle = count / 2;
  for (std::size_t distance = 0; distance <= count; ++distance)
    for (const std::size_t left : {middle - distance, middle + distance})
      if (left >= least && left + least <= count && fits(left)) return left;
  throw FormatError("Записи не помещаются и на две страницы индекса"_ru, page);
}

}  // namespace

bool IndexWriter::HasKey(std::string_view key) const {
  IndexCursor cursor(pages(), table_, index_->root, Direction::kForward);
  cursor.Seek(AsBytes(key));
  while (cursor.Next() && BeginsWith(cursor.key(), AsBytes(key)))
    if (cursor.key().size() == key.size()) return true;
  return false;
}

void IndexWriter::Insert(std::string_view key, RowId row) {
  const std::string entry = EntryOf(key, row);
  // Of two such entries a node still has room for both, so that every page can be split.
  if (entry.size() + kEntryChildSize > IndexPageCapacity(layout()) / 2)
    throw Error(error_number::kTextTooLong, "Значение слишком длинное для индекса"_ru);
  Place place = Find(AsBytes(entry));
  const std::size_t at = place.leaf.end();
  const bool at_end = !place.leaf.Next();
  if (!at_end && CompareBytes(place.leaf.entry(), AsBytes(entry)) == 0)
    throw FormatError("Индекс уже содержит эту строку"_ru, row.page, row.slot);
  if (at_end && CorrectGreatest(place.path, place.leaf.page(), entry)) place = Find(AsBytes(entry));
  InsertInto(place, entry, at, at_end);
}

void IndexWriter::Delete(std::string_view key, RowId row) {
  const auto find = [&](const std::string& entry) -> std::optional<Place> {
    Place place = Find(AsBytes(entry));
    if (!place.leaf.Next() || CompareBytes(place.leaf.entry(), AsBytes(entry)) != 0) return std::nullopt;
    return place;
  };
  std::optional<Place> place = find(EntryOf(key, row));
  if (!place) place = find(FindByRow(row));
  if (!place) ThrowDamaged(index_->root);  // its own entry does not lead to the leaf
  EraseFrom(*place);
}

// Down to the leaf that has the first entry not less than this one.
IndexWriter::Place IndexWriter::Find(Bytes entry) const {
  const auto before = [entry](Bytes other) { return CompareBytes(other, entry) < 0; };
  Place place;
  place.leaf = IndexEntries(pages(), pages().Read(index_->root), table_);
  while (!place.leaf.leaf()) {
    if (place.path.size() == kDeepestIndex) throw FormatError("Индекс ходит по кругу"_ru, index_->root);
    place.path.push_back(place.leaf.page());
    place.leaf.SkipWhile(before);
    place.leaf = IndexEntries(pages(), pages().Read(place.leaf.ChildHere()), table_);
  }
  place.leaf.SkipWhile(before);
  return place;
}

std::string IndexWriter::FindByRow(RowId row) const {
  IndexCursor cursor(pages(), table_, index_->root, Direction::kForward);
  while (cursor.Next())
    if (cursor.id() == row) return EntryOf(AsText(cursor.key()), row);
  throw FormatError("Индекс не содержит строку, которую нужно из него убрать"_ru, row.page, row.slot);
}

std::string IndexWriter::GreatestBelow(std::uint32_t page) const {
  IndexEntries entries(pages(), pages().Read(page), table_);
  for (int level = 0; !entries.leaf(); ++level) {
    if (level == kDeepestIndex) throw FormatError("Индекс ходит по кругу"_ru, page);
    entries.ToEnd();
    entries = IndexEntries(pages(), pages().Read(entries.ChildHere()), table_);
  }
  entries.ToEnd();
  if (!entries.Previous()) ThrowDamaged(entries.page());
  return std::string(AsText(entries.entry()));
}

void IndexWriter::InsertInto(Place& place, const std::string& entry, std::size_t at, bool at_end) {
  const std::uint32_t page = place.leaf.page();
  place.leaf.ToEnd();
  IndexPageEditor editor(layout(), transaction_->Change(page), place.leaf.end());
  if (editor.Insert(at, AsBytes(entry))) return;
  IndexPageContent content = Content(page);
  content.entries.insert(std::ranges::lower_bound(content.entries, entry), entry);
  if (FitsIndexPage(layout(), true, content.entries))
    Write(page, content);
  else
    SplitLeaf(place.path, page, std::move(content), at_end);
}

void IndexWriter::SplitLeaf(const Path& parents, std::uint32_t page, IndexPageContent left, bool at_end) {
  const std::span<const std::string> entries(left.entries);
  const auto fits = [&](std::size_t count) {
    return FitsIndexPage(layout(), true, entries.first(count)) && FitsIndexPage(layout(), true, entries.subspan(count));
  };
  // Numbers that only rise leave full pages behind.
  const bool rising = at_end && left.next == 0 && fits(entries.size() - 1);
  const std::size_t count = rising ? entries.size() - 1 : SplitPoint(page, entries.size(), 1, fits);
  IndexPageContent right;
  std::move(left.entries.begin() + std::ptrdiff_t(count), left.entries.end(), std::back_inserter(right.entries));
  left.entries.resize(count);
  std::string greatest = left.entries.back();
  PutBeside(parents, page, std::move(left), std::move(greatest), std::move(right));
}

// The last child on the left loses its entry to the level above.
void IndexWriter::SplitNode(const Path& parents, IndexNode left) {
  const auto fits = [&](std::size_t count) {
    std::size_t sizes[2] = {0, 0};
    for (std::size_t i = 0; i + 1 < left.children.size(); ++i)
      if (i + 1 != count) sizes[i < count ? 0 : 1] += left.children[i].greatest.size() + kEntryChildSize;
    return std::max(sizes[0], sizes[1]) <= IndexPageCapacity(layout());
  };
  const std::size_t count = SplitPoint(left.page, left.children.size(), 2, fits);
  IndexNode right;
  right.level = left.level;
  std::move(left.children.begin() + std::ptrdiff_t(count), left.children.end(), std::back_inserter(right.children));
  left.children.resize(count);
  if (left.level > 1) {  // nodes are linked with those of the same parent only
    SetNext(left.children.back().page, 0);
    SetPrevious(right.children.front().page, 0);
  }
  PutBeside(parents, left.page, ContentOf(left), left.children.back().greatest, ContentOf(right));
}

void IndexWriter::PutBeside(const Path& parents, std::uint32_t page, IndexPageContent left, std::string greatest_left,
                            IndexPageContent right) {
  const std::uint32_t left_page = parents.empty() ? NewPage() : page;  // the root stays where it is
  const std::uint32_t right_page = NewPage();
  right.level = left.level;
  right.previous = left_page;
  right.next = std::exchange(left.next, right_page);
  if (right.next != 0) SetPrevious(right.next, right_page);
  Write(left_page, left);
  Write(right_page, right);
  if (!parents.empty()) return AddChild(parents, page, std::move(greatest_left), right_page);
  IndexNode root;
  root.page = page;
  root.level = left.level + 1;
  root.children = {{std::move(greatest_left), left_page}, {"", right_page}};
  Write(page, ContentOf(root));
}

// A child has become two.
void IndexWriter::AddChild(Path path, std::uint32_t left, std::string greatest_left, std::uint32_t right) {
  IndexNode node = ReadIndexNode(pages(), path.back(), table_);
  const std::size_t at = node.Find(left);
  std::string greatest_right = std::exchange(node.children[at].greatest, std::move(greatest_left));
  node.children.insert(node.children.begin() + std::ptrdiff_t(at) + 1, {std::move(greatest_right), right});
  Store(std::move(path), node);
}

// @param path  ends with the node
void IndexWriter::Store(Path path, const IndexNode& node) {
  const IndexPageContent content = ContentOf(node);
  if (FitsIndexPage(layout(), false, content.entries)) return Write(node.page, content);
  path.pop_back();
  SplitNode(path, node);
}

// @return whether any node told another greatest entry of the child
bool IndexWriter::CorrectGreatest(Path path, std::uint32_t child, const std::string& greatest) {
  bool corrected = false;
  for (; !path.empty(); path.pop_back()) {
    const std::uint32_t page = path.back();
    if (IndexEntries(pages(), pages().Read(page), table_).tail() != child) {
      IndexNode node = ReadIndexNode(pages(), page, table_);
      const std::size_t at = node.Find(child);
      const bool is_last = at + 1 == node.children.size();
      node.children[at].greatest = greatest;
      Store(path, node);
      corrected = true;
      if (!is_last) break;
    }
    child = page;
  }
  return corrected;
}

void IndexWriter::EraseFrom(Place& place) {
  const std::uint32_t page = place.leaf.page();
  const std::size_t begin = place.leaf.begin(), end = place.leaf.end();
  const std::string entry(AsText(place.leaf.entry()));
  place.leaf.ToEnd();
  const std::size_t used = place.leaf.end();
  IndexPageEditor editor(layout(), transaction_->Change(page), used);
  if (!editor.Erase(begin, end)) {
    IndexPageContent content = Content(page);
    std::erase(content.entries, entry);
    Write(page, content);
  }
  if (place.path.empty()) return;
  if (end - begin == used)
    RemovePage(std::move(place.path), page);
  else if (end == used)
    CorrectGreatest(std::move(place.path), page, GreatestBelow(page));
}

// A page without entries.
void IndexWriter::RemovePage(Path parents, std::uint32_t page) {
  const IndexEntries entries(pages(), pages().Read(page), table_);
  if (entries.previous() != 0) SetNext(entries.previous(), entries.next());
  if (entries.next() != 0) SetPrevious(entries.next(), entries.previous());
  FreePage(page);
  RemoveChild(std::move(parents), page);
}

void IndexWriter::RemoveChild(Path path, std::uint32_t child) {
  IndexNode node = ReadIndexNode(pages(), path.back(), table_);
  const std::size_t at = node.Find(child);
  const bool was_last = at + 1 == node.children.size();
  node.children.erase(node.children.begin() + std::ptrdiff_t(at));
  const Path parents(path.begin(), path.end() - 1);
  if (node.children.empty()) return parents.empty() ? Write(node.page, {}) : RemovePage(parents, node.page);
  if (parents.empty() && node.children.size() == 1) return CollapseRoot(node.children.front().page);
  IndexNode::Child& last = node.children.back();
  if (last.greatest.empty() && node.children.size() == 1) last.greatest = GreatestBelow(last.page);
  Store(std::move(path), node);
  if (was_last) CorrectGreatest(parents, node.page, last.greatest);
}

// The only page below the root has nothing to tell it apart from others: the root takes over what it says.
void IndexWriter::CollapseRoot(std::uint32_t only) {
  for (std::uint32_t below = only; below != 0;) {
    const IndexPageContent content = Content(below);
    Write(index_->root, content);
    FreePage(below);
    const bool single = content.level > 0 && content.entries.size() + (content.tail != 0) == 1;
    below = single ? ReadIndexNode(pages(), index_->root, table_).children.front().page : 0;
  }
}

void IndexWriter::Write(std::uint32_t page, const IndexPageContent& content) {
  WriteIndexPage(layout(), transaction_->Change(page), table_, content);
}

std::uint32_t IndexWriter::NewPage() {
  const std::uint32_t page = PageAllocator(*transaction_).Allocate().number();
  UsageMapWriter(*transaction_, index_->usage_map).Add(page);
  return page;
}

void IndexWriter::FreePage(std::uint32_t page) {
  UsageMapWriter(*transaction_, index_->usage_map).Remove(page);
  PageAllocator(*transaction_).Free(page);
}

void IndexWriter::SetPrevious(std::uint32_t page, std::uint32_t previous) {
  transaction_->Change(page).SetU32(layout().index_page.previous, previous);
}

void IndexWriter::SetNext(std::uint32_t page, std::uint32_t next) {
  transaction_->Change(page).SetU32(layout().index_page.next, next);
}

}  // namespace jet
