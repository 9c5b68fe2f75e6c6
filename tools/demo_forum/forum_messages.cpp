#include "demo_forum/forum_messages.h"

#include <algorithm>
#include <utility>

#include "base/ru_literal.h"
#include "text/strings.h"

namespace {

// What archives hold as markup, a user types as text.
constexpr text::Replacement kTyped[] = {
    {"<br>", "\r\n"}, {"<p>", "\r\n\r\n"}, {"<b>", ""}, {"</b>", ""}, {"&quot;", "\""}};

std::string Typed(std::string text) {
  text = text::ReplaceAll(std::move(text), kTyped, text::LetterCase::kExact);
  const std::size_t first = text.find_first_not_of(" \r\n"), last = text.find_last_not_of(" \r\n");
  return first == std::string::npos ? std::string() : text.substr(first, last - first + 1);
}

}  // namespace

ForumMessages::ForumMessages(std::uint32_t seed, std::size_t count, OleDate newest) : source_(seed) {
  while (messages_.size() < count) messages_.push_back(Next());
  if (messages_.empty()) return;
  constexpr double kPace = 6;  // about an hour between two messages: some hundred of them fill a few weeks
  const double last = messages_.back().Дата->days;
  for (MessageRecord& message : messages_) message.Дата = OleDate{newest.days - (last - message.Дата->days) * kPace};
}

void ForumMessages::Post(OleDate date) {
  messages_.push_back(Next());
  messages_.back().Дата = date;
}

MessageRecord ForumMessages::Next() {
  MessageRecord message = source_.Next();
  message.Тема = Typed(std::move(message.Тема));
  if (message.Тема.empty()) message.Тема = "Без темы"_ru;
  if (message.Автор.empty()) message.Автор = "Гость"_ru;
  message.Текст = Typed(std::move(message.Текст));
  message.АвторMail = emails_.emplace(message.Автор, message.АвторMail).first->second;
  return message;
}

const MessageRecord* ForumMessages::Find(std::int32_t number) const& {
  const auto found = std::lower_bound(messages_.begin(), messages_.end(), number,
                                      [](const MessageRecord& message, std::int32_t n) { return message.Код < n; });
  return found == messages_.end() || found->Код != number ? nullptr : &*found;
}

std::optional<std::string> ForumMessages::EmailOf(const std::string& nick) const {
  const auto found = emails_.find(nick);
  if (found == emails_.end()) return std::nullopt;
  return found->second;
}
