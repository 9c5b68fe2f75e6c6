#include "explorer/ui/tree_expansion.h"

#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTest>
#include <QTreeView>

#include "small_tree.h"

namespace {

using user_settings::OpenThreads;

struct Window {
  TreeModel model;
  QTreeView view;
  TreeExpansion* expansion;

  Window() {
    view.setUniformRowHeights(true);
    view.setModel(&model);
    expansion = new TreeExpansion(&view, &model);
    view.resize(400, 300);
    view.show();
  }
  ~Window() { view.setModel(nullptr); }
  QModelIndex Of(NodeKind kind, int number = 0) const { return model.IndexOf(model.Tree().Find(kind, number)); }
  bool IsOpen(int number) const { return view.isExpanded(Of(NodeKind::kThreadMessage, number)); }
  /// Rows that scrolling through the whole view would show.
  int RowsShown() {
    int rows = 0;
    for (QModelIndex index = model.index(0, 0); index.isValid(); index = view.indexBelow(index)) ++rows;
    return rows;
  }
};

/// `threads` threads of three messages, one under the other.
std::vector<ListRow> Threads(int threads) {
  std::vector<ListRow> rows;
  for (int i = 0; i < threads; ++i)
    for (int level = 0; level < 3; ++level) rows.push_back({3 * i + level + 1, level == 0 ? 0 : 3 * i + level});
  return rows;
}

TEST(TreeExpansion, AnOpenedThreadShowsEveryLevel) {
  Window window;
  window.model.SetTree(TreeOf(Threads(2)));
  EXPECT_EQ(window.RowsShown(), 5);
  window.view.expand(window.Of(NodeKind::kThreads));
  EXPECT_EQ(window.RowsShown(), 5 + 2);
  window.view.expand(window.Of(NodeKind::kThreadMessage, 1));
  EXPECT_EQ(window.RowsShown(), 5 + 2 + 2);
}

TEST(TreeExpansion, ThreadsToBeOpenStandOpenWhenTheyComeIntoSight) {
  for (const int threads : {2, 500}) {
    Window window;
    window.model.SetTree(TreeOf(Threads(threads), OpenThreads::kAll));
    EXPECT_EQ(window.RowsShown(), 5);
    QTest::qWait(0);
    window.view.expand(window.Of(NodeKind::kThreads));
    EXPECT_EQ(window.RowsShown(), 5 + 3 * threads);
  }
}

TEST(TreeExpansion, WhatTheUserClosesStaysClosed) {
  Window window;
  window.model.SetTree(TreeOf(Threads(2), OpenThreads::kAll));
  window.view.expand(window.Of(NodeKind::kThreads));
  window.view.collapse(window.Of(NodeKind::kThreadMessage, 2));
  window.view.collapse(window.Of(NodeKind::kThreads));
  window.view.expand(window.Of(NodeKind::kThreads));
  EXPECT_FALSE(window.IsOpen(2));
  EXPECT_TRUE(window.IsOpen(1));
}

TEST(TreeExpansion, AnotherTreeStartsAnew) {
  Window window;
  window.model.SetTree(TreeOf(Threads(2), OpenThreads::kAll));
  window.view.expand(window.Of(NodeKind::kThreads));
  window.model.SetTree(TreeOf(Threads(3)));
  EXPECT_EQ(window.RowsShown(), 5);
}

TEST(TreeExpansion, TheAsteriskOpensEverythingBelow) {
  Window window;
  window.model.SetTree(TreeOf(Threads(2)));
  window.view.setCurrentIndex(window.Of(NodeKind::kDates));
  QTest::keyClick(&window.view, Qt::Key_Asterisk);
  EXPECT_EQ(window.RowsShown(), 5 + 3 + 6);
  EXPECT_FALSE(window.view.isExpanded(window.Of(NodeKind::kThreads)));
}

TEST(TreeExpansion, AChainOfRepliesOfAnyLengthCanBeOpened) {
  Window window;
  std::vector<ListRow> chain;
  for (int i = 1; i <= 100'000; ++i) chain.push_back({i, i - 1});
  window.model.SetTree(TreeOf(std::move(chain), OpenThreads::kAll));
  window.view.expand(window.Of(NodeKind::kThreads));
  EXPECT_GT(window.RowsShown(), 900);
  window.view.setCurrentIndex(window.Of(NodeKind::kThreads));
  QTest::keyClick(&window.view, Qt::Key_Asterisk);
  EXPECT_GT(window.RowsShown(), 900);
}

}  // namespace
