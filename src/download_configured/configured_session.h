#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "base/error.h"
#include "download/session_parts.h"
#include "download_configured/configured_download.h"

/// Downloads a range of messages of a forum whose addresses stand in forum.ini: the commands of its window.
/// One session at a time; it runs on the stack of its command, and its window's events run between numbers
/// and while a page comes. No command throws Error: what the base refuses is told in the window.
class ConfiguredSession {
 public:
  /// Shows the transfer's states in the status bar as long as it lives.
  explicit ConfiguredSession(const ConfiguredDownload& with);
  ~ConfiguredSession();
  ConfiguredSession(const ConfiguredSession&) = delete;
  ConfiguredSession& operator=(const ConfiguredSession&) = delete;

  void cmdDownload_Click(const RangeChoice& choice);
  /// The running session stops behind the page that comes, or before its next number.
  void cmdCancelDL_Click();
  void cmdGetFirst_Click();
  /// These forums do not tell their last number: the range that a window opens with is proposed again.
  void cmdGetLast_Click();
  /// The user closes the window. @return false while a session runs, which goes on
  bool MayClose();

 private:
  std::optional<NumberRange> ChooseRange(const RangeChoice& choice);
  std::optional<NumberRange> FirstAfterBase();
  void Run(NumberRange range);
  bool DoNumber(NumberRange range, std::int32_t current);
  void AddRow(NumberRange range, std::int32_t current);
  void Skip(std::int32_t current);
  bool Load(std::int32_t current);
  void Take(const std::string& page, std::int32_t current);
  void Import(const std::string& page, std::int32_t current);
  void ReportTrapped();
  void Interrupt();
  void ReportBroken(const Error& error);
  void ie_StateChanged(int state);

  ConfiguredDownload with_;
  Counters counters_;
  std::string url_, url_suffix_;
  std::int32_t timeout_ = 0;  // seconds
  bool stop_ = false;
  bool has_row_ = false;  // does the current number have one? A number tried again keeps it
};
