#pragma once

#include <algorithm>
#include <span>
#include <string>

#include "base/bytes.h"
#include "jet/header.h"
#include "jet/layout.h"
#include "jet/page_file.h"

/// Bases without tables, for what happens to pages.
namespace paged_base {

inline constexpr const jet::Layout& kLayout = jet::kJet3;

/// A header, and pages that each hold their number and the letter '0' all over.
inline std::string Make(std::uint32_t pages) {
  std::string base(pages * kLayout.page_size, '0');
  const MutableBytes bytes = std::as_writable_bytes(std::span(base));
  base.replace(0, kLayout.page_size, kLayout.page_size, '\0');
  base.replace(0, jet::kFileMagic.size(), jet::kFileMagic);
  base.replace(jet::kProductAt, jet::kProduct.size(), jet::kProduct);
  jet::ApplyHeaderMask(kLayout, bytes.first(kLayout.page_size));
  for (std::size_t at = kLayout.page_size - jet::kCommitCountersSize; at < kLayout.page_size; at += 2)
    StoreU16(bytes, at, at == kLayout.page_size - jet::kCommitCountersSize ? 0x0101 : 0x0100);
  for (std::uint32_t page = 1; page < pages; ++page) StoreU32(bytes, page * kLayout.page_size, page);
  return base;
}

inline void Fill(const jet::MutablePage& page, char letter) {
  std::ranges::fill(page.bytes(), static_cast<std::byte>(letter));
  page.SetU32(0, page.number());
}

/// The letter that a page is filled with.
inline char LetterOf(const jet::Page& page) { return static_cast<char>(page.U8(kLayout.page_size - 1)); }

}  // namespace paged_base
