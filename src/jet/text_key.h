#pragma once

#include <string>
#include <string_view>

#include "jet/layout.h"
#include "jet/table_def.h"

namespace jet {

/// Can the engine produce the keys of this text column? It knows the General sort order of both
/// versions; in Jet 4 the Russian and Ukrainian orders use the same table.
bool KnowsTextKeys(Version version, const Column& column);

/// Appends what an ascending key holds of a text behind its flag byte. Only the first 255
/// characters count, and no blanks at their end.
void AppendTextKeyJet3(std::string_view text, std::string& key);
/// @return false, with `key` unchanged, for characters that the engine knows no key of
bool AppendTextKeyJet4(std::u16string_view text, bool ascending, std::string& key);

/// For names in the catalog of a base whose sort order the engine does not know: keys that are ascending,
/// tell names apart and ignore letter case. Only compaction by the original engine makes the true ones of
/// them; readers do not care.
void AppendProvisionalKeyJet3(std::string_view text, std::string& key);
void AppendProvisionalKeyJet4(std::u16string_view text, std::string& key);

}  // namespace jet
