#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "download/stored_fields.h"
#include "download_fixed/fixed_download.h"
#include "store/message_record.h"

/// All in which the two forums of fixed addresses differ.
struct FixedForum {
  std::string_view kind;
  std::string_view range_error;  // the hint for a last number below the first
  /// Without a scheme.
  std::string (*page_address)(const FixedDownload&, std::int32_t number);
  /// @return a page_code
  int (*check)(std::string_view page);
  /// @param step  of the import under way; where a failure happened. @throws Error
  MessageRecord (*parse)(std::string_view page, std::int32_t number, const Clock& clock, int& step);
  /// The message as the base takes it.
  StoredFields (*fields)(const MessageRecord& message);
  void (*import)(const FixedDownload&, std::string_view page, std::int32_t number);
  /// The last number on the forum; 0 when it cannot be found.
  std::int32_t (*look_up_last)(const FixedDownload&);
};

/// Null for a kind that is downloaded otherwise.
const FixedForum* FindFixedForum(std::string_view kind);

/// The page check of a forum that has since moved to addresses of forum.ini; no session asks for it.
/// @return a page_code
int truePgMoysha(std::string_view page);

/// Where the kdv forum lies: URL of forum.ini, or the built-in address. Host and path, no scheme.
std::string KdvAddress(const mdl_AZ::ForumIni& ini);
/// The rts-an forum's front page: the base's sub-host before the forum's own domain.
std::string RtsAnAddress(std::string_view sub_host);
