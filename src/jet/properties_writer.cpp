#include "jet/properties_writer.h"

#include "base/bytes.h"
#include "jet/table_design.h"
#include "jet/value.h"

namespace jet {
namespace {

constexpr std::string_view kLettersJet3{"KKD\0", 4}, kLettersJet4{"MR2\0", 4};
constexpr unsigned kNames = 0x80, kColumnProperties = 1;
constexpr std::size_t kBlockHead = 6, kPropertyHead = 8;
constexpr unsigned kOfDefinition = 1;  // flag: the engine itself minds the property
constexpr char kTrue = '\xFF';

// In this order in the block of names, which the properties count from 0.
constexpr std::string_view kPropertyNames[] = {"Required", "AllowZeroLength", "DefaultValue"};
enum PropertyName : unsigned { kRequired, kAllowZeroLength, kDefaultValue };

std::string U16(std::size_t number) {
  std::string bytes(2, '\0');
  StoreU16(std::as_writable_bytes(std::span(bytes)), 0, static_cast<unsigned>(number));
  return bytes;
}

std::string U32(std::size_t number) { return U16(number & 0xFFFF) + U16(number >> 16); }

std::string Block(unsigned kind, const std::string& content) {
  return U32(kBlockHead + content.size()) + U16(kind) + content;
}

std::string Counted(const std::string& text) { return U16(text.size()) + text; }

std::string Property(PropertyName name, ColumnType type, const std::string& value) {
  std::string property = U16(kPropertyHead + value.size());
  property += static_cast<char>(kOfDefinition);
  property += static_cast<char>(type);
  return property + U16(name) + Counted(value);
}

std::string PropertiesOf(Version version, const NewProperties& demands) {
  const std::string truth(1, kTrue);
  std::string properties;
  if (demands.required) properties += Property(kRequired, ColumnType::kBoolean, truth);
  if (demands.allow_zero_length) properties += Property(kAllowZeroLength, ColumnType::kBoolean, truth);
  if (!demands.default_value.empty())
    properties += Property(kDefaultValue, ColumnType::kMemo, StoredName(version, demands.default_value));
  return properties;
}

}  // namespace

std::string EncodeProperties(Version version, std::span<const NewProperties> properties) {
  std::string columns;
  for (const NewProperties& column : properties) {
    const std::string demands = PropertiesOf(version, column);
    if (demands.empty()) continue;
    const std::string owner = Counted(StoredName(version, column.column));
    columns += Block(kColumnProperties, U32(owner.size() + 4) + owner + demands);
  }
  if (columns.empty()) return {};
  std::string names;
  for (const std::string_view name : kPropertyNames) names += Counted(StoredName(version, name));
  return std::string(version == Version::kJet3 ? kLettersJet3 : kLettersJet4) + Block(kNames, names) + columns;
}

}  // namespace jet
