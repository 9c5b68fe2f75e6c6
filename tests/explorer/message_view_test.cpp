#include "explorer/message_view.h"

#include <gtest/gtest.h>

#include "base/cp1251.h"
#include "base/ru_literal.h"

namespace {

using cp1251::ToUtf8;

TEST(MessageView, FillsEveryBoxOfAMessage) {
  MessageRecord message;
  message.Код = 1234;
  message.Вответ = 1200;
  message.Дата = ole_date::FromCivil({.year = 2001, .month = 7, .day = 5});
  message.Тема = "Курс"_ru;
  message.Автор = "Иван"_ru;
  message.АвторMail = "i@x.ru";
  message.Текст = "a<br>b<p>c<BR>d";
  const MessageView view = ViewOfMessage(message);
  EXPECT_EQ(ToUtf8(view.txtData), "Дата : четверг, 05 Июль 2001");
  EXPECT_EQ(ToUtf8(view.txtAuthor), "Автор : Иван");
  EXPECT_EQ(ToUtf8(view.txtSubj), "Тема : Курс");
  EXPECT_EQ(ToUtf8(view.txtAuthorMail), "E-Mail : i@x.ru");
  EXPECT_EQ(view.body, "a\r\nb\r\n\r\nc<BR>d");
  EXPECT_EQ(ToUtf8(view.status.value()), "Код сообщения: 1234 [ответ на 1200]");
  EXPECT_EQ(view.message, 1234);
}

TEST(MessageView, LeavesOutWhatAMessageLacks) {
  for (const std::int32_t answered : {0, -1}) {
    MessageRecord message;
    message.Код = 7;
    message.Вответ = answered;
    message.АвторMail = "   ";
    const MessageView view = ViewOfMessage(message);
    EXPECT_EQ(ToUtf8(view.txtData), "Дата : ");
    EXPECT_EQ(ToUtf8(view.txtAuthor), "Автор : ");
    EXPECT_EQ(ToUtf8(view.txtSubj), "Тема : ");
    EXPECT_EQ(view.txtAuthorMail, "");
    EXPECT_EQ(view.body, "");
    EXPECT_EQ(ToUtf8(view.status.value()), "Код сообщения: 7");
  }
}

TEST(MessageView, AMessageGoneFromTheBaseLeavesItsNumber) {
  const MessageView view = ViewOfMissingMessage(7);
  EXPECT_EQ(view.txtData + view.txtAuthor + view.txtSubj + view.txtAuthorMail, "");
  EXPECT_EQ(view.body, "No Text");
  EXPECT_EQ(ToUtf8(view.status.value()), "Код сообщения: 7");
  EXPECT_EQ(view.message, 7);
}

TEST(MessageView, ExplainsEveryKindOfGroup) {
  const struct {
    NodeKind kind;
    std::string_view text;
    std::optional<std::string> status;
  } cases[] = {
      {NodeKind::kBroken, "",
       "Здесь отображаются все сообщения, которые являются ответами на сообщения, которые отсутствуют в базе. "
       "Оборванных "
       "цепочек : 2"},
      {NodeKind::kThreads, "",
       "Здесь отображаются сообщения, отсортированные по темам (цепочкам). Загружено цепочек : 2"},
      {NodeKind::kResults, "", "Здесь отображаются результаты поиска по архиву"},
      {NodeKind::kDates, "", "Здесь отображаются сообщения, отсортированные по дате"},
      {NodeKind::kAuthors, "", "Здесь отображаются сообщения, отсортированные по авторам. Авторов : 2"},
      {NodeKind::kAuthor, "Иван"_ru, "Автор : Иван. Сообщений : 2"},
      {NodeKind::kYear, "", std::nullopt},
      {NodeKind::kMonth, "", std::nullopt},
      {NodeKind::kDay, "", std::nullopt},
  };
  for (const auto& c : cases) {
    NodeTree tree;
    const NodeId group = tree.Add(kRootNode, Placement::kLastChild, c.kind, 0, c.text);
    for (const int number : {1, 2}) tree.Add(group, Placement::kLastChild, NodeKind::kAuthorMessage, number, "");
    const MessageView view = ViewOfGroup(tree, group);
    EXPECT_EQ(view.status ? std::optional(ToUtf8(*view.status)) : std::nullopt, c.status);
    EXPECT_EQ(view.body, "No Text");
    EXPECT_EQ(view.txtData + view.txtAuthor + view.txtSubj + view.txtAuthorMail, "");
    EXPECT_EQ(view.message, std::nullopt);
  }
}

}  // namespace
