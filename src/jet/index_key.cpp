#include "jet/index_key.h"

#include <algorithm>
#include <cstdint>

#include "base/bytes.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "jet/column_codec.h"
#include "jet/text_codec.h"
#include "jet/text_key.h"

namespace jet {
namespace {

// The byte before the key of a value that is not null.
constexpr std::uint8_t kNotNullFlag = 0x7F, kNotNullFlagDescending = 0x80;

void AppendByte(std::string& to, unsigned byte) { to += static_cast<char>(static_cast<std::uint8_t>(byte)); }

void Invert(std::string& bytes, std::size_t from) {
  for (std::size_t i = from; i < bytes.size(); ++i) bytes[i] = static_cast<char>(~bytes[i]);
}

std::string Reversed(Bytes bytes) {
  std::string reversed(AsText(bytes));
  std::reverse(reversed.begin(), reversed.end());
  return reversed;
}

void FlipSign(std::string& big_endian) { big_endian[0] = static_cast<char>(big_endian[0] ^ 0x80); }

// Big-endian with the sign bit flipped: bytes then compare as the numbers do.
std::string IntegerKey(Bytes stored) {
  std::string key = Reversed(stored);
  FlipSign(key);
  return key;
}

// A positive number flips its sign bit, a negative one all of them.
std::string FloatKey(Bytes stored) {
  std::string key = Reversed(stored);
  if ((key[0] & 0x80) == 0)
    FlipSign(key);
  else
    Invert(key, 0);
  return key;
}

// Groups of eight, a mark between them, the last one padded and followed by its true length. In
// descending keys the marks stay as they are.
std::string BinaryKey(Bytes stored, bool ascending) {
  constexpr std::size_t kGroup = 8;
  constexpr std::uint8_t kMoreFollows = 0x09;
  std::string key;
  while (!stored.empty()) {
    const std::size_t size = std::min(kGroup, stored.size());
    std::string group(AsText(stored.first(size)));
    group.resize(kGroup, '\0');
    stored = stored.subspan(size);
    if (stored.empty()) AppendByte(group, static_cast<unsigned>(size));
    if (!ascending) Invert(group, 0);
    key += group;
    if (!stored.empty()) AppendByte(key, kMoreFollows);
  }
  return key;
}

// In the order of its text.
std::string GuidBytes(Bytes stored) {
  return Reversed(stored.first(4)) + Reversed(stored.subspan(4, 2)) + Reversed(stored.subspan(6, 2)) +
         std::string(AsText(stored.subspan(8)));
}

// The sign, then the magnitude big-endian. Descending keys do not sort as they should: the sign
// byte is not inverted with the rest. Kept, as the original engine writes them so.
std::string NumericKey(Bytes stored, bool ascending) {
  const bool negative = LoadU8(stored, 0) != 0;
  std::string magnitude;
  for (std::size_t at = 1; at < stored.size(); at += 4) magnitude += Reversed(stored.subspan(at, 4));
  if (negative == ascending) Invert(magnitude, 0);
  return (negative ? '\x00' : '\xFF') + magnitude;
}

bool AppendTextKey(Version version, const Column& column, Bytes stored, bool ascending, std::string& key) {
  if (!KnowsTextKeys(version, column)) return false;
  if (version == Version::kJet4) {
    std::u16string text;
    return DecodeUtf16(stored, text) && AppendTextKeyJet4(text, ascending, key);
  }
  const std::size_t begin = key.size();
  AppendTextKeyJet3(AsText(stored), key);
  if (!ascending) Invert(key, begin);
  return true;
}

// New names must get into the catalog whatever its sort order is.
bool AppendProvisionalKey(Version version, Bytes stored, std::string& key) {
  if (version == Version::kJet3) {
    AppendProvisionalKeyJet3(AsText(stored), key);
    return true;
  }
  std::u16string text;
  if (!DecodeUtf16(stored, text)) return false;
  AppendProvisionalKeyJet4(text, key);
  return true;
}

// What a column's key holds behind its flag byte.
bool AppendValueKey(Version version, const Column& column, Bytes stored, bool ascending, std::string& key) {
  const std::size_t begin = key.size();
  switch (column.type) {
    case ColumnType::kByte: key += AsText(stored); break;
    case ColumnType::kInteger:
    case ColumnType::kLong:
    case ColumnType::kCurrency: key += IntegerKey(stored); break;
    case ColumnType::kSingle:
    case ColumnType::kDouble:
    case ColumnType::kDateTime: key += FloatKey(stored); break;
    case ColumnType::kNumeric: key += NumericKey(stored, ascending); return true;
    case ColumnType::kBinary: key += BinaryKey(stored, ascending); return true;
    case ColumnType::kGuid: key += BinaryKey(AsBytes(GuidBytes(stored)), ascending); return true;
    case ColumnType::kText:
    case ColumnType::kMemo: return AppendTextKey(version, column, stored, ascending, key);
    case ColumnType::kBoolean:
    case ColumnType::kLongBinary:
    case ColumnType::kOle: return false;
  }
  if (!ascending) Invert(key, begin);
  return true;
}

void AppendNullKey(bool ascending, std::string& key) { AppendByte(key, NullKey(ascending)); }

void AppendBooleanKey(bool value, bool ascending, std::string& key) {
  AppendByte(key, ascending ? kNotNullFlag : kNotNullFlagDescending);
  AppendByte(key, value == ascending ? 0x00 : 0xFF);
}

bool AppendStoredKey(Version version, const Column& column, Bytes stored, bool ascending, std::string& key) {
  if (SizeOf(column.type) != 0 && stored.size() != SizeOf(column.type))
    throw FormatError("Значение поля повреждено"_ru);
  AppendByte(key, ascending ? kNotNullFlag : kNotNullFlagDescending);
  return AppendValueKey(version, column, stored, ascending, key);
}

bool Truth(const Value& value) {
  const bool* const truth = std::get_if<bool>(&value);
  if (truth == nullptr) throw ConversionError(error_number::kConversion, "Значение не подходит к полю"_ru);
  return *truth;
}

const Column& ColumnOf(const TableDef& def, const IndexColumn& part) { return *def.ColumnByNumber(part.number); }

}  // namespace

std::optional<std::string> KeyOfRow(Version version, const TableDef& def, const RealIndex& index, const Row& row) {
  std::string key, stored;
  for (const IndexColumn& part : index.columns) {
    const Column& column = ColumnOf(def, part);
    if (column.type == ColumnType::kBoolean) {
      AppendBooleanKey(row.Bool(column), part.ascending, key);
    } else if (row.IsNull(column)) {
      AppendNullKey(part.ascending, key);
    } else {
      row.ReadStored(column, stored);
      if (!AppendStoredKey(version, column, AsBytes(stored), part.ascending, key)) return std::nullopt;
    }
  }
  return key;
}

std::optional<std::string> KeyOfStored(Version version, const TableDef& def, const RealIndex& index,
                                       std::span<const StoredColumn> columns) {
  std::string key;
  for (std::size_t i = 0; i < index.columns.size(); ++i) {
    const bool ascending = index.columns[i].ascending;
    const Column& column = ColumnOf(def, index.columns[i]);
    if (column.type == ColumnType::kBoolean)
      AppendBooleanKey(columns[i].bit, ascending, key);
    else if (!columns[i].bit)
      AppendNullKey(ascending, key);
    else if (!AppendStoredKey(version, column, columns[i].bytes, ascending, key) &&
             !(def.system && ascending && column.type == ColumnType::kText &&
               AppendProvisionalKey(version, columns[i].bytes, key)))
      return std::nullopt;
  }
  return key;
}

std::optional<std::int32_t> LongOfKey(Bytes key, bool ascending) {
  constexpr std::size_t kSize = 4;
  if (key.size() < 1 + kSize || LoadU8(key, 0) != (ascending ? kNotNullFlag : kNotNullFlagDescending))
    return std::nullopt;
  std::string bytes = Reversed(key.subspan(1, kSize));
  if (!ascending) Invert(bytes, 0);
  return static_cast<std::int32_t>(LoadU32(AsBytes(bytes), 0) ^ 0x80000000);
}

bool AllKeyColumnsNull(const TableDef& def, const RealIndex& index, const Row& row) {
  return std::all_of(index.columns.begin(), index.columns.end(),
                     [&](const IndexColumn& part) { return row.IsNull(ColumnOf(def, part)); });
}

std::optional<std::string> KeyOfValues(Version version, const TableDef& def, const RealIndex& index,
                                       std::span<const Value> values) {
  std::string key, stored;
  for (std::size_t i = 0; i < std::min(values.size(), index.columns.size()); ++i) {
    const bool ascending = index.columns[i].ascending;
    const Column& column = ColumnOf(def, index.columns[i]);
    if (IsNull(values[i])) {
      AppendNullKey(ascending, key);
    } else if (column.type == ColumnType::kBoolean) {
      AppendBooleanKey(Truth(values[i]), ascending, key);
    } else {
      EncodeValue(version, column, values[i], stored);
      if (!AppendStoredKey(version, column, AsBytes(stored), ascending, key)) return std::nullopt;
    }
  }
  return key;
}

}  // namespace jet
