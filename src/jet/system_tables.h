#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/ole_date.h"
#include "jet/database.h"
#include "jet/header.h"
#include "jet/row_draft.h"
#include "jet/transaction.h"

namespace jet {

/// Makes the four system tables, without rows, in a file that has only its first pages.
void BuildSystemTables(Transaction& transaction, const Header& header);

/// Lists in the catalog what every base holds: its system tables, its containers and itself, and who may
/// do what with them. The base has system tables without rows.
void ListSystemObjects(Transaction& transaction, Database& base, OleDate now);

/// A row of MSysObjects.
struct CatalogEntry {
  std::string_view name;
  std::uint32_t id = 0, parent = 0;
  int type = 0;
  std::string owner;  // a user id
  std::uint32_t flags = 0;
  std::string properties;  // empty = none
};

/// A row of MSysACEs: what a user or group may do with an object.
struct Permission {
  std::uint32_t object = 0;
  std::string user;
  std::uint32_t mask = 0;
  bool inheritable = false;
};

/// @param objects  MSysObjects
std::vector<Assignment> ValuesOf(const Table& objects, const CatalogEntry& entry, OleDate now);
/// @param permissions  MSysACEs
std::vector<Assignment> ValuesOf(const Table& permissions, const Permission& permission);

}  // namespace jet
