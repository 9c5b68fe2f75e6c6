#include "explorer/ui/tree_model.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QIcon>
#include <QPersistentModelIndex>

#include "base/ru_literal.h"
#include "small_tree.h"
#include "support/offscreen_app.h"

namespace {

const auto* const app = testing::AddGlobalTestEnvironment(new OffscreenApp);

/// A model under the eyes of Qt's own tester, which ends the program at the first broken promise.
struct Model : TreeModel {
  QAbstractItemModelTester tester{this, QAbstractItemModelTester::FailureReportingMode::Fatal};
  QModelIndex Of(NodeKind kind, int number = 0) const { return IndexOf(Tree().Find(kind, number)); }
  QModelIndex Thread(int number) const { return Of(NodeKind::kThreadMessage, number); }
  std::string Shown(const QModelIndex& parent = {}, std::size_t level = 0) const {
    std::string text;
    for (int row = 0; row < rowCount(parent); ++row) {
      const QModelIndex node = index(row, 0, parent);
      text += std::string(level, ' ') + node.data().toString().toStdString() + "\n" + Shown(node, level + 1);
    }
    return text;
  }
};

TEST(TreeModel, ShowsTheTreeItIsGiven) {
  Model model;
  EXPECT_EQ(model.Shown(), "");
  model.SetTree(TreeOf({{1, 0, "one", "Яна"_ru}, {2, 1, "two\r\n\tlines", "Ян"_ru}, {3, 0, "three"}}));
  EXPECT_EQ(model.Shown(),
            "По цепочке\n three\n one\n  two   lines\nОборванные цепочки\n"
            "По дате\n 2002 год\n  Март\n   15\n    one\n    two   lines\n    three\n"
            "По автору\n a\n  three\n Ян\n  two   lines\n Яна\n  one\n"
            "Результаты поиска\n");
  const QModelIndex start = model.Thread(1);
  EXPECT_EQ(start.data(Qt::AccessibleTextRole).toString(), QStringLiteral("one, есть новые сообщения"));
  EXPECT_FALSE(start.data(Qt::DecorationRole).value<QIcon>().isNull());
}

TEST(TreeModel, RemovesASubtreeAndKeepsEveryOtherIndex) {
  Model model;
  model.SetTree(TreeOf({{1, 0, "1"}, {2, 1, "2"}, {3, 2, "3"}, {4, 0, "4"}, {5, 0, "5"}}));
  const QPersistentModelIndex above = model.Thread(5), below = model.Thread(1), reply = model.Thread(3);
  model.RemoveNode(model.NodeOf(model.Thread(4)));
  EXPECT_EQ(above, model.Thread(5));
  EXPECT_EQ(below, model.Thread(1));
  EXPECT_EQ(below.row(), 1);
  model.RemoveNode(model.NodeOf(model.Thread(2)));
  EXPECT_FALSE(reply.isValid());
  EXPECT_EQ(model.Shown(model.Of(NodeKind::kThreads)), "5\n1\n");
  EXPECT_TRUE(model.Of(NodeKind::kDateMessage, 2).isValid()) << "other groupings wait for the next build";
}

TEST(TreeModel, ReplacesTheResultsOfTheLastSearch) {
  Model model;
  const auto results = [&] { return model.Shown().substr(model.Shown().find("Результаты")); };
  model.ClearResults();  // before any tree is built
  EXPECT_EQ(model.Shown(), "Результаты поиска\n");
  model.SetTree(TreeOf({{1, 0, "one"}}));
  const FoundMessage first[] = {{1, "one"}, {7, std::string("семь"_ru)}, {7, "again"}};
  model.ShowResults(first);
  EXPECT_EQ(results(), "Результаты поиска : 3 записей\n one\n семь\n");
  model.ShowResults({});
  EXPECT_EQ(results(), "Результаты поиска : 0 записей\n");
  model.ClearResults();
  EXPECT_EQ(results(), "Результаты поиска\n");
  EXPECT_EQ(model.rowCount(), 5);
}

}  // namespace
