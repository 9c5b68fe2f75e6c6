#pragma once

#include <string>

#include "explorer/tree_builder.h"
#include "sql/connection.h"

/// What stands in the place of a tree without nodes: what the build says, or, when the base has no messages
/// at all, what to do with a new base.
/// @throws SqlError, FormatError when the base cannot be asked
std::string EmptyTreeText(sql::Connection& connection, const BuiltTree& built);
