#include "download/gunzip.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>

#include "base/bytes.h"
#include "base/error.h"
#include "base/ru_literal.h"

namespace {

[[noreturn]] void ThrowBroken() { throw TransferError(35754, "Сжатая страница повреждена"_ru); }

/// Bits from the lowest of each byte on.
class BitReader {
 public:
  explicit BitReader(std::string_view bytes) : bytes_(bytes) {}

  unsigned Bits(int count) {
    while (held_ < count) {
      bits_ |= static_cast<std::uint32_t>(Byte()) << held_;
      held_ += 8;
    }
    const unsigned value = bits_ & ((1u << count) - 1);
    bits_ >>= count;
    held_ -= count;
    return value;
  }
  /// Bytes that are no bits: what is left of the current one is dropped.
  std::string_view Bytes(std::size_t count) {
    bits_ = 0;
    held_ = 0;
    if (count > bytes_.size() - at_) ThrowBroken();
    at_ += count;
    return bytes_.substr(at_ - count, count);
  }
  void SkipText() {
    while (Bytes(1).front() != '\0') continue;
  }
  bool AtEnd() const { return at_ == bytes_.size(); }

 private:
  std::uint8_t Byte() {
    if (AtEnd()) ThrowBroken();
    return static_cast<std::uint8_t>(bytes_[at_++]);
  }

  std::string_view bytes_;
  std::size_t at_ = 0;
  std::uint32_t bits_ = 0;
  int held_ = 0;
};

/// A code that is given by the lengths of its words alone: shorter words first, words of one length in the order of
/// their symbols.
class PrefixCode {
 public:
  explicit PrefixCode(std::span<const std::uint8_t> lengths) {
    for (const std::uint8_t length : lengths) ++words_[length];
    words_[0] = 0;
    std::array<std::uint16_t, kLongest + 1> next{};
    int room = 1;
    for (std::size_t length = 1; length <= kLongest; ++length) {
      room = 2 * room - words_[length];
      if (room < 0) ThrowBroken();
      next[length] = static_cast<std::uint16_t>(next[length - 1] + words_[length - 1]);
    }
    for (std::size_t symbol = 0; symbol < lengths.size(); ++symbol)
      if (lengths[symbol] != 0) symbols_[next[lengths[symbol]]++] = static_cast<std::uint16_t>(symbol);
  }

  unsigned Read(BitReader& from) const {
    unsigned word = 0, first = 0, index = 0;
    for (std::size_t length = 1; length <= kLongest; ++length) {
      word |= from.Bits(1);
      const unsigned count = words_[length];
      if (word - first < count) return symbols_[index + word - first];
      index += count;
      first = (first + count) << 1;
      word <<= 1;
    }
    ThrowBroken();
  }

 private:
  static constexpr std::size_t kLongest = 15, kMostSymbols = 288;
  std::array<std::uint16_t, kLongest + 1> words_{};  // how many of each length
  std::array<std::uint16_t, kMostSymbols> symbols_{};
};

struct Step {
  std::uint16_t base;
  std::uint8_t extra_bits;
};

// Symbols from 257 on are lengths of repetitions; the distance follows.
constexpr Step kLengths[] = {{3, 0},   {4, 0},   {5, 0},   {6, 0},   {7, 0},  {8, 0},  {9, 0},  {10, 0},
                             {11, 1},  {13, 1},  {15, 1},  {17, 1},  {19, 2}, {23, 2}, {27, 2}, {31, 2},
                             {35, 3},  {43, 3},  {51, 3},  {59, 3},  {67, 4}, {83, 4}, {99, 4}, {115, 4},
                             {131, 5}, {163, 5}, {195, 5}, {227, 5}, {258, 0}};
constexpr Step kDistances[] = {{1, 0},     {2, 0},     {3, 0},     {4, 0},      {5, 1},      {7, 1},
                               {9, 2},     {13, 2},    {17, 3},    {25, 3},     {33, 4},     {49, 4},
                               {65, 5},    {97, 5},    {129, 6},   {193, 6},    {257, 7},    {385, 7},
                               {513, 8},   {769, 8},   {1025, 9},  {1537, 9},   {2049, 10},  {3073, 10},
                               {4097, 11}, {6145, 11}, {8193, 12}, {12289, 12}, {16385, 13}, {24577, 13}};

std::size_t ReadStep(std::span<const Step> steps, unsigned symbol, BitReader& from) {
  if (symbol >= steps.size()) ThrowBroken();
  return steps[symbol].base + from.Bits(steps[symbol].extra_bits);
}

class Inflater {
 public:
  Inflater(BitReader& from, std::string& to, std::size_t largest) : from_(from), to_(to), largest_(largest) {}

  void Run() {
    for (bool last = false; !last;) {
      last = from_.Bits(1) != 0;
      switch (from_.Bits(2)) {
        case 0: Stored(); break;
        case 1: FixedCodes(); break;
        case 2: OwnCodes(); break;
        default: ThrowBroken();
      }
    }
  }

 private:
  void Grow(std::size_t by) const {
    if (by > largest_ - to_.size()) throw TransferError(error_number::kOverflow, "Страница слишком велика"_ru);
  }

