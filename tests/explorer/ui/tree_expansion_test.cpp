#include "explorer/ui/tree_expansion.h"

#include <gtest/gtest.h>

#include <QTest>

#include "small_tree.h"

namespace {

using user_settings::OpenThreads;

class Expansion : public testing::Test, protected ShownTree {
 protected:
  Expansion() { new TreeExpansion(&view, &model); }
  void Expand(NodeKind kind, int number = 0) { view.expand(Of(kind, number)); }
  /// Rows that scrolling through the whole view would show.
  int RowsShown() const {
    int rows = 0;
    for (QModelIndex index = model.index(0, 0); index.isValid(); index = view.indexBelow(index)) ++rows;
    return rows;
  }
};

/// `threads` threads of three messages, one under the other.
std::vector<ListRow> Threads(int threads) {
  std::vector<ListRow> rows = Chain(3 * threads);
  for (std::size_t start = 0; start < rows.size(); start += 3) rows[start].Вответ = 0;
  return rows;
}

TEST_F(Expansion, AnOpenedThreadShowsEveryLevel) {
  model.SetTree(TreeOf(Threads(2)));
  EXPECT_EQ(RowsShown(), 5);
  Expand(NodeKind::kThreads);
  EXPECT_EQ(RowsShown(), 5 + 2);
  Expand(NodeKind::kThreadMessage, 1);
  EXPECT_EQ(RowsShown(), 5 + 2 + 2);
}

TEST_F(Expansion, ThreadsToBeOpenStandOpenWhenTheyComeIntoSightAndAnotherTreeStartsAnew) {
  for (const int threads : {2, 500, 3}) {
    model.SetTree(TreeOf(Threads(threads), OpenThreads::kAll));
    EXPECT_EQ(RowsShown(), 5);
    QCoreApplication::processEvents();
    Expand(NodeKind::kThreads);
    EXPECT_EQ(RowsShown(), 5 + 3 * threads);
  }
}

TEST_F(Expansion, WhatTheUserClosesStaysClosed) {
  model.SetTree(TreeOf(Threads(2), OpenThreads::kAll));
  Expand(NodeKind::kThreads);
  view.collapse(Of(NodeKind::kThreadMessage, 4));
  view.collapse(Of(NodeKind::kThreads));
  Expand(NodeKind::kThreads);
  EXPECT_EQ(RowsShown(), 5 + 1 + 3);
}

TEST_F(Expansion, TheAsteriskOpensEverythingBelow) {
  model.SetTree(TreeOf(Threads(2)));
  view.setCurrentIndex(Of(NodeKind::kDates));
  QTest::keyClick(&view, Qt::Key_Asterisk);
  EXPECT_EQ(RowsShown(), 5 + 3 + 6);
}

TEST_F(Expansion, AChainOfRepliesOfAnyLengthCanBeOpened) {
  model.SetTree(TreeOf(Chain(100'000), OpenThreads::kAll));
  Expand(NodeKind::kThreads);
  EXPECT_GT(RowsShown(), 900);
  view.setCurrentIndex(Of(NodeKind::kThreads));
  QTest::keyClick(&view, Qt::Key_Asterisk);
  EXPECT_GT(RowsShown(), 900);
}

}  // namespace
