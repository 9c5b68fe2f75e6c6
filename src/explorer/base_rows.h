#pragma once

#include <cstdint>

#include "config/user_settings.h"
#include "explorer/tree_builder.h"
#include "sql/connection.h"

/// The rows of a build, read from the open base as a snapshot. Fields that the statement does not ask
/// for are empty.
class BaseRows : public TreeRows {
 public:
  /// @throws SqlError, FormatError when the base cannot be asked
  BaseRows(sql::Connection& connection, const user_settings::TreeSettings& settings);

  std::int32_t Count() override { return count_; }
  bool Next() override;
  TreeRow Current() override;

 private:
  sql::Recordset rows_;
  std::int32_t count_;
  bool started_ = false;
  bool has_author_;
};
