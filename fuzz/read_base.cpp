// The whole reader on damaged bases. An input is a kind byte and, by its value mod 3, patches to a
// small base of either version (four bytes each: page, offset, value) or a whole file.

#include <cstddef>
#include <cstdint>
#include <string>

#include "base/bytes.h"
#include "jet/read_all.h"
#include "jet/tiny_base.h"

namespace {

enum Kind { kPatchesToJet3, kPatchesToJet4, kWholeFile, kKinds };

constexpr std::size_t kPatchSize = 4;

std::string Patched(jet::Version version, Bytes patches) {
  static const std::string kBases[] = {jet::TinyBase(jet::Version::kJet3), jet::TinyBase(jet::Version::kJet4)};
  std::string image = kBases[static_cast<std::size_t>(version)];
  const std::size_t page_size = jet::LayoutOf(version).page_size;
  for (; patches.size() >= kPatchSize; patches = patches.subspan(kPatchSize)) {
    const std::size_t page = LoadU8(patches, 0) % jet::TinyPages::kCount;
    image[page * page_size + LoadU16(patches, 1) % page_size] = static_cast<char>(LoadU8(patches, 3));
  }
  return image;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const Bytes input = std::as_bytes(std::span(data, size)).subspan(1);
  switch (data[0] % kKinds) {
    case kPatchesToJet3: jet::ReadAll(Patched(jet::Version::kJet3, input)); break;
    case kPatchesToJet4: jet::ReadAll(Patched(jet::Version::kJet4, input)); break;
    default: jet::ReadAll(std::string(AsText(input))); break;
  }
  return 0;
}
