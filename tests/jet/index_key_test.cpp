#include "jet/index_key.h"

#include <gtest/gtest.h>

#include <string>

#include "base/error.h"
#include "base/ru_literal.h"
#include "jet/index.h"

namespace jet {
namespace {

TableDef OneColumn(ColumnType type) {
  Column column;
  column.type = type;
  column.collation = 0x0409;
  column.code_page = 1252;
  column.scale = 2;
  TableDef def;
  def.columns = {column};
  return def;
}

std::string Hex(std::string_view bytes) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string hex;
  for (const char byte : bytes) {
    hex += kDigits[static_cast<std::uint8_t>(byte) >> 4];
    hex += kDigits[static_cast<std::uint8_t>(byte) & 0xF];
  }
  return hex;
}

std::string KeyOf(Version version, ColumnType type, const Value& value, bool ascending = true) {
  RealIndex index;
  index.columns = {{0, ascending}};
  return KeyOfValues(version, OneColumn(type), index, {&value, 1}).value_or("unknown");
}

constexpr Version kBothVersions[] = {Version::kJet3, Version::kJet4};

TEST(IndexKey, NumbersAndBytes) {
  const Guid guid = {{0x33, 0x22, 0x11, 0x00, 0x55, 0x44, 0x77, 0x66, 0x88, 0x99, 0xAA, 0xBB, 0xCC, 0xDD, 0xEE, 0xFF}};
  const struct {
    ColumnType type;
    Value value;
    std::string_view ascending, descending;
  } cases[] = {
      {ColumnType::kLong, Null{}, "00", "FF"},
      {ColumnType::kLong, 1, "7F80000001", "807FFFFFFE"},
      {ColumnType::kLong, -1, "7F7FFFFFFF", "8080000000"},
      {ColumnType::kInteger, -2, "7F7FFE", "808001"},
      {ColumnType::kByte, 200, "7FC8", "8037"},
      {ColumnType::kBoolean, true, "7F00", "80FF"},
      {ColumnType::kBoolean, false, "7FFF", "8000"},
      {ColumnType::kCurrency, Currency{10000}, "7F8000000000002710", "807FFFFFFFFFFFD8EF"},
      {ColumnType::kDouble, 1.0, "7FBFF0000000000000", "80400FFFFFFFFFFFFF"},
      {ColumnType::kDouble, -1.0, "7F400FFFFFFFFFFFFF", "80BFF0000000000000"},
      {ColumnType::kSingle, -0.5, "7F40FFFFFF", "80BF000000"},
      {ColumnType::kDateTime, OleDate{36892.5}, "7FC0E2039000000000", "803F1DFC6FFFFFFFFF"},
      {ColumnType::kBinary, Binary{""}, "7F", "80"},
      {ColumnType::kBinary, Binary{"ab"}, "7F616200000000000002", "809E9DFFFFFFFFFFFFFD"},
      {ColumnType::kBinary, Binary{"12345678"}, "7F313233343536373808", "80CECDCCCBCAC9C8C7F7"},
      {ColumnType::kBinary, Binary{"123456789"},
       "7F3132333435363738093900000000000000"
       "01",
       "80CECDCCCBCAC9C8C709C6FFFFFFFFFFFFFFFE"},
      {ColumnType::kGuid, guid,
       "7F00112233445566770988"
       "99AABBCCDDEEFF08",
       "80FFEEDDCCBBAA99880977665544332211"
       "00F7"},
  };
  for (const Version version : kBothVersions)
    for (const auto& c : cases) {
      EXPECT_EQ(Hex(KeyOf(version, c.type, c.value)), c.ascending);
      EXPECT_EQ(Hex(KeyOf(version, c.type, c.value, false)), c.descending);
    }
}

TEST(IndexKey, DecimalsKeepTheirSignByteInDescendingOrder) {
  const Numeric plus{false, {0, 0, 0, 7}, 2}, minus{true, {0, 0, 0, 7}, 2};
  const auto key = [](const Numeric& numeric, bool ascending) {
    return Hex(KeyOf(Version::kJet4, ColumnType::kNumeric, numeric, ascending));
  };
  const std::string zeros(24, '0'), ones(24, 'F');
  EXPECT_EQ(key(plus, true), "7FFF" + zeros + "00000007");
  EXPECT_EQ(key(minus, true), "7F00" + ones + "FFFFFFF8");
  EXPECT_EQ(key(plus, false), "80FF" + ones + "FFFFFFF8");
  EXPECT_EQ(key(minus, false), "8000" + zeros + "00000007");
}

TEST(IndexKey, TextsOfTheGeneralOrder) {
  const struct {
    Version version;
    std::string text;
    std::string_view ascending;
  } cases[] = {
      {Version::kJet3, "", "7F00"},
      {Version::kJet3, "Gen\xE8ve",
       "7F68667066"
       "7A66022300"},  // an accent
      {Version::kJet3, "K\xF6ln", "7F6C726D700600"},
      {Version::kJet3,
       "K\xF8"
       "benhavn",
       "7F6C81616670"
       "69607A7000"},  // a letter of its own
      {Version::kJet3, "MSysDb  ", "7F6F767D76646100"},
      {Version::kJet4, "", "7F0100"},
      {Version::kJet4, "Forms", "7F536469606B0100"},
      {Version::kJet4, "fORMS ", "7F536469606B0100"},
      {Version::kJet4, std::string("База"_ru),
       "7F79307"
       "92F7939792F0100"},
      {Version::kJet4, std::string("Ё"_ru), "7F7936011300"},
      {Version::kJet4, "a-b",
       "7F4A4C0101010180"
       "0B068200"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Hex(KeyOf(c.version, ColumnType::kText, c.text)), c.ascending) << c.text;
    std::string inverted = KeyOf(c.version, ColumnType::kText, c.text);
    for (char& byte : inverted) byte = static_cast<char>(~byte);
    if (c.version == Version::kJet4) inverted += '\0';
    EXPECT_EQ(Hex(KeyOf(c.version, ColumnType::kText, c.text, false)), Hex(inverted)) << c.text;
  }
}

TEST(IndexKey, LongTextsCountByTheir255FirstCharacters) {
  for (const Version version : kBothVersions)
    EXPECT_EQ(KeyOf(version, ColumnType::kText, std::string(255, 'x')),
              KeyOf(version, ColumnType::kText, std::string(300, 'x')));
}

TEST(IndexKey, UnknownOrdersOfTextHaveNoKey) {
  RealIndex index;
  index.columns = {{0, true}};
  const Value text = std::string("a");
  TableDef russian = OneColumn(ColumnType::kText);
  russian.columns[0].collation = 0x0419;
  EXPECT_FALSE(KeyOfValues(Version::kJet3, russian, index, {&text, 1}));
  EXPECT_TRUE(KeyOfValues(Version::kJet4, russian, index, {&text, 1}));
  russian.columns[0].collation_version = 1;
  EXPECT_FALSE(KeyOfValues(Version::kJet4, russian, index, {&text, 1}));
}

TEST(IndexKey, ValuesOfAnotherKindAreRefused) {
  EXPECT_THROW(KeyOf(Version::kJet3, ColumnType::kLong, std::string("1")), ConversionError);
  EXPECT_THROW(KeyOf(Version::kJet3, ColumnType::kByte, 256), ConversionError);
  EXPECT_THROW(KeyOf(Version::kJet3, ColumnType::kBoolean, 1), ConversionError);
}

}  // namespace
}  // namespace jet
