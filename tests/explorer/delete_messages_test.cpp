#include "explorer/delete_messages.h"

#include <gtest/gtest.h>

#include "base/cat.h"
#include "base/cp1251.h"
#include "base/error.h"
#include "tree_text.h"

namespace {

/// A tree, a base and a user: what happens is written down in UTF-8.
struct Stage : MessageEdits, DeletionView {
  NodeTree tree;
  NodeId threads = tree.Add(kRootNode, Placement::kLastChild, NodeKind::kThreads, 0, "");
  bool ok = true, base_fails = false;
  std::string told;

  void Add(std::int32_t number, std::int32_t answered) {
    tree.Add(answered == 0 ? threads : Message(answered), Placement::kLastChild, NodeKind::kThreadMessage, number, "");
  }
  NodeId Message(std::int32_t number) const { return tree.Find(NodeKind::kThreadMessage, number); }

  void Delete(std::span<const std::int32_t> numbers) override {
    if (base_fails) throw FileError(error_number::kReadOnly, "read-only");
    told += "[deleted";
    for (const std::int32_t number : numbers) told += Cat(" ", number);
    told += "]";
  }
  bool AskOkCancel(std::string_view title, std::string_view text) override {
    told += Cat("[", cp1251::ToUtf8(title), "? ", cp1251::ToUtf8(text), "]");
    return ok;
  }
  void RemoveNode(NodeId node) override {
    told += Cat("[removed ", tree.Number(node), "]");
    tree.Remove(node);
  }
  void SetStatus(std::string_view text) override { told += Cat("[", cp1251::ToUtf8(text), "]"); }
};

/// Thread 1 with replies 2, 3 and 4 to 2, 5; thread 6.
Stage Threads() {
  Stage stage;
  for (const auto& [number, answered] : {std::pair{1, 0}, {2, 1}, {3, 2}, {4, 2}, {5, 1}, {6, 0}})
    stage.Add(number, answered);
  return stage;
}

TEST(DeleteMessages, AsksDeletesRepliesBeforeWhatTheyAnswerAndTellsTheRest) {
  const std::string title = "[Удаление сообщений из базы? ", alone = "Удалить это сообщение ?]",
                    all = title + "Удалить это сообщение вместе со всеми ответами на него ?]",
                    breaks =
                        "На это сообщение есть ответы.\r\nПосле удаления этого сообщения они появятся в ветке "
                        "'Оборванные цепочки'.\r\n";
  const struct {
    decltype(&DeleteMessage) action;
    std::int32_t number;
    std::string told, tree;
  } cases[] = {
      {DeleteMessage, 2,
       title + breaks + alone +
           "[deleted 2][removed 2][Сообщение удалено. Все ответы на него появятся в ветке 'Оборванные цепочки']",
       "  C0000001\n    C0000005\n  C0000006\n"},
      {DeleteMessage, 6, title + alone + "[deleted 6][removed 6][Сообщение удалено.]",
       "  C0000001\n    C0000002\n      C0000003\n      C0000004\n    C0000005\n"},
      {DeleteWithReplies, 1, all + "[deleted 3 4 2 5 1][removed 1][Удалено 5 сообщений]", "  C0000006\n"},
      {DeleteWithReplies, 2, all + "[deleted 3 4 2][removed 2][Удалено 3 сообщений]",
       "  C0000001\n    C0000005\n  C0000006\n"},
  };
  for (const auto& c : cases) {
    Stage stage = Threads();
    c.action(stage.tree, stage.Message(c.number), stage, stage);
    EXPECT_EQ(stage.told, c.told);
    EXPECT_EQ(TreeText(stage.tree), "Цепочка\n" + c.tree);
  }
}

TEST(DeleteMessages, CancelAndAFailingBaseLeaveEverythingAsItWas) {
  for (const auto& action : {DeleteMessage, DeleteWithReplies}) {
    Stage stage = Threads();
    const std::string before = TreeText(stage.tree);
    stage.ok = false;
    action(stage.tree, stage.Message(1), stage, stage);
    stage.ok = stage.base_fails = true;
    EXPECT_THROW(action(stage.tree, stage.Message(1), stage, stage), FileError);
    EXPECT_EQ(TreeText(stage.tree), before);
    EXPECT_EQ(stage.told.find("[deleted"), std::string::npos);
    EXPECT_EQ(stage.told.find("[removed"), std::string::npos);
  }
}

TEST(DeleteMessages, AThreadMayBeAsDeepAsItLikes) {
  Stage stage;
  constexpr std::int32_t kDepth = 1'000'000;
  for (std::int32_t number = 1; number <= kDepth; ++number) stage.Add(number, number - 1);
  DeleteWithReplies(stage.tree, stage.Message(1), stage, stage);
  EXPECT_TRUE(stage.told.ends_with("[Удалено 1000000 сообщений]"));
  EXPECT_EQ(TreeText(stage.tree), "Цепочка\n");
}

}  // namespace
