#include "jet/text_key.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

#include "base/cp1251.h"

namespace jet {
namespace {

constexpr std::size_t kMostCharacters = 255;

enum CharacterClass : std::uint8_t {
  kPlain,
  kLetter,    // Jet 3: has no accent but counts among the accents' places
  kAccented,  // primary bytes as of the plain letter, and an accent
  kLigature,  // Jet 3: two primary bytes, two places
  kSpecial,   // Jet 4: no primary bytes, only an entry at the key's end
  kIgnored,   // Jet 4: takes no part
};

struct Jet3Character {
  CharacterClass kind;
  std::uint16_t primary;
  std::uint8_t accent;
};

constexpr Jet3Character kJet3Characters[] = {
#include "jet/text_keys_jet3_general.inc"
};
static_assert(std::size(kJet3Characters) == 256);

struct Jet4Character {
  char16_t character;
  CharacterClass kind;
  std::uint16_t primary;
  std::uint8_t accent;  // or the code of a special character
};

constexpr Jet4Character kJet4Characters[] = {
#include "jet/text_keys_jet4_general.inc"
};

const Jet4Character* FindJet4Character(char16_t character) {
  const auto before = [](const Jet4Character& entry, char16_t c) { return entry.character < c; };
  const auto found = std::lower_bound(std::begin(kJet4Characters), std::end(kJet4Characters), character, before);
  return found != std::end(kJet4Characters) && found->character == character ? found : nullptr;
}

void AppendByte(std::string& to, unsigned byte) { to += static_cast<char>(static_cast<std::uint8_t>(byte)); }

void AppendPrimary(std::string& key, std::uint16_t primary) {
  if (primary > 0xFF) AppendByte(key, primary >> 8);
  AppendByte(key, primary & 0xFF);
}

template <typename Text>
Text CutToKeyLength(Text text) {
  text = text.substr(0, kMostCharacters);
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return text;
}

const Jet3Character& Jet3CharacterOf(char byte) { return kJet3Characters[static_cast<std::uint8_t>(byte)]; }

// The accents as half bytes: 2 for a letter without one; none behind the last accent.
std::string Jet3Accents(std::string_view text) {
  constexpr std::uint8_t kNoAccent = 2;
  std::string nibbles(1, '\0');
  std::size_t behind_last_accent = 0;
  for (const char byte : text) {
    const Jet3Character& character = Jet3CharacterOf(byte);
    if (character.kind == kLetter) AppendByte(nibbles, kNoAccent);
    if (character.kind == kLigature) nibbles.append(2, static_cast<char>(kNoAccent));
    if (character.kind != kAccented) continue;
    AppendByte(nibbles, character.accent);
    behind_last_accent = nibbles.size();
  }
  nibbles.resize(behind_last_accent);
  return nibbles;
}

constexpr std::uint8_t kKeyEnd = 0x00;

}  // namespace

bool KnowsTextKeys(Version version, const Column& column) {
  constexpr std::uint16_t kGeneral = 0x0409, kRussian = 0x0419, kUkrainian = 0x0422;
  constexpr std::uint16_t kLatin1 = 1252;
  if (version == Version::kJet3) return column.collation == kGeneral && column.code_page == kLatin1;
  return column.collation_version == 0 &&
         (column.collation == kGeneral || column.collation == kRussian || column.collation == kUkrainian);
}

void AppendTextKeyJet3(std::string_view text, std::string& key) {
  text = CutToKeyLength(text);
  for (const char byte : text) AppendPrimary(key, Jet3CharacterOf(byte).primary);
  std::string nibbles = Jet3Accents(text);
  if (nibbles.empty()) return AppendByte(key, kKeyEnd);
  nibbles += '\0';
  if (nibbles.size() % 2 != 0) nibbles += '\0';
  for (std::size_t i = 0; i < nibbles.size(); i += 2)
    AppendByte(key, static_cast<unsigned>((nibbles[i] << 4) | nibbles[i + 1]));
}

bool AppendTextKeyJet4(std::u16string_view text, bool ascending, std::string& key) {
  constexpr std::uint8_t kNoAccent = 0x02, kSectionEnd = 0x01, kSpecialMark = 0x06;
  constexpr unsigned kSpecialBase = 0x8007, kSpecialStep = 4;
  text = CutToKeyLength(text);
  std::string primary, accents, specials;
  std::size_t position = 0;  // characters that gave primary bytes
  for (const char16_t unit : text) {
    const Jet4Character* character = FindJet4Character(unit);
    if (character == nullptr) return false;
    if (character->kind == kIgnored) continue;
    if (character->kind == kSpecial) {
      const unsigned place = kSpecialBase + kSpecialStep * static_cast<unsigned>(position);
      for (const unsigned byte : {place >> 8, place & 0xFF, unsigned{kSpecialMark}, unsigned{character->accent}})
        AppendByte(specials, byte);
      continue;
    }
    AppendPrimary(primary, character->primary);
    if (character->kind == kAccented) {
      accents.resize(position, static_cast<char>(kNoAccent));
      AppendByte(accents, character->accent);
    }
    ++position;
  }
  while (!accents.empty() && static_cast<std::uint8_t>(accents.back()) <= kNoAccent) accents.pop_back();

  std::string sections = primary;
  AppendByte(sections, kSectionEnd);
  sections += accents;
  if (!specials.empty()) sections.append(3, static_cast<char>(kSectionEnd)).append(specials);
  AppendByte(sections, kKeyEnd);
  if (!ascending) {
    for (char& byte : sections) byte = static_cast<char>(~byte);
    AppendByte(sections, kKeyEnd);
  }
  key += sections;
  return true;
}

// Latin letters as in the General order, behind them the Russian alphabet, Ё after Е.
void AppendProvisionalKeyJet3(std::string_view text, std::string& key) {
  constexpr unsigned kFirstCyrillic = 0x84, kOtherCharacter = 0x32;
  for (const char byte : CutToKeyLength(text)) {
    const auto upper = static_cast<std::uint8_t>(cp1251::Upper(byte));
    constexpr unsigned kA = 0xC0, kZhe = 0xC6, kYa = 0xDF, kYo = 0xA8;
    if (upper < 0x80)
      AppendPrimary(key, Jet3CharacterOf(byte).primary);
    else if (upper == kYo)
      AppendByte(key, kFirstCyrillic + kZhe - kA);
    else if (upper >= kA && upper <= kYa)
      AppendByte(key, kFirstCyrillic + upper - kA + (upper >= kZhe ? 1 : 0));
    else
      AppendByte(key, kOtherCharacter);
  }
  AppendByte(key, kKeyEnd);
}

void AppendProvisionalKeyJet4(std::u16string_view text, std::string& key) {
  constexpr unsigned kUnknown = 0xFE, kSectionEnd = 0x01;
  if (AppendTextKeyJet4(text, true, key)) return;
  for (const char16_t unit : CutToKeyLength(text))
    for (const unsigned byte : {kUnknown, unsigned{unit} >> 8, unsigned{unit} & 0xFF}) AppendByte(key, byte);
  AppendByte(key, kSectionEnd);
  AppendByte(key, kKeyEnd);
}

}  // namespace jet
