#pragma once

#include <cstdint>
#include <string>

#include "base/file.h"
#include "config/mdl_AZ.h"
#include "explorer/node_tree.h"
#include "export/shell.h"
#include "sql/connection.h"

/// What an export works with; all of it outlives the export.
struct ExportNeeds {
  FileSystem& files;
  sql::Connection& connection;
  const mdl_AZ::ForumIni& ini;
  const mdl_AZ::ForumLog& log;
  Shell* shell;  // none: the file is not opened, whatever forum.ini says
};

struct ExportOutcome {
  std::string path;           // the file
  std::int32_t messages = 0;  // in it, those included whose rows are gone
  std::int32_t unread = 0;    // left out because the base could not be read
  bool whole = false;         // all that was to be written is on the disk
  std::string trouble;        // what failed first: reading, writing or opening; empty when nothing did
};

/// The declaration, and with a stylesheet its line, which ends the header with a line break of its own.
std::string XmlHeader(const mdl_AZ::ForumIni& ini);

/// Writes the message of a node and all below it into an XML file in `folder`, replacing one of that name, and
/// opens it as forum.ini says. Never throws for what can go wrong: the log and the outcome tell, and a file
/// written in part stays as it is.
/// @param node  a message of the tree by thread
ExportOutcome ExportMessages(const ExportNeeds& needs, const NodeTree& tree, NodeId node, const std::string& folder);

/// The outcome in a sentence or two for the user, Windows-1251.
std::string ExportSummary(const ExportOutcome& outcome);
