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
class ReadingKeys : public testing::Test, protected ShownTree {
 protected:
  ReadingKeys() {
    model.SetTree(TreeOf({{1}, {2, 1}, {3, 2}, {4}, {5, 4}, {6, 1}, {9, 8}}));
    body_.resize(300, 100);
    body_.show();
  }

  NodeId Node(int number) const { return model.Tree().Find(NodeKind::kThreadMessage, number); }
  int Current() const { return model.Tree().Number(model.NodeOf(view.currentIndex())); }
  std::vector<int> Numbers(int steps, void (Reading::*step)()) {
    std::vector<int> numbers;
    while (steps-- > 0) {
      (reading_->*step)();
      numbers.push_back(Current());
    }
    return numbers;
  }

  MessageBody body_;
  Reading* reading_ = new Reading(&view, &model, &body_);
};

TEST_F(ReadingKeys, MessagesFollowEachOtherThroughClosedBranchesAndGroups) {
  EXPECT_THAT(Numbers(7, &Reading::Next), ElementsAre(4, 5, 1, 2, 3, 6, 9));
  EXPECT_TRUE(view.isExpanded(model.IndexOf(Node(2)))) << "what is shown stands in an open branch";
  EXPECT_THAT(Numbers(7, &Reading::Previous), ElementsAre(6, 3, 2, 1, 5, 4, 4));
  reading_->GoTo(Node(3));
  EXPECT_THAT(Numbers(2, &Reading::Parent), ElementsAre(2, 1));
}

TEST_F(ReadingKeys, WithoutAnyMessageNothingHappens) {
  for (NodeTree tree : {NodeTree(), TreeOf({})}) {
    model.SetTree(std::move(tree));
    for (const auto step : {&Reading::Next, &Reading::Previous, &Reading::Parent, &Reading::NextNew}) {
      (reading_->*step)();
      EXPECT_FALSE(view.currentIndex().isValid());
    }
  }
}

TEST_F(ReadingKeys, TheNextNewOneIsFoundFromAnywhereAndAroundTheEnd) {
  NodeTree nodes = TreeOf({{1}, {2, 1}, {3}}, user_settings::OpenThreads::kNo, OleDate{40000});
  for (const int number : {2, 3}) nodes.MarkNewMessage(nodes.Find(NodeKind::kThreadMessage, number));
  model.SetTree(std::move(nodes));
  EXPECT_THAT(Numbers(3, &Reading::NextNew), ElementsAre(3, 2, 3));
}

TEST_F(ReadingKeys, AChainTooDeepForAViewIsOpenedAsFarAsItGoes) {
  std::vector<ListRow> broken = Chain(60'000);
  broken.front().Вответ = 100'000;
  model.SetTree(TreeOf(std::move(broken)));
  reading_->Previous();
  EXPECT_TRUE(view.currentIndex().isValid());
}

TEST_F(ReadingKeys, SpaceScrollsTheTextAndGoesOnAtItsEnd) {
  body_.ShowText(QStringLiteral("строка\n").repeated(20), {});
  QScrollBar* bar = body_.verticalScrollBar();
  for (QWidget* focus : {static_cast<QWidget*>(&view), static_cast<QWidget*>(&body_)}) {
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
