#include "explorer/ui/reading.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QScrollBar>
#include <QTest>

#include "small_tree.h"

namespace {

using testing::ElementsAre;

// The newest thread stands first: 4 with its reply 5, then 1 with the replies 2 (which 3 answers) and 6; 9 has no
// parent.
class ReadingKeys : public testing::Test {
 protected:
  ReadingKeys() {
    model_.SetTree(TreeOf({{1}, {2, 1}, {3, 2}, {4}, {5, 4}, {6, 1}, {9, 8}}));
    tree_.setModel(&model_);
    reading_ = new Reading(&tree_, &model_, &body_);
    tree_.resize(300, 200);
    body_.resize(300, 100);
    tree_.show();
    body_.show();
  }
  ~ReadingKeys() override { tree_.setModel(nullptr); }

  NodeId Node(int number) const { return model_.Tree().Find(NodeKind::kThreadMessage, number); }
  int Current() const { return model_.Tree().Number(model_.NodeOf(tree_.currentIndex())); }
  template <typename Step>
  std::vector<int> Numbers(int steps, Step step) {
    std::vector<int> numbers;
    while (steps-- > 0) {
      step();
      numbers.push_back(Current());
    }
    return numbers;
  }

  TreeModel model_;
  MessageTree tree_;
  MessageBody body_;
  Reading* reading_;
};

TEST_F(ReadingKeys, MessagesFollowEachOtherThroughClosedBranchesAndGroups) {
  EXPECT_THAT(Numbers(7, [this] { reading_->Next(); }), ElementsAre(4, 5, 1, 2, 3, 6, 9));
  EXPECT_TRUE(tree_.isExpanded(model_.IndexOf(Node(2)))) << "what is shown stands in an open branch";
  EXPECT_THAT(Numbers(7, [this] { reading_->Previous(); }), ElementsAre(6, 3, 2, 1, 5, 4, 4));
  reading_->GoTo(Node(3));
  EXPECT_THAT(Numbers(2, [this] { reading_->Parent(); }), ElementsAre(2, 1));
}

TEST_F(ReadingKeys, WithoutAnyMessageNothingHappens) {
  for (NodeTree tree : {NodeTree(), TreeOf({})}) {
    model_.SetTree(std::move(tree));
    reading_->Next();
    reading_->Previous();
    reading_->Parent();
    reading_->NextNew();
    EXPECT_FALSE(tree_.currentIndex().isValid());
  }
}

TEST_F(ReadingKeys, TheNextNewOneIsFoundFromAnywhereAndAroundTheEnd) {
  NodeTree nodes = TreeOf({{1}, {2, 1}, {3}}, user_settings::OpenThreads::kNo, OleDate{40000});
  nodes.MarkNewMessage(nodes.Find(NodeKind::kThreadMessage, 2));
  nodes.MarkNewMessage(nodes.Find(NodeKind::kThreadMessage, 3));
  model_.SetTree(std::move(nodes));
  EXPECT_THAT(Numbers(3, [this] { reading_->NextNew(); }), ElementsAre(3, 2, 3));
}

TEST_F(ReadingKeys, AChainTooDeepForAViewIsOpenedAsFarAsItGoes) {
  std::vector<ListRow> chain{{2, 1}};  // a broken thread
  while (chain.size() < 60'000) chain.push_back({chain.back().Код + 1, chain.back().Код});
  model_.SetTree(TreeOf(chain));
  reading_->Previous();
  EXPECT_TRUE(tree_.currentIndex().isValid());
}

TEST_F(ReadingKeys, SpaceScrollsTheTextAndGoesOnAtItsEnd) {
  reading_->GoTo(Node(4));
  body_.ShowText(QStringLiteral("строка\n").repeated(20), {});
  for (QWidget* focus : {static_cast<QWidget*>(&tree_), static_cast<QWidget*>(&body_)}) {
    QScrollBar* bar = body_.verticalScrollBar();
    bar->setValue(0);
    reading_->GoTo(Node(4));
    QTest::keyClick(focus, Qt::Key_Space);
    EXPECT_GT(bar->value(), 0);
    EXPECT_EQ(Current(), 4) << "there is more to read";
    bar->setValue(bar->maximum());
    QTest::keyClick(focus, Qt::Key_Space);
    EXPECT_EQ(Current(), 5);
    bar->setValue(0);
    QTest::keyClick(focus, Qt::Key_Space, Qt::ShiftModifier);
    EXPECT_EQ(Current(), 4);
  }
}

}  // namespace
