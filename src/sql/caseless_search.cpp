#include "sql/caseless_search.h"

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

#include "base/code_page.h"
#include "base/cp1251.h"
#include "base/ru_literal.h"

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

template <typename Block>
bool IsZero(const Block& block) {
  const auto halves = std::bit_cast<std::array<std::uint64_t, 2>>(block);
  return (halves[0] | halves[1]) == 0;
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
  std::size_t probes[2];  // positions of the characters that texts hold least often

  bool IsAt(const char* text) const {
    for (std::size_t i = 0; i < size; ++i) {
      const Unit unit = LoadUnit<Unit>(text, i);
      if (unit != lower[i] && unit != upper[i]) return false;
    }
    return true;
  }
};

/// Tells where one character of the needle may be. It looks only at the bits that both its forms share, so
/// now and then another character passes.
template <typename Unit>
class Probe {
 public:
  Probe(const Needle<Unit>& needle, std::size_t position)
      : offset_(position * sizeof(Unit)),
        either_(Block{} + static_cast<Unit>(needle.lower[position] ^ needle.upper[position])),
        both_(Block{} + static_cast<Unit>(needle.lower[position] | needle.upper[position])) {}

  /// @param text  where the needle would begin
  auto Fits(const char* text) const { return (Load<Unit>(text + offset_) | either_) == both_; }

 private:
  using Block = typename Vector<Unit>::Type;
  std::size_t offset_;
  Block either_, both_;
};

/// Looks at two characters of the needle in a register full of places at a time, and at several registers
/// before it decides; only where both fit are the others compared.
template <typename Unit>
class Finder {
 public:
  Finder(const char* text, std::size_t size, const Needle<Unit>& needle)
      : text_(text),
        places_(size - needle.size + 1),
        needle_(needle),
        first_(needle, needle.probes[0]),
        second_(needle, needle.probes[1]) {}

  bool Run() {
    if (Scan<4>() || Scan<1>()) return true;
    for (; place_ < places_; ++place_)
      if (needle_.IsAt(text_ + place_ * sizeof(Unit))) return true;
    return false;
  }

 private:
  static constexpr std::size_t kLanes = kBlockBytes / sizeof(Unit);

  auto Candidates(std::size_t place) const {
    const char* const at = text_ + place * sizeof(Unit);
    return first_.Fits(at) & second_.Fits(at);
  }

  template <std::size_t kBlocks>
  bool Scan() {
    for (; place_ + kBlocks * kLanes <= places_; place_ += kBlocks * kLanes) {
      auto any = Candidates(place_);
      for (std::size_t block = 1; block < kBlocks; ++block) any |= Candidates(place_ + block * kLanes);
      if (IsZero(any)) continue;
      for (std::size_t place = place_; place < place_ + kBlocks * kLanes; place += kLanes)
        if (IsInBlock(place)) return true;
    }
    return false;
  }

  bool IsInBlock(std::size_t place) const {
    const auto candidates = Candidates(place);
    if (IsZero(candidates)) return false;
    for (std::size_t lane = 0; lane < kLanes; ++lane)
      if (candidates[lane] != 0 && needle_.IsAt(text_ + (place + lane) * sizeof(Unit))) return true;
    return false;
  }

  const char* text_;
  std::size_t places_;
  const Needle<Unit>& needle_;
  Probe<Unit> first_, second_;
  std::size_t place_ = 0;
};

template <typename Unit>
bool Find(const char* text, std::size_t size, const Needle<Unit>& needle) {
  return needle.size <= size && Finder<Unit>(text, size, needle).Run();
}

/// The lower the rarer: letters by how often Russian texts hold them, what else there is before all of them.
std::size_t Frequency(char character) {
  constexpr std::string_view kFromRareToFrequent = "ъэфщцюшжхйчбзгьыяупдмклвртсниеао "_ru;
  return kFromRareToFrequent.find(character) + 1;
}

/// Compressed text switches with a zero byte between characters of one byte and of two.
bool HasTwoSwitchesInARow(std::string_view text) {
  std::size_t at = 0;
  for (; at + kBlockBytes < text.size(); at += kBlockBytes) {
    const auto zeros = (Load<char>(text.data() + at) == 0) & (Load<char>(text.data() + at + 1) == 0);
    if (!IsZero(zeros)) return true;
  }
  for (; at + 1 < text.size(); ++at)
    if (text[at] == 0 && text[at + 1] == 0) return true;
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
  for (std::size_t i = 0; i < needle_.size(); ++i) {
    if (Frequency(needle_[i]) < Frequency(needle_[rare_[0]])) rare_[0] = i;
  }
  rare_[1] = rare_[0] == 0 ? needle_.size() - 1 : 0;
  for (std::size_t i = 0; i < needle_.size(); ++i) {
    if (i != rare_[0] && Frequency(needle_[i]) < Frequency(needle_[rare_[1]])) rare_[1] = i;
  }
}

bool CaselessSearch::FoundIn(std::string_view text) const {
  if (needle_.empty()) return true;
  return Find<char>(text.data(), text.size(), {lower_.data(), upper_.data(), needle_.size(), {rare_[0], rare_[1]}});
}

bool CaselessSearch::FoundInUtf16(std::string_view utf16) const {
  if (needle_.empty()) return true;
  return Find<char16_t>(utf16.data(), utf16.size() / 2,
                        {lower16_.data(), upper16_.data(), needle_.size(), {rare_[0], rare_[1]}});
}

// Characters of two bytes stand in runs, at even places or odd ones. Only two switches without anything
// between them could part what is one run of characters.
bool CaselessSearch::MayBeInCompressed(std::string_view text) const {
  return FoundInUtf16(text) || (!text.empty() && FoundInUtf16(text.substr(1))) || HasTwoSwitchesInARow(text);
}

}  // namespace sql
