#pragma once

#include <string>
#include <vector>

#include "jet/catalog.h"

namespace sql {

/// The statement of a saved query, put together from its catalog rows (by attribute and order, as
/// Database::QueryRows gives them). Names are bracketed where they need it.
/// @throws SqlError 3075 for a kind of query that is not known
std::string QueryText(const std::vector<jet::QueryRow>& rows);

}  // namespace sql
