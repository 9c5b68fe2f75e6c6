#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "base/bytes.h"
#include "base/file.h"
#include "jet/layout.h"
#include "jet/read_ahead.h"

namespace jet {

/// A place of the page cache.
struct Frame {
  std::unique_ptr<std::byte[]> data;
  std::unique_ptr<std::byte[]> original;  // what the file holds, of a changed page that it has
  std::uint32_t page = 0;
  std::uint32_t pins = 0;  // handles that look at it, and one for a change that is not in the file
  bool recent = false;     // used since the last search for a place
  bool changed = false;    // differs from the file
};

/// One page, held in memory while the handle lives; handles must not outlive their PageFile.
/// It shows the page as it is now: a change by the open transaction appears in handles taken before
/// it, and goes from them when the transaction is undone.
/// Every access is checked: outside the page is a FormatError that names it.
class Page {
 public:
  Page() = default;
  Page(const Page& other) noexcept : Page(other.frame_, other.size_) {}
  Page(Page&& other) noexcept : frame_(other.frame_), size_(other.size_) { other.frame_ = nullptr; }
  Page& operator=(Page other) noexcept {
    std::swap(frame_, other.frame_);
    std::swap(size_, other.size_);
    return *this;
  }
  ~Page() {
    if (frame_ != nullptr) --frame_->pins;
  }

  std::uint32_t number() const { return frame_->page; }
  /// Lives as long as a handle of this page does.
  Bytes bytes() const { return {frame_->data.get(), size_}; }
  Bytes Slice(std::size_t at, std::size_t size) const {
    if (at > size_ || size > size_ - at) ThrowOutside();
    return {frame_->data.get() + at, size};
  }
  unsigned U8(std::size_t at) const { return LoadU8(Slice(at, 1), 0); }
  unsigned U16(std::size_t at) const { return LoadU16(Slice(at, 2), 0); }
  std::uint32_t U32(std::size_t at) const { return LoadU32(Slice(at, 4), 0); }
  unsigned kind() const { return U8(kPageKindAt); }

 protected:
  friend class PageFile;
  Page(Frame* frame, std::size_t size) noexcept : frame_(frame), size_(size) {
    if (frame_ != nullptr) ++frame_->pins;
  }
  [[noreturn]] void ThrowOutside() const;

  Frame* frame_ = nullptr;
  std::size_t size_ = 0;
};

/// A page that the open transaction changes. The handle must not be written through once the
/// transaction is over.
class MutablePage : public Page {
 public:
  MutableBytes bytes() const { return {frame_->data.get(), size_}; }
  MutableBytes Slice(std::size_t at, std::size_t size) const {
    Page::Slice(at, size);
    return bytes().subspan(at, size);
  }
  void SetU8(std::size_t at, unsigned value) const { StoreU8(Slice(at, 1), 0, value); }
  void SetU16(std::size_t at, unsigned value) const { StoreU16(Slice(at, 2), 0, value); }
  void SetU32(std::size_t at, std::uint32_t value) const { StoreU32(Slice(at, 4), 0, value); }

 private:
  friend class PageFile;
  using Page::Page;
};

/// @throws Error 3343 when the size is no whole number of pages, or more than a base can have
std::uint32_t CountPages(const File& file, const Layout& layout);

/// A base as numbered pages, with a cache of bounded size. Not for several threads.
class PageFile {
 public:
  static constexpr std::size_t kDefaultCacheBytes = 64u << 20;

  /// @throws Error like CountPages
  PageFile(std::unique_ptr<File> file, const Layout& layout, std::size_t cache_bytes = kDefaultCacheBytes);
  PageFile(const PageFile&) = delete;
  PageFile& operator=(const PageFile&) = delete;

  const Layout& layout() const { return layout_; }
  std::uint32_t page_count() const { return static_cast<std::uint32_t>(current_.size()); }
  /// Bytes of the whole file: no honest length in it is greater.
  std::uint64_t size() const { return std::uint64_t{page_count()} * layout_.page_size; }

  /// @throws FormatError when the file has no such page, FileError when it cannot be read
  Page Read(std::uint32_t number) const {
    if (number < current_.size() && current_[number] != nullptr) {
      current_[number]->recent = true;
      return {current_[number], layout_.page_size};
    }
    return Load(number);
  }

  File& file() const { return *file_; }

  // The working side of Transaction, which is the only one to call what follows.

  MutablePage Change(std::uint32_t number);
  /// A page of zeros behind the last one, in memory only.
  MutablePage Append();
  const std::vector<Frame*>& changed() const { return changed_; }
  /// These pages (of changed()) are in the file now as they are in memory.
  void MarkWritten(std::span<Frame* const> written);
  /// Takes all changes back that are not in the file.
  void Abandon(std::uint32_t page_count) noexcept;
  /// Forgets all that was read: the file has changed. Handles keep the bytes they show.
  void Forget(std::uint32_t page_count);
  /// From now on every page that is not in memory, all after Forget, is an Error with this text.
  /// @param why  lives as long as the file
  void Refuse(std::string_view why) noexcept { refusal_ = why; }

 private:
  Page Load(std::uint32_t number) const;
  Frame& FreeFrame() const;
  Frame& NewFrame() const;

  std::unique_ptr<File> file_;
  const Layout& layout_;
  std::size_t most_frames_;
  mutable std::vector<Frame*> current_;  // by page number; nullptr = not in memory
  mutable std::vector<std::unique_ptr<Frame>> frames_;
  mutable std::size_t hand_ = 0;  // where the search for a place goes on
  std::vector<Frame*> changed_;
  std::string_view refusal_;  // empty = none
  mutable ReadAhead reader_;
};

}  // namespace jet
