#include "jet/transaction.h"

#include <algorithm>
#include <random>

#include "base/cat.h"
#include "base/error.h"
#include "base/ru_literal.h"

namespace jet {
namespace {

constexpr std::size_t kLongestWrite = 1u << 20;

std::uint16_t NextCommit(unsigned counter) {
  return static_cast<std::uint16_t>(counter < kFirstCommit || counter == 0xFFFF ? kFirstCommit : counter + 1);
}

std::uint64_t NewSalt() {
  std::random_device random;
  return std::uint64_t{random()} << 32 | random();
}

}  // namespace

Transaction::Transaction(PageStore& store)
    : store_((store.BeginTransaction(), store)),
      pages_(store.pages()),
      journal_(*store.journal_),
      page_count_(pages_.page_count()) {}

Transaction::~Transaction() { RollBack(); }

MutablePage Transaction::Change(std::uint32_t page) {
  RequireOpen();
  if (page == 0) ThrowBadArgument();
  SpillWhenMany();
  return pages_.Change(page);
}

MutablePage Transaction::AppendPage() {
  RequireOpen();
  if (pages_.page_count() >= kLargestBase)
    throw Error(error_number::kNoAccess, "База достигла наибольшего размера: больше в неё ничего не поместится"_ru);
  SpillWhenMany();
  return pages_.Append();
}

void Transaction::Commit() {
  RequireOpen();
  if (pages_.changed().empty() && !touched_) return End();
  try {
    if (journaled_.empty()) BeginJournal();
    std::vector<Frame*> frames = pages_.changed();
    WriteOut(frames);
    pages_.file().Sync();
    journal_.Invalidate();
    pages_.MarkWritten(frames);
  } catch (const Error& error) {
    Fail(error);
  }
  End();
}

void Transaction::RequireOpen() const {
  if (!open_) throw Error(error_number::kBadArgument, "Изменение базы уже закончено"_ru);
}

// Pages that somebody looks at stay: more may be written into them.
void Transaction::SpillWhenMany() {
  if (pages_.changed().size() * pages_.layout().page_size < store_.options_.spill_bytes) return;
  try {
    if (journaled_.empty()) BeginJournal();
    std::vector<Frame*> frames = pages_.changed();
    std::erase_if(frames, [](const Frame* frame) { return frame->pins > 1; });
    if (frames.empty()) return;
    WriteOut(frames);
    pages_.MarkWritten(frames);
  } catch (const Error& error) {
    Fail(error);
  }
}

// Counts the commit in page 0, so that other programs notice it, and puts that page first: it tells
// whose journal this is.
void Transaction::BeginJournal() {
  const std::size_t counter = pages_.layout().page_size - kCommitCountersSize;
  const MutablePage first = pages_.Change(0);
  const unsigned before = first.U16(counter);
  journal_.Begin({.page_size = static_cast<std::uint32_t>(pages_.layout().page_size),
                  .page_count = page_count_,
                  .commit_before = static_cast<std::uint16_t>(before),
                  .commit_after = NextCommit(before),
                  .salt = NewSalt()});
  journal_.Add(0, first.bytes());
  first.SetU16(counter, NextCommit(before));
  journaled_.resize(page_count_);
  journaled_[0] = true;
}

// No page is written before what it was is on the medium, and before the readers are out.
void Transaction::WriteOut(std::span<Frame*> frames) {
  std::ranges::sort(frames, {}, &Frame::page);
  AddToJournal(frames);
  journal_.Sync();
  store_.CloseGate();
  touched_ = true;
  WritePages(frames);
}

void Transaction::AddToJournal(std::span<Frame* const> frames) {
  for (Frame* const frame : frames) {
    if (frame->page >= page_count_ || journaled_[frame->page]) continue;
    journal_.Add(frame->page, {frame->original.get(), pages_.layout().page_size});
    journaled_[frame->page] = true;
  }
}

// Neighbours in one write.
void Transaction::WritePages(std::span<Frame* const> sorted) const {
  const std::size_t page_size = pages_.layout().page_size;
  std::vector<std::byte> run;
  for (std::size_t i = 0; i < sorted.size(); ++i) {
    const Frame& frame = *sorted[i];
    run.insert(run.end(), frame.data.get(), frame.data.get() + page_size);
    const bool goes_on = i + 1 < sorted.size() && sorted[i + 1]->page == frame.page + 1;
    if (goes_on && run.size() < kLongestWrite) continue;
    const std::uint64_t end = (std::uint64_t{frame.page} + 1) * page_size;
    pages_.file().WriteAt(end - run.size(), run);
    run.clear();
  }
}

void Transaction::Fail(const Error& error) {
  const int number = error.number();
  const std::string reason = error.what();
  if (Undo()) throw FileError(number, Cat("Изменения не записаны, база осталась прежней. "_ru, reason));
  throw FileError(number, Cat("Изменения записать не удалось, и вернуть базу в прежнее состояние тоже. Закройте её "
                              "и откройте снова: тогда она восстановится. "_ru,
                              reason));
}

// @return whether the file is as it was
bool Transaction::Undo() noexcept {
  pages_.Abandon(page_count_);
  const bool restored = !touched_ || RestoreFile();
  if (touched_) pages_.Forget(page_count_);  // pages written early are in memory as if they stayed
  if (restored)
    journal_.Discard();
  else
    store_.GiveUp();
  End();
  return restored;
}

bool Transaction::RestoreFile() noexcept try {
  journal_.Revive();
  return jet::RollBack(journal_.file(), pages_.file()) >= journal_.synced();
} catch (const std::exception&) {
  return false;
}

void Transaction::End() noexcept {
  open_ = false;
  store_.OpenGate();
  store_.EndTransaction();
}

}  // namespace jet
