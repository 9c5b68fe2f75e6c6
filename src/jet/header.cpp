#include "jet/header.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

#include "base/error.h"
#include "base/ru_literal.h"

namespace jet {
namespace {

constexpr std::size_t kLongestMask = 128;
static_assert(kJet3.header.mask_size <= kLongestMask && kJet4.header.mask_size <= kLongestMask);

// The same for all files: the first bytes of an RC4 stream under a fixed key.
constexpr std::array<std::uint8_t, kLongestMask> MakeMask() {
  constexpr std::uint8_t kKey[] = {0xC7, 0xDA, 0x39, 0x6B};
  std::array<std::uint8_t, 256> state{};
  for (unsigned i = 0; i < 256; ++i) state[i] = static_cast<std::uint8_t>(i);
  for (unsigned i = 0, j = 0; i < 256; ++i) {
    j = (j + state[i] + kKey[i % 4]) & 0xFF;
    std::swap(state[i], state[j]);
  }
  std::array<std::uint8_t, kLongestMask> mask{};
  for (unsigned n = 0, i = 0, j = 0; n < kLongestMask; ++n) {
    i = (i + 1) & 0xFF;
    j = (j + state[i]) & 0xFF;
    std::swap(state[i], state[j]);
    mask[n] = state[(state[i] + state[j]) & 0xFF];
  }
  return mask;
}

constexpr auto kMask = MakeMask();
static_assert(kMask[0] == 0xB5 && kMask[1] == 0x6F && kMask[23] == 0xC5);

using HeaderBytes = std::array<std::byte, kHeaderSize>;

[[noreturn]] void Refuse(std::string_view why) { throw Error(error_number::kNotABase, why); }

bool HasAt(Bytes bytes, std::size_t at, std::string_view text) {
  return AsText(bytes.subspan(at, text.size())) == text;
}

const Layout& RecogniseLayout(Bytes page) {
  if (HasAt(page, kProductAt, kOtherProduct))
    Refuse("Это база другой программы: такой вид файлов не поддерживается"_ru);
  if (!HasAt(page, 0, kFileMagic) || !HasAt(page, kProductAt, kProduct)) Refuse("Файл не является базой сообщений"_ru);
  switch (LoadU8(page, kVersionAt)) {
    case static_cast<std::uint8_t>(Version::kJet3): return kJet3;
    case static_cast<std::uint8_t>(Version::kJet4): return kJet4;
    default: Refuse("База записана в более новом формате, который не поддерживается"_ru);
  }
}

/// What is known of the file's first bytes, the mask taken off.
struct OpenedHeader {
  const Layout& layout;
  HeaderBytes bytes;
};

OpenedHeader OpenHeader(const File& file) {
  HeaderBytes page{};
  const std::uint64_t size = file.Size();
  file.ReadAt(0, MutableBytes(page).first(static_cast<std::size_t>(std::min<std::uint64_t>(size, page.size()))));
  const Layout& layout = RecogniseLayout(page);
  if (size < layout.page_size) Refuse("Файл базы повреждён: в нём нет и одной страницы"_ru);
  ApplyHeaderMask(layout, page);
  return {layout, page};
}

OleDate CreatedOn(const Layout& layout, Bytes page) {
  return layout.header.created == 0 ? OleDate{} : OleDate{LoadF64(page, layout.header.created)};
}

/// Zeros only when there is none.
std::string PasswordOf(const Layout& layout, Bytes page) {
  const std::uint32_t day = layout.header.created == 0 ? 0 : CreationDay(CreatedOn(layout, page));
  std::string password(AsText(page.subspan(layout.header.password, layout.header.password_size)));
  for (std::size_t i = 0; i < password.size(); ++i)
    password[i] = static_cast<char>(LoadU8(AsBytes(password), i) ^ ((day >> (8 * (i % 4))) & 0xFF));
  return password;
}

bool HasPassword(const std::string& password) { return password.find_first_not_of('\0') != std::string::npos; }

/// Characters, then zeros, and not the same ones over and over, as a damaged date of creation makes them.
bool IsTyped(const Layout& layout, const std::string& password) {
  const std::size_t width = layout.version == Version::kJet3 ? 1 : 2;
  const auto is_zero = [&](std::size_t at) { return password.find_first_not_of('\0', at) >= at + width; };
  std::size_t length = 0;
  while (length < password.size() && !is_zero(length)) length += width;
  const bool repeats = password.compare(4, std::string::npos, password, 0, password.size() - 4) == 0;
  return length > 0 && !repeats && !HasPassword(password.substr(length));
}

}  // namespace

std::uint32_t CreationDay(OleDate created) {
  constexpr double kLimit = 2147483647.0;
  if (!(std::abs(created.days) < kLimit)) return 0;
  return static_cast<std::uint32_t>(static_cast<std::int32_t>(created.days));
}

void ApplyHeaderMask(const Layout& layout, MutableBytes page) {
  for (std::size_t i = 0; i < layout.header.mask_size; ++i) page[kMaskBegin + i] ^= std::byte{kMask[i]};
}

bool IsUnderTypedPassword(const File& file) try {
  const OpenedHeader header = OpenHeader(file);
  return IsTyped(header.layout, PasswordOf(header.layout, header.bytes));
} catch (const Error&) {
  return false;
}

Header ReadHeader(const File& file) {
  const auto [layout, page] = OpenHeader(file);
  Header header;
  header.version = layout.version;
  header.code_page = LoadU16(page, kCodePageAt);
  header.collation = LoadU16(page, layout.header.collation);
  if (layout.header.collation_version != 0) header.collation_version = LoadU8(page, layout.header.collation_version);
  header.build = LoadU16(page, layout.header.build);
  header.created = CreatedOn(layout, page);
  if (LoadU32(page, kEncodingKeyAt) != 0) Refuse("База закодирована: её нужно сначала раскодировать"_ru);
  if (HasPassword(PasswordOf(layout, page))) Refuse("База защищена паролем: его нужно сначала снять"_ru);
  return header;
}

}  // namespace jet
