#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "config/mdl_AZ.h"
#include "sql/connection.h"

/// Writes single messages as XML, Windows-1251, lines ending with CR LF.
class MessageXml {
 public:
  /// All three outlive this object.
  MessageXml(sql::Connection& connection, const mdl_AZ::ForumIni& ini, const mdl_AZ::ForumLog& log)
      : connection_(connection), ini_(ini), log_(log) {}

  /// The message that a tree key names as a MESSAGE element with a child element for each column of База, in
  /// the table's order; "<MESSAGE/>" when its row is gone. What texts hold is not escaped: "]]>" in a body makes
  /// the document malformed. Empty when the message cannot be read: the log and failures() tell.
  std::string GetXMLMessage(std::string_view key);

  std::int32_t failures() const { return failures_; }
  /// What went wrong first; empty when nothing did.
  const std::string& first_failure() const { return first_failure_; }

 private:
  std::string ElementsOf(sql::Recordset& row);
  std::string ValueText(sql::Recordset& row, std::size_t field, std::int32_t line_size);

  sql::Connection& connection_;
  const mdl_AZ::ForumIni& ini_;
  const mdl_AZ::ForumLog& log_;
  std::int32_t failures_ = 0;
  std::string first_failure_;
};
