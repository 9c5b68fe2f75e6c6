#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/error.h"
#include "download/session_parts.h"
#include "download_fixed/fixed_forum.h"

/// Downloads a range of messages of a fixed-address forum into the base: the commands of its window. One
/// session at a time; it runs on the stack of its command, and its window's events run between numbers and
/// while a page comes. No command throws Error: what the base refuses is told in the window.
class FixedSession {
 public:
  explicit FixedSession(const FixedDownload& with) : with_(with) {}

  /// @param kind  of the open base; empty when its forum is unknown
  void cmdDownload_Click(std::string_view kind, const RangeChoice& choice);
  /// The running session stops before its next number.
  void cmdCancelDL_Click();
  void cmdGetFirst_Click();
  void cmdGetLast_Click(std::string_view kind);
  /// The user closes the window. @return false while a session runs: it then closes the window itself
  bool MayClose();

 private:
  std::optional<NumberRange> ChooseRange(const FixedForum& forum, const RangeChoice& choice);
  std::optional<NumberRange> EverythingNew(const FixedForum& forum);
  void Run(const FixedForum& forum, NumberRange range);
  void Skip(std::int32_t number);
  void Load(const FixedForum& forum, std::int32_t number);
  std::optional<std::string> Fetch(const FixedForum& forum, std::int32_t number);
  void Take(const FixedForum& forum, std::string_view page, std::int32_t number);
  void ReportNoConnection();
  void ShowEnd();
  void ReportStopped();
  void ReportBroken(const Error& error);

  FixedDownload with_;
  Counters counters_;
  bool StopRequested_ = false;
  bool UnloadRequested_ = false;
};
