#include "explorer/ui/tree_model.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QIcon>
#include <QPersistentModelIndex>
#include <QSignalSpy>

#include "base/ru_literal.h"
#include "small_tree.h"
#include "support/offscreen_app.h"
#include "ui/text.h"

namespace {

const auto* const app = testing::AddGlobalTestEnvironment(new OffscreenApp);

std::string Shown(const TreeModel& model, const QModelIndex& parent = {}, int level = 0) {
  std::string text;
  for (int row = 0; row < model.rowCount(parent); ++row) {
    const QModelIndex index = model.index(row, 0, parent);
    text += std::string(static_cast<std::size_t>(level), ' ') + index.data().toString().toStdString() + "\n" +
            Shown(model, index, level + 1);
  }
  return text;
}

/// A model under the eyes of Qt's own tester, which ends the program at the first broken promise.
struct Model : TreeModel {
  QAbstractItemModelTester tester{this, QAbstractItemModelTester::FailureReportingMode::Fatal};
  QModelIndex Of(NodeKind kind, int number = 0) const { return IndexOf(Tree().Find(kind, number)); }
};

TEST(TreeModel, ShowsTheTreeItIsGiven) {
  Model model;
  EXPECT_EQ(Shown(model), "");
  model.SetTree(TreeOf({{1, 0, "one", "Яна"_ru}, {2, 1, "two\r\n\tlines", "Ян"_ru}, {3, 0, "three"}}));
  EXPECT_EQ(Shown(model),
            "По цепочке\n three\n one\n  two   lines\nОборванные цепочки\n"
            "По дате\n 2002 год\n  Март\n   15\n    one\n    two   lines\n    three\n"
            "По автору\n a\n  three\n Ян\n  two   lines\n Яна\n  one\n"
            "Результаты поиска\n");
  const QModelIndex start = model.Of(NodeKind::kThreadMessage, 1);
  EXPECT_EQ(model.NodeOf(start), model.Tree().Find(NodeKind::kThreadMessage, 1));
  EXPECT_EQ(start.data(Qt::AccessibleTextRole).toString(), QStringLiteral("one, есть новые сообщения"));
  EXPECT_FALSE(start.data(Qt::DecorationRole).value<QIcon>().isNull());
}

TEST(TreeModel, RemovesASubtreeAndKeepsEveryOtherIndex) {
  Model model;
  model.SetTree(TreeOf({{1, 0, "1"}, {2, 1, "2"}, {3, 2, "3"}, {4, 0, "4"}, {5, 0, "5"}}));
  const QPersistentModelIndex above = model.Of(NodeKind::kThreadMessage, 5);
  const QPersistentModelIndex below = model.Of(NodeKind::kThreadMessage, 1);
  const QPersistentModelIndex reply = model.Of(NodeKind::kThreadMessage, 3);
  model.RemoveNode(model.Tree().Find(NodeKind::kThreadMessage, 4));
  EXPECT_EQ(above, model.Of(NodeKind::kThreadMessage, 5));
  EXPECT_EQ(below, model.Of(NodeKind::kThreadMessage, 1));
  EXPECT_EQ(below.row(), 1);
  model.RemoveNode(model.Tree().Find(NodeKind::kThreadMessage, 2));
  EXPECT_FALSE(reply.isValid());
  EXPECT_EQ(model.rowCount(below), 0);
  EXPECT_NE(model.Tree().Find(NodeKind::kDateMessage, 2), kNoNode) << "other groupings wait for the next build";
}

TEST(TreeModel, ReplacesTheResultsOfTheLastSearch) {
  Model model;
  model.ClearResults();  // before any tree is built
  EXPECT_EQ(Shown(model), "Результаты поиска\n");
  model.SetTree(TreeOf({{1, 0, "one"}}));
  const FoundMessage first[] = {{1, "one"}, {7, std::string("семь"_ru)}, {7, "again"}};
  model.ShowResults(first);
  const QModelIndex results = model.Of(NodeKind::kResults);
  EXPECT_EQ(Shown(model, results), "one\nсемь\n");
  EXPECT_EQ(results.data().toString(), QStringLiteral("Результаты поиска : 3 записей"));
  EXPECT_EQ(results.row(), 4);
  model.ShowResults({});
  EXPECT_EQ(Shown(model, model.Of(NodeKind::kResults)), "");
  EXPECT_EQ(model.Of(NodeKind::kResults).data().toString(), QStringLiteral("Результаты поиска : 0 записей"));
  model.ClearResults();
  EXPECT_EQ(model.Of(NodeKind::kResults).data().toString(), QStringLiteral("Результаты поиска"));
  EXPECT_EQ(model.rowCount(), 5);
  EXPECT_EQ(model.Of(NodeKind::kThreadMessage, 1).data().toString(), QStringLiteral("one"));
}

}  // namespace
