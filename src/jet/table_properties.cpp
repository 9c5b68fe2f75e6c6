#include "jet/table_properties.h"

#include <optional>
#include <vector>

#include "base/cp1251.h"
#include "base/error.h"
#include "jet/column_codec.h"
#include "jet/text_codec.h"

namespace jet {
namespace {

// Behind four letters come blocks: u32 length, which counts itself, and u16 kind.
constexpr std::size_t kLetters = 4, kBlockHead = 6, kLengthSize = 2;
constexpr unsigned kNames = 0x80, kColumnProperties = 1;
// A property: u16 length of all of it, u8 flag, u8 type, u16 number of its name, u16 length of the value.
constexpr std::size_t kPropertyTypeAt = 3, kPropertyNameAt = 4, kPropertyHead = 8;
// Before the properties of a column stand u32 length and its name.
constexpr std::size_t kOwnerNameAt = 4;

/// Takes bytes one after another; none when they do not reach.
class Reader {
 public:
  explicit Reader(Bytes bytes) : bytes_(bytes) {}

  bool empty() const { return bytes_.empty(); }
  std::optional<Bytes> Take(std::size_t size) {
    if (size > bytes_.size()) return std::nullopt;
    const Bytes taken = bytes_.first(size);
    bytes_ = bytes_.subspan(size);
    return taken;
  }
  /// What stands behind its u16 length.
  std::optional<Bytes> TakeCounted() {
    const std::optional<Bytes> length = Take(kLengthSize);
    return length ? Take(LoadU16(*length, 0)) : std::nullopt;
  }

 private:
  Bytes bytes_;
};

class Decoder {
 public:
  explicit Decoder(Version version) : version_(version) {}

  TableProperties Decode(Bytes stored) {
    Reader blocks(stored);
    blocks.Take(kLetters);
    while (const std::optional<Bytes> head = blocks.Take(kBlockHead)) {
      const std::size_t length = LoadU32(*head, 0);
      const std::optional<Bytes> content = length < kBlockHead ? std::nullopt : blocks.Take(length - kBlockHead);
      if (!content) break;
      if (LoadU16(*head, 4) == kNames) ReadNames(*content);
      if (LoadU16(*head, 4) == kColumnProperties) ReadColumn(*content);
    }
    return std::move(properties_);
  }

 private:
  std::string Text(Bytes stored) const {
    std::string text;
    AppendText(version_, stored, text);
    return text;
  }

  void ReadNames(Bytes block) {
    for (Reader reader(block); const std::optional<Bytes> name = reader.TakeCounted();) names_.push_back(Text(*name));
  }

  void ReadColumn(Bytes block) {
    Reader reader(block);
    reader.Take(kOwnerNameAt);
    const std::optional<Bytes> name = reader.TakeCounted();
    if (!name) return;
    ColumnProperties& column = properties_[Text(*name)];
    while (const std::optional<Bytes> head = reader.Take(kPropertyHead)) {
      const std::optional<Bytes> value = reader.Take(LoadU16(*head, kPropertyHead - kLengthSize));
      const std::size_t number = LoadU16(*head, kPropertyNameAt);
      if (value && number < names_.size())
        SetProperty(names_[number], static_cast<ColumnType>(LoadU8(*head, kPropertyTypeAt)), *value, column);
    }
  }

  void SetProperty(const std::string& name, ColumnType type, Bytes value, ColumnProperties& column) const {
    const bool truth = type == ColumnType::kBoolean && !value.empty() && LoadU8(value, 0) != 0;
    if (name == "Required") column.required = truth;
    if (name == "AllowZeroLength") column.allow_zero_length = truth;
    if (name == "DefaultValue" && IsText(type)) column.default_value = Text(value);
  }

  Version version_;
  std::vector<std::string> names_;
  TableProperties properties_;
};

}  // namespace

const ColumnProperties& TableProperties::Of(std::string_view name) const {
  static const ColumnProperties kNone;
  const auto found = by_name_.find(cp1251::Folded(name));
  return found == by_name_.end() ? kNone : found->second;
}

ColumnProperties& TableProperties::operator[](std::string_view name) { return by_name_[cp1251::Folded(name)]; }

TableProperties DecodeProperties(Version version, Bytes stored) { return Decoder(version).Decode(stored); }

TableProperties ReadProperties(Version version, const Table& objects, std::uint32_t page) {
  const Column* const id = objects.def().FindColumn("Id");
  const Column* const type = objects.def().FindColumn("Type");
  const Column* const stored = objects.def().FindColumn("LvProp");
  if (id == nullptr || type == nullptr || stored == nullptr) return {};
  for (TableCursor cursor = objects.Scan(); cursor.Next();) {
    const Row& row = cursor.row();
    if (row.Int(*type) != object_type::kTable || static_cast<std::uint32_t>(row.Int(*id)) != page) continue;
    std::string bytes;
    row.ReadStored(*stored, bytes);
    return DecodeProperties(version, AsBytes(bytes));
  }
  return {};
}

}  // namespace jet