  void Stored() {
    const auto header = AsBytes(from_.Bytes(4));
    const unsigned length = LoadU16(header, 0);
    if ((length ^ LoadU16(header, 2)) != 0xFFFF) ThrowBroken();
    Grow(length);
    to_ += from_.Bytes(length);
  }

  void FixedCodes() {
    std::array<std::uint8_t, 288> lengths;
    for (std::size_t i = 0; i < lengths.size(); ++i) lengths[i] = i < 144 ? 8 : i < 256 ? 9 : i < 280 ? 7 : 8;
    std::array<std::uint8_t, 30> distances;
    distances.fill(5);
    Codes(PrefixCode(lengths), PrefixCode(distances));
  }

  void OwnCodes() {
    constexpr std::uint8_t kOrder[] = {16, 17, 18, 0, 8, 7, 9, 6, 10, 5, 11, 4, 12, 3, 13, 2, 14, 1, 15};
    const std::size_t literals = from_.Bits(5) + 257, distances = from_.Bits(5) + 1, words = from_.Bits(4) + 4;
    if (literals > 286 || distances > 30) ThrowBroken();
    std::array<std::uint8_t, 19> code_lengths{};
    for (std::size_t i = 0; i < words; ++i) code_lengths[kOrder[i]] = static_cast<std::uint8_t>(from_.Bits(3));
    std::array<std::uint8_t, 286 + 30> lengths{};
    ReadLengths(PrefixCode(code_lengths), std::span(lengths).first(literals + distances));
    Codes(PrefixCode(std::span(lengths).first(literals)), PrefixCode(std::span(lengths).subspan(literals, distances)));
  }

  // The lengths of both codes, themselves squeezed: 16 repeats the one before, 17 and 18 are runs of zeros.
  void ReadLengths(const PrefixCode& code, std::span<std::uint8_t> lengths) {
    for (std::size_t i = 0; i < lengths.size();) {
      const unsigned symbol = code.Read(from_);
      if (symbol < 16) {
        lengths[i++] = static_cast<std::uint8_t>(symbol);
        continue;
      }
      if (symbol == 16 && i == 0) ThrowBroken();
      const std::uint8_t repeated = symbol == 16 ? lengths[i - 1] : 0;
      const std::size_t times = symbol == 16   ? 3 + from_.Bits(2)
                                : symbol == 17 ? 3 + from_.Bits(3)
                                               : 11 + from_.Bits(7);
      if (times > lengths.size() - i) ThrowBroken();
      std::fill_n(lengths.begin() + static_cast<std::ptrdiff_t>(i), times, repeated);
      i += times;
    }
  }

  void Codes(const PrefixCode& literals, const PrefixCode& distances) {
    constexpr unsigned kEnd = 256;
    for (unsigned symbol; (symbol = literals.Read(from_)) != kEnd;) {
      if (symbol < kEnd) {
        Grow(1);
        to_ += static_cast<char>(static_cast<unsigned char>(symbol));
        continue;
      }
      const std::size_t length = ReadStep(kLengths, symbol - kEnd - 1, from_);
      const std::size_t distance = ReadStep(kDistances, distances.Read(from_), from_);
      if (distance > to_.size()) ThrowBroken();
      Grow(length);
      for (std::size_t i = 0; i < length; ++i) to_ += to_[to_.size() - distance];  // may read what it wrote
    }
  }

  BitReader& from_;
  std::string& to_;
  const std::size_t largest_;
};

std::uint32_t Crc32(std::string_view text) {
  std::uint32_t crc = ~0u;
  for (const char c : text) {
    crc ^= static_cast<std::uint8_t>(c);
    for (int bit = 0; bit < 8; ++bit) crc = (crc >> 1) ^ ((crc & 1) != 0 ? 0xEDB88320u : 0u);
  }
  return ~crc;
}

void SkipHeader(BitReader& from) {
  constexpr unsigned kDeflate = 8, kHeaderCheck = 2, kExtra = 4, kName = 8, kComment = 16;
  const auto header = AsBytes(from.Bytes(10));
  if (LoadU16(header, 0) != 0x8B1F || LoadU8(header, 2) != kDeflate) ThrowBroken();
  const unsigned flags = LoadU8(header, 3);
  if ((flags & kExtra) != 0) from.Bytes(LoadU16(AsBytes(from.Bytes(2)), 0));
  if ((flags & kName) != 0) from.SkipText();
  if ((flags & kComment) != 0) from.SkipText();
  if ((flags & kHeaderCheck) != 0) from.Bytes(2);
}

}  // namespace

std::string Gunzip(std::string_view squeezed, std::size_t largest) {
  std::string page;
  BitReader from(squeezed);
  do {
    SkipHeader(from);
    std::string member;
    Inflater(from, member, largest - page.size()).Run();
    const auto trailer = AsBytes(from.Bytes(8));
    if (LoadU32(trailer, 0) != Crc32(member) || LoadU32(trailer, 4) != member.size()) ThrowBroken();
    page += member;
  } while (!from.AtEnd());
  return page;
}
