#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/progress.h"
#include "explorer/search_results.h"
#include "jet/database.h"
#include "sql/connection.h"
#include "store/message_base.h"

/// Where a search shows what it does.
class SearchView {
 public:
  virtual ~SearchView() = default;
  /// Replaces the node of search results by an empty one.
  virtual void ClearResults() = 0;
  /// Replaces it by one that holds these messages.
  virtual void ShowResults(std::span<const FoundMessage> found) = 0;
  /// Into the first panel of the status bar.
  virtual void SetStatus(std::string_view text) = 0;
};

/// The statement of a search, the text in it as typed: its wildcards count, and nothing is escaped, so
/// that an apostrophe ends the text.
std::string SearchStatement(std::string_view typed);

/// What to mark in the messages found: the text as typed, nothing when it holds wildcards.
std::string_view TextToMark(std::string_view typed);

/// The messages whose body or subject holds the typed text.
/// @param connection  to `base`
/// @throws SqlError when the typed text makes the statement a wrong one, and sql::kCancelled when `progress` says
///         stop; Error when the base cannot be read
std::vector<FoundMessage> FindMessages(jet::Database& base, sql::Connection& connection, std::string_view typed,
                                       Progress& progress);

/// Searches the bodies and subjects of all messages; blanks alone change nothing. A search that the
/// user stops, or that fails, leaves the node of results empty.
/// @throws SqlError when the typed text makes the statement a wrong one, Error when the base cannot be read
void Search(MessageBase& base, std::string_view typed, Progress& progress, SearchView& view);
