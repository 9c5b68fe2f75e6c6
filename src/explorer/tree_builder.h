#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/clock.h"
#include "base/progress.h"
#include "config/user_settings.h"
#include "explorer/node_tree.h"

/// The statement that yields the rows of a build, in ascending Код.
std::string TreeStatement(const user_settings::TreeSettings& settings);

/// One row of that statement. Null is 0, "" and no date.
struct TreeRow {
  std::int32_t Код = 0;
  std::int32_t Вответ = 0;  // 0 starts a thread
  std::string_view Тема, Автор;
  std::optional<OleDate> Дата;
};

/// The rows that a build walks through, once.
class TreeRows {
 public:
  virtual ~TreeRows() = default;
  /// All rows, those already passed included.
  virtual std::int32_t Count() = 0;
  /// Goes to the next row, at first to the first. @return false behind the last one
  virtual bool Next() = 0;
  /// The current row; its texts live until Next. @throws Error when the row cannot be read
  virtual TreeRow Current() = 0;
};

/// Told about a row that is not as it should be; the build goes on.
class TreeTrouble {
 public:
  virtual ~TreeTrouble() = default;
  /// @param text  the error's number and description on lines of their own
  virtual void Tell(std::string_view text) = 0;
};

struct BuiltTree {
  NodeTree tree;                  // without any node when no row was found
  std::int32_t messages = 0;      // rows of the result
  std::int32_t inconsistent = 0;  // replies whose parent was not there
  std::string status;             // for the first panel of the status bar
};

/// Builds the tree of all five top nodes in one pass. `progress` hears the percentage every 20th row; asked
/// to stop, the build ends there and keeps what it has.
BuiltTree BuildTree(TreeRows& rows, const user_settings::TreeSettings& settings, const Clock& clock, Progress& progress,
                    TreeTrouble& trouble);
