#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "make_archive/archive_messages.h"
#include "store/message_record.h"

/// The messages of one demonstration forum, the same for the same seed: plain text with CR LF, a subject each, one
/// e-mail to a nick, some numbers missing.
class ForumMessages {
 public:
  /// @param count   of messages at the start
  /// @param newest  when the last of them was written; the others lie before it
  ForumMessages(std::uint32_t seed, std::size_t count, OleDate newest);

  /// Adds one at the end. @param date  when it was written
  void Post(OleDate date);
  /// In the order of their numbers.
  const std::vector<MessageRecord>& All() const& { return messages_; }
  std::vector<MessageRecord> All() && { return std::move(messages_); }
  /// The highest number; 0 when there is none.
  std::int32_t Last() const { return messages_.empty() ? 0 : messages_.back().Код; }
  /// Null for a missing number. Valid until the next Post.
  const MessageRecord* Find(std::int32_t number) const&;
  const MessageRecord* Find(std::int32_t number) && = delete;
  /// None for a nick that wrote nothing.
  std::optional<std::string> EmailOf(const std::string& nick) const;

 private:
  MessageRecord Next();

  ArchiveMessages source_;
  std::vector<MessageRecord> messages_;
  std::map<std::string, std::string> emails_;  // by nick
};
