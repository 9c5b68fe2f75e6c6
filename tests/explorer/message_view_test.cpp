#include "explorer/message_view.h"

#include <gtest/gtest.h>

#include "base/cat.h"
#include "base/cp1251.h"
#include "base/ru_literal.h"

namespace {

/// What each box shows, the status and the number, a line each, in UTF-8; "-" where the window keeps what it has.
std::string Shown(const MessageView& view) {
  return cp1251::ToUtf8(Cat(view.txtData, "\n", view.txtAuthor, "\n", view.txtSubj, "\n", view.txtAuthorMail, "\n",
                            view.body, "\n", view.status.value_or("-"), "\n",
                            view.message ? Cat(*view.message) : std::string("-")));
}

TEST(MessageView, FillsTheBoxesWithWhatAMessageHas) {
  MessageRecord message;
  message.Код = 1234;
  message.Вответ = 1200;
  message.Дата = ole_date::FromCivil({.year = 2001, .month = 7, .day = 5});
  message.Тема = "Курс"_ru;
  message.Автор = "Иван"_ru;
  message.АвторMail = "i@x.ru";
  message.Текст = "a<br>b<p>c<BR>d";
  EXPECT_EQ(Shown(ViewOfMessage(message)),
            "Дата : четверг, 05 Июль 2001\nАвтор : Иван\nТема : Курс\nE-Mail : i@x.ru\na\r\nb\r\n\r\nc<BR>d\n"
            "Код сообщения: 1234 [ответ на 1200]\n1234");
  for (const std::int32_t answered : {0, -1}) {
    MessageRecord bare;
    bare.Код = 7;
    bare.Вответ = answered;
    bare.АвторMail = "   ";
    EXPECT_EQ(Shown(ViewOfMessage(bare)), "Дата : \nАвтор : \nТема : \n\n\nКод сообщения: 7\n7");
  }
  EXPECT_EQ(Shown(ViewOfMissingMessage(7)), "\n\n\n\nNo Text\nКод сообщения: 7\n7");
}

TEST(MessageView, ExplainsEveryKindOfGroup) {
  const struct {
    NodeKind kind;
    std::string status;
  } cases[] = {
      {NodeKind::kBroken,
       "Здесь отображаются все сообщения, которые являются ответами на сообщения, которые отсутствуют в базе. "
       "Оборванных цепочек : 2"},
      {NodeKind::kThreads, "Здесь отображаются сообщения, отсортированные по темам (цепочкам). Загружено цепочек : 2"},
      {NodeKind::kResults, "Здесь отображаются результаты поиска по архиву"},
      {NodeKind::kDates, "Здесь отображаются сообщения, отсортированные по дате"},
      {NodeKind::kAuthors, "Здесь отображаются сообщения, отсортированные по авторам. Авторов : 2"},
      {NodeKind::kAuthor, "Автор : Иван. Сообщений : 2"},
      {NodeKind::kYear, "-"},
      {NodeKind::kMonth, "-"},
      {NodeKind::kDay, "-"},
  };
  for (const auto& c : cases) {
    NodeTree tree;
    const NodeId group = tree.Add(kRootNode, Placement::kLastChild, c.kind, 0, "Иван"_ru);
    for (const int number : {1, 2}) tree.Add(group, Placement::kLastChild, NodeKind::kAuthorMessage, number, "");
    EXPECT_EQ(Shown(ViewOfGroup(tree, group)), "\n\n\n\nNo Text\n" + c.status + "\n-");
  }
}

}  // namespace
