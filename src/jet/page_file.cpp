#include "jet/page_file.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "base/cat.h"
#include "base/error.h"
#include "base/ru_literal.h"

namespace jet {
namespace {

// Row pointers have three bytes for the page.
constexpr std::uint64_t kMostPages = 1u << 24;

}  // namespace

std::uint32_t CountPages(const File& file, const Layout& layout) {
  const std::uint64_t size = file.Size();
  if (size % layout.page_size != 0)
    throw Error(error_number::kNotABase, "Файл базы повреждён: он обрывается посреди страницы"_ru);
  const std::uint64_t pages = size / layout.page_size;
  if (pages > kMostPages) throw Error(error_number::kNotABase, "Файл базы больше, чем бывают базы"_ru);
  return static_cast<std::uint32_t>(pages);
}

void Page::ThrowOutside() const { throw FormatError("Данные выходят за край страницы"_ru, number()); }

PageFile::PageFile(std::unique_ptr<File> file, const Layout& layout, std::size_t cache_bytes)
    : file_(std::move(file)),
      layout_(layout),
      most_frames_(cache_bytes / layout.page_size),
      current_(CountPages(*file_, layout), nullptr),
      reader_(*file_, layout.page_size) {}

Page PageFile::Load(std::uint32_t number) const {
  if (!refusal_.empty()) throw Error(error_number::kNoAccess, refusal_);
  if (number >= page_count()) throw FormatError("База ссылается на страницу, которой в файле нет"_ru, number);
  Frame& frame = FreeFrame();
  reader_.Read(number, page_count(), {frame.data.get(), layout_.page_size});
  frame.page = number;
  frame.recent = true;
  current_[number] = &frame;
  return {&frame, layout_.page_size};
}

// A second chance for every page used since the hand last came by. More frames than the cache
// should have are made only while handles hold all of them.
Frame& PageFile::FreeFrame() const {
  for (std::size_t steps = frames_.size() < most_frames_ ? 0 : 2 * frames_.size(); steps > 0; --steps) {
    Frame& frame = *frames_[hand_];
    hand_ = (hand_ + 1) % frames_.size();
    if (frame.pins != 0 || std::exchange(frame.recent, false)) continue;
    if (frame.page < current_.size() && current_[frame.page] == &frame) current_[frame.page] = nullptr;
    return frame;
  }
  return NewFrame();
}

Frame& PageFile::NewFrame() const {
  auto frame = std::make_unique<Frame>();
  frame->data = std::make_unique<std::byte[]>(layout_.page_size);
  frames_.push_back(std::move(frame));
  return *frames_.back();
}

MutablePage PageFile::Change(std::uint32_t number) {
  const Page page = Read(number);
  Frame& frame = *page.frame_;
  if (!frame.changed) {
    auto original = std::make_unique_for_overwrite<std::byte[]>(layout_.page_size);
    std::memcpy(original.get(), frame.data.get(), layout_.page_size);
    changed_.push_back(&frame);
    frame.original = std::move(original);
    frame.changed = true;
    ++frame.pins;
  }
  return {&frame, layout_.page_size};
}

MutablePage PageFile::Append() {
  if (!refusal_.empty()) throw Error(error_number::kNoAccess, refusal_);
  Frame& frame = FreeFrame();
  std::memset(frame.data.get(), 0, layout_.page_size);
  frame.page = page_count();
  current_.push_back(&frame);
  changed_.push_back(&frame);
  frame.recent = frame.changed = true;
  ++frame.pins;
  return {&frame, layout_.page_size};
}

void PageFile::MarkWritten(std::span<Frame* const> written) {
  reader_.Forget();
  for (Frame* const frame : written) {
    frame->original.reset();
    frame->changed = false;
    --frame->pins;
  }
  std::erase_if(changed_, [](const Frame* frame) { return !frame->changed; });
}

void PageFile::Abandon(std::uint32_t page_count) noexcept {
  reader_.Forget();
  for (Frame* const frame : changed_) {
    // Into the same place: handles look at it.
    if (frame->original) std::memcpy(frame->data.get(), frame->original.get(), layout_.page_size);
    frame->original.reset();
    frame->changed = false;
    --frame->pins;
  }
  changed_.clear();
  current_.resize(page_count);
}

void PageFile::Forget(std::uint32_t page_count) {
  reader_.Forget();
  current_.assign(page_count, nullptr);
  for (const auto& frame : frames_) frame->recent = false;
}

}  // namespace jet
