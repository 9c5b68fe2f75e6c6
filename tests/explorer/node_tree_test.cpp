#include "explorer/node_tree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <utility>
#include <vector>

#include "base/error.h"
#include "base/ru_literal.h"
#include "tree_text.h"

namespace {

using testing::ElementsAre;

NodeId AddTop(NodeTree& tree, NodeKind kind) { return tree.Add(kRootNode, Placement::kLastChild, kind, 0, ""); }

NodeId AddMessage(NodeTree& tree, NodeId parent, Placement placement, std::int32_t number) {
  return tree.Add(parent, placement, NodeKind::kThreadMessage, number, "");
}

NodeId AddAuthor(NodeTree& tree, NodeId parent, std::string_view author) {
  return tree.Add(parent, Placement::kLastChild, NodeKind::kAuthor, 0, author);
}

std::vector<std::string> ChildTexts(const NodeTree& tree, NodeId node) {
  std::vector<std::string> texts;
  for (std::size_t row = 0; row < tree.ChildCount(node); ++row)
    texts.push_back(cp1251::ToUtf8(tree.Text(tree.Child(node, row))));
  return texts;
}

int ErrorNumberOf(const auto& action) {
  try {
    action();
  } catch (const Error& error) {
    return error.number();
  }
  return 0;
}

TEST(NodeTree, RefusesASecondNodeOfOneKeyAndAnUnknownRelative) {
  NodeTree tree;
  const NodeId threads = AddTop(tree, NodeKind::kThreads);
  AddMessage(tree, threads, Placement::kLastChild, 1);
  AddAuthor(tree, threads, "Ivan");
  EXPECT_EQ(ErrorNumberOf([&] { AddMessage(tree, threads, Placement::kLastChild, 1); }), error_number::kNodeExists);
  EXPECT_EQ(ErrorNumberOf([&] { AddAuthor(tree, threads, "Ivan"); }), error_number::kNodeExists);
  EXPECT_EQ(ErrorNumberOf([&] { AddMessage(tree, kNoNode, Placement::kLastChild, 2); }), error_number::kNoSuchNode);
  AddAuthor(tree, threads, "IVAN");  // letter case tells keys apart
  const NodeId dated = tree.Add(threads, Placement::kLastChild, NodeKind::kDateMessage, 1, "");
  EXPECT_EQ(ErrorNumberOf([&] { AddMessage(tree, dated, Placement::kLastChild, 3); }), error_number::kNoSuchNode);
  EXPECT_EQ(TreeText(tree), "Цепочка\n  C0000001\n  WIvan\n  WIVAN\n  D0000001\n");
}

TEST(NodeTree, AKeyIsFreeAgainOnceItsNodeIsGone) {
  NodeTree tree;
  const NodeId threads = AddTop(tree, NodeKind::kThreads);
  const NodeId start = AddMessage(tree, threads, Placement::kLastChild, 1);
  AddMessage(tree, start, Placement::kLastChild, 2);
  tree.Remove(start);
  EXPECT_EQ(tree.Find(NodeKind::kThreadMessage, 2), kNoNode);
  AddMessage(tree, threads, Placement::kLastChild, 2);
  EXPECT_EQ(TreeText(tree), "Цепочка\n  C0000002\n");
}

TEST(NodeTree, KeepsSortedChildrenSorted) {
  NodeTree tree;
  const NodeId authors = AddTop(tree, NodeKind::kAuthors);
  for (const auto author : {"яна"_ru, "Ёж"_ru, "zed"_ru, "Ель"_ru, "1st"_ru, "еда"_ru, "(...пусто...)"_ru})
    AddAuthor(tree, authors, author);
  tree.SortChildren(authors);
  EXPECT_THAT(ChildTexts(tree, authors), ElementsAre("(...пусто...)", "1st", "zed", "еда", "Ель", "Ёж", "яна"));
  AddAuthor(tree, authors, "Жук"_ru);
  AddAuthor(tree, authors, "!"_ru);
  EXPECT_THAT(ChildTexts(tree, authors),
              ElementsAre("!", "(...пусто...)", "1st", "zed", "еда", "Ель", "Ёж", "Жук", "яна"));
}

TEST(NodeTree, ASharedTextSurvivesTheNodesThatGo) {
  NodeTree tree;
  const NodeId threads = AddTop(tree, NodeKind::kThreads);
  const NodeLabel shared = tree.AddLabel(1, "shared");
  const NodeId first = tree.Add(threads, Placement::kLastChild, NodeKind::kThreadMessage, shared);
  const NodeId second = tree.Add(threads, Placement::kLastChild, NodeKind::kDateMessage, shared);
  tree.Remove(first);
  EXPECT_EQ(tree.Text(second), "shared");
  EXPECT_EQ(tree.Find(NodeKind::kThreadMessage, 1), kNoNode);
  EXPECT_EQ(tree.Find(NodeKind::kDateMessage, 1), second);
}

/// The same operations on the plainest tree that can do them.
struct NaiveTree {
  struct Node {
    std::int32_t parent = 0;
    std::vector<std::int32_t> children;
  };
  std::map<std::int32_t, Node> nodes{{0, {}}};  // by message number; 0 is the top

