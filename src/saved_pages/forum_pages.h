#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/clock.h"
#include "download/stored_fields.h"
#include "store/message_record.h"

struct FixedForum;

/// The pages of one forum, whichever of the two download windows it belongs to.
class ForumPages {
 public:
  /// Does anybody read the pages of this forum?
  static bool Knows(std::string_view kind);

  /// @param clock  outlives this object
  /// @throws Error 5 for a code whose pages nobody reads
  ForumPages(std::string_view kind, const Clock& clock);

  /// @return a page_code
  int Check(std::string_view page) const;
  /// @param author_page  the page with the author's e-mail, where the forum has such; may be empty
  /// @return the message as the forum's importer has it before storing. @throws Error
  MessageRecord Parse(std::string_view page, std::int32_t number, std::string_view author_page) const;
  /// The message as the base takes it. Views into it.
  StoredFields FieldsToStore(const MessageRecord& message) const;
  /// Does the e-mail stand on a page of the author's own?
  bool HasAuthorPages() const;

 private:
  std::string kind_;
  const Clock& clock_;
  const FixedForum* fixed_;  // null: the addresses stand in forum.ini
};
