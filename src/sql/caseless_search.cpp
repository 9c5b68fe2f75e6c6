#include "sql/caseless_search.h"

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

#include "base/code_page.h"
#include "base/cp1251.h"

namespace sql {
namespace {

constexpr std::size_t kBlockBytes = 16;

/// As many units as one machine register holds; compares give all ones where they hold.
template <typename Unit>
struct Vector {
  using Type [[gnu::vector_size(kBlockBytes)]] = Unit;
};

template <typename Unit>
typename Vector<Unit>::Type Load(const char* at) {
  typename Vector<Unit>::Type block;
  std::memcpy(&block, at, sizeof block);
  return block;
}

template <typename Unit>
typename Vector<Unit>::Type Spread(Unit value) {
  return typename Vector<Unit>::Type{} + value;
}

template <typename Unit>
Unit LoadUnit(const char* text, std::size_t index) {
  Unit unit;
  std::memcpy(&unit, text + index * sizeof(Unit), sizeof unit);
  return unit;
}

/// The needle as units of the text's encoding: each position may hold its lower or its upper form.
template <typename Unit>
struct Needle {
  const Unit* lower;
  const Unit* upper;
  std::size_t size;

  bool IsAt(const char* text) const {
    for (std::size_t i = 0; i < size; ++i) {
      const Unit unit = LoadUnit<Unit>(text, i);
      if (unit != lower[i] && unit != upper[i]) return false;
    }
    return true;
  }
};

/// Looks at the first and the last character of the needle in a register full of places at a time;
/// only where both fit are the others compared.
template <typename Unit>
bool Find(const char* text, std::size_t size, const Needle<Unit>& needle) {
  constexpr std::size_t kLanes = kBlockBytes / sizeof(Unit);
  if (needle.size > size) return false;
  const std::size_t last = needle.size - 1;
  const std::size_t places = size - last;
  const auto first_lower = Spread(needle.lower[0]), first_upper = Spread(needle.upper[0]);
  const auto last_lower = Spread(needle.lower[last]), last_upper = Spread(needle.upper[last]);
  std::size_t place = 0;
  for (; place + kLanes <= places; place += kLanes) {
    const auto firsts = Load<Unit>(text + place * sizeof(Unit));
    const auto lasts = Load<Unit>(text + (place + last) * sizeof(Unit));
    const auto fits =
        ((firsts == first_lower) | (firsts == first_upper)) & ((lasts == last_lower) | (lasts == last_upper));
    const auto halves = std::bit_cast<std::array<std::uint64_t, 2>>(fits);
    if ((halves[0] | halves[1]) == 0) continue;
    for (std::size_t lane = 0; lane < kLanes; ++lane)
      if (fits[lane] != 0 && needle.IsAt(text + (place + lane) * sizeof(Unit))) return true;
  }
  for (; place < places; ++place)
    if (needle.IsAt(text + place * sizeof(Unit))) return true;
  return false;
}

}  // namespace

CaselessSearch::CaselessSearch(std::string_view needle) : needle_(cp1251::Folded(needle)) {
  for (const char c : needle_) {
    const char upper = cp1251::Upper(c);
    lower_.push_back(c);
    upper_.push_back(upper);
    lower16_.push_back(cp1251::ToUnicode(static_cast<std::uint8_t>(c)));
    upper16_.push_back(cp1251::ToUnicode(static_cast<std::uint8_t>(upper)));
  }
}

bool CaselessSearch::FoundIn(std::string_view text) const {
  if (needle_.empty()) return true;
  return Find<char>(text.data(), text.size(), {lower_.data(), upper_.data(), needle_.size()});
}

bool CaselessSearch::FoundInUtf16(std::string_view utf16) const {
  if (needle_.empty()) return true;
  return Find<char16_t>(utf16.data(), utf16.size() / 2, {lower16_.data(), upper16_.data(), needle_.size()});
}

}  // namespace sql
