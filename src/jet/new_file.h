#pragma once

#include <string>

#include "jet/header.h"

namespace jet {

enum class SortOrder {
  kGeneral,  // 1252 in the header, whatever the texts of Jet 3 hold: so Russian systems made their bases
  kRussian,  // 1251
};

/// What page 0 of a new base is to tell. Jet 4 bases are all created on one day: the stored user names
/// depend on it, in a way that is known for a few days only.
Header NewHeader(Version version, SortOrder order);

/// Pages 0 and 1 of a base that has no others yet.
std::string NewFileImage(const Header& header);

/// Users and groups as a base stores them.
struct UserIds {
  std::string engine, admin, creator, users;
};

/// @param engine  how the base stores the engine's own id: the owner of its system objects
UserIds UserIdsFrom(std::string_view engine);
/// Of a base with a NewHeader.
UserIds NewUserIds(Version version);

}  // namespace jet
