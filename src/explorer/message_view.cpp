#include "explorer/message_view.h"

#include "base/cat.h"
#include "base/ru_literal.h"
#include "text/dates.h"
#include "text/strings.h"

namespace {

constexpr std::string_view kNoBody = "No Text";

std::string NumberStatus(std::int32_t number) { return Cat("Код сообщения: "_ru, number); }

std::optional<std::string> Explanation(const NodeTree& tree, NodeId node) {
  const std::size_t children = tree.ChildCount(node);
  switch (tree.Kind(node)) {
    case NodeKind::kBroken:
      return Cat(
          "Здесь отображаются все сообщения, которые являются ответами на сообщения, которые отсутствуют в базе. Оборванных цепочек : "_ru,
          children);
    case NodeKind::kThreads:
      return Cat("Здесь отображаются сообщения, отсортированные по темам (цепочкам). Загружено цепочек : "_ru,
                 children);
    case NodeKind::kResults: return std::string("Здесь отображаются результаты поиска по архиву"_ru);
    case NodeKind::kDates: return std::string("Здесь отображаются сообщения, отсортированные по дате"_ru);
    case NodeKind::kAuthors:
      return Cat("Здесь отображаются сообщения, отсортированные по авторам. Авторов : "_ru, children);
    case NodeKind::kAuthor: return Cat("Автор : "_ru, tree.Text(node), ". Сообщений : "_ru, children);
    default: return std::nullopt;
  }
}

}  // namespace

MessageView ViewOfMessage(const MessageRecord& message) {
  MessageView view;
  view.txtData = Cat("Дата : "_ru, text::FormatDate(message.Дата, "DDDD, DD mmmm YYyy"));
  view.txtAuthor = Cat("Автор : "_ru, message.Автор);
  view.txtSubj = Cat("Тема : "_ru, message.Тема);
  if (!text::Trim(message.АвторMail).empty()) view.txtAuthorMail = Cat("E-Mail : ", message.АвторMail);
  view.body = LineMarksToBreaks(message.Текст);
  view.status = NumberStatus(message.Код);
  if (message.Вответ > 0) *view.status += Cat(" [ответ на "_ru, message.Вответ, "]");
  view.message = message.Код;
  return view;
}

MessageView ViewOfMissingMessage(std::int32_t number) {
  MessageView view;
  view.body = kNoBody;
  view.status = NumberStatus(number);
  view.message = number;
  return view;
}

MessageView ViewOfGroup(const NodeTree& tree, NodeId node) {
  MessageView view;
  view.body = kNoBody;
  view.status = Explanation(tree, node);
  return view;
}

std::string LineMarksToBreaks(std::string_view text) {
  return text::ReplaceAll(text::ReplaceAll(text, "<br>", "\r\n"), "<p>", "\r\n\r\n");
}
