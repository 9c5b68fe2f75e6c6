#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <mutex>
#include <span>
#include <string>
#include <string_view>

#include "base/clock.h"
#include "demo_forum/forum_messages.h"
#include "demo_forum/web_answer.h"

/// Where the pages of one forum lie, below the folder of its code.
struct ForumAddress {
  std::string_view kind;
  std::string_view before_number, behind_number;
};

/// Six forums, each in the folder of its code: "/kdv/messages/1.html".
class DemoSite {
 public:
  static std::span<const ForumAddress> Forums();

  /// @param messages       of each forum at the start
  /// @param seconds_apart  between new messages, which come as time goes on; 0 = none come
  /// @param clock          outlives this object; the newest message at the start is of this moment
  DemoSite(std::size_t messages, std::int32_t seconds_apart, const Clock& clock);

  /// What a browser gets that asks for this path and query. May be called by several threads at once.
  WebAnswer Get(std::string_view target);
  /// The messages of a forum so far. May be called while other threads ask for pages and the forum grows.
  ForumMessages Messages(std::string_view kind) const;

 private:
  void Grow();
  WebAnswer ForumPage(const ForumAddress& forum, std::string_view path);
  WebAnswer AuthorPage(std::string_view path);
  static WebAnswer TitlePage();

  const Clock& clock_;
  const OleDate start_;
  const std::int32_t seconds_apart_;
  mutable std::mutex mutex_;
  std::size_t posted_ = 0;  // to each forum since the start
  std::map<std::string, ForumMessages, std::less<>> forums_;
};
