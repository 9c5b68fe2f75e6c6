#pragma once

#include "cli/command.h"
#include "jet/database.h"
#include "sql/connection.h"

namespace cli {

/// The base that a command's first word names, whatever its name, open for statements.
struct OpenBase {
  /// @throws Error when it cannot be opened so
  OpenBase(const Arguments& arguments, Context& context, jet::Access access)
      : database(jet::Database::Open(context.files, arguments[0], access)), connection(database, context.clock) {}
  jet::Database database;
  sql::Connection connection;
};

}  // namespace cli