  void Add(std::int32_t parent, Placement placement, std::int32_t number) {
    nodes[number].parent = parent;
    auto& children = nodes[parent].children;
    children.insert(placement == Placement::kFirstChild ? children.begin() : children.end(), number);
  }
  void Remove(std::int32_t number) {
    std::erase(nodes[nodes[number].parent].children, number);
    Forget(number);
  }
  void Forget(std::int32_t number) {
    for (const std::int32_t child : nodes[number].children) Forget(child);
    nodes.erase(number);
  }
};

void ExpectSame(const NodeTree& tree, const std::vector<std::int32_t>& dated, NodeId day) {
  ASSERT_EQ(tree.ChildCount(day), dated.size());
  for (std::size_t row = 0; row < dated.size(); ++row) {
    const NodeId message = tree.Find(NodeKind::kDateMessage, dated[row]);
    ASSERT_EQ(tree.Child(day, row), message) << dated[row];
    ASSERT_EQ(tree.Row(message), row);
    ASSERT_EQ(tree.Text(message), std::to_string(dated[row]));
  }
}

void ExpectSame(const NodeTree& tree, const NaiveTree& naive, NodeId top) {
  for (const auto& [number, node] : naive.nodes) {
    const NodeId id = number == 0 ? top : tree.Find(NodeKind::kThreadMessage, number);
    ASSERT_NE(id, kNoNode) << number;
    ASSERT_EQ(tree.ChildCount(id), node.children.size()) << number;
    for (std::size_t row = 0; row < node.children.size(); ++row) {
      const NodeId child = tree.Child(id, row);
      ASSERT_EQ(tree.Number(child), node.children[row]);
      ASSERT_EQ(tree.Row(child), row);
      ASSERT_EQ(tree.Parent(child), id);
      ASSERT_EQ(tree.Text(child), std::to_string(tree.Number(child)));
    }
  }
}

TEST(NodeTree, BehavesLikeAPlainTreeWhateverIsDoneToIt) {
  std::mt19937 random(7);
  const auto upto = [&](std::size_t n) { return std::uniform_int_distribution<std::size_t>(0, n)(random); };
  NodeTree tree;
  NaiveTree naive;
  const NodeId top = AddTop(tree, NodeKind::kThreads), day = AddTop(tree, NodeKind::kDates);
  std::vector<std::int32_t> numbers{0}, dated;
  for (int step = 0; step < 4'000; ++step) {
    const std::int32_t picked = numbers[upto(numbers.size() - 1)];
    const auto number = static_cast<std::int32_t>(upto(30'000) * 131'072);  // alike in their low bits
    if (picked != 0 && upto(20) == 0) {
      tree.Remove(tree.Find(NodeKind::kThreadMessage, picked));
      naive.Remove(picked);
      std::erase_if(numbers, [&](std::int32_t n) { return !naive.nodes.contains(n); });
    } else if (!dated.empty() && upto(10) == 0) {
      const auto gone = dated.begin() + static_cast<std::ptrdiff_t>(upto(dated.size() - 1));
      tree.Remove(tree.Find(NodeKind::kDateMessage, *gone));
      dated.erase(gone);
    } else if (!naive.nodes.contains(number)) {
      const NodeId parent = picked == 0 ? top : tree.Find(NodeKind::kThreadMessage, picked);
      const Placement placement = upto(1) == 0 ? Placement::kFirstChild : Placement::kLastChild;
      const NodeLabel label = tree.AddLabel(number, std::to_string(number));
      tree.Add(parent, placement, NodeKind::kThreadMessage, label);
      naive.Add(picked, placement, number);
      if (tree.Find(NodeKind::kDateMessage, number) == kNoNode) {
        tree.Add(day, Placement::kLastChild, NodeKind::kDateMessage, label);
        dated.push_back(number);
      }
      numbers.push_back(number);
    }
    if (step % 250 == 249) {
      if (step % 500 == 249) tree.ShrinkToFit();
      ASSERT_NO_FATAL_FAILURE(ExpectSame(tree, naive, top)) << step;
      ASSERT_NO_FATAL_FAILURE(ExpectSame(tree, dated, day)) << step;
    }
  }
}

}  // namespace
