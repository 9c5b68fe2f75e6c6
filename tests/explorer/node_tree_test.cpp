#include "explorer/node_tree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <vector>

#include "base/ru_literal.h"
#include "support/error_of.h"
#include "tree_text.h"

namespace {

NodeId AddTop(NodeTree& tree, NodeKind kind) { return tree.Add(kRootNode, Placement::kLastChild, kind, 0, ""); }

NodeId AddAuthor(NodeTree& tree, NodeId parent, std::string_view author) {
  return tree.Add(parent, Placement::kLastChild, NodeKind::kAuthor, 0, author);
}

TEST(NodeTree, RefusesASecondNodeOfOneKeyAndAnUnknownRelative) {
  NodeTree tree;
  const NodeId threads = AddTop(tree, NodeKind::kThreads);
  const auto error_of = [&](NodeId parent, std::int32_t number) {
    return ErrorOf([&] { tree.Add(parent, Placement::kLastChild, NodeKind::kThreadMessage, number, ""); });
  };
  EXPECT_EQ(error_of(threads, 1), 0);
  AddAuthor(tree, threads, "Ivan");
  AddAuthor(tree, threads, "IVAN");  // letter case tells keys apart
  const NodeId dated = tree.Add(threads, Placement::kLastChild, NodeKind::kDateMessage, 1, "");
  EXPECT_EQ(error_of(threads, 1), error_number::kNodeExists);
  EXPECT_EQ(ErrorOf([&] { AddAuthor(tree, threads, "Ivan"); }), error_number::kNodeExists);
  for (const NodeId none : {kNoNode, dated}) EXPECT_EQ(error_of(none, 2), error_number::kNoSuchNode);
  EXPECT_EQ(TreeText(tree), "Цепочка\n  C0000001\n  WIvan\n  WIVAN\n  D0000001\n");
}

TEST(NodeTree, KeepsSortedChildrenSorted) {
  NodeTree tree;
  const NodeId authors = AddTop(tree, NodeKind::kAuthors);
  for (const auto author : {"яна"_ru, "Ёж"_ru, "zed"_ru, "Ель"_ru, "1st"_ru, "еда"_ru, "(...пусто...)"_ru})
    AddAuthor(tree, authors, author);
  tree.SortChildren(authors);
  EXPECT_EQ(TreeText(tree, authors), "W(...пусто...)\nW1st\nWzed\nWеда\nWЕль\nWЁж\nWяна\n");
  AddAuthor(tree, authors, "Жук"_ru);
  AddAuthor(tree, authors, "!"_ru);
  EXPECT_EQ(TreeText(tree, authors), "W!\nW(...пусто...)\nW1st\nWzed\nWеда\nWЕль\nWЁж\nWЖук\nWяна\n");
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

void ExpectChildren(const NodeTree& tree, NodeId parent, NodeKind kind, const std::vector<std::int32_t>& numbers) {
  ASSERT_EQ(tree.ChildCount(parent), numbers.size());
  for (std::size_t row = 0; row < numbers.size(); ++row) {
    const NodeId child = tree.Child(parent, row);
    ASSERT_EQ(child, tree.Find(kind, numbers[row])) << numbers[row];
    ASSERT_EQ(tree.Row(child), row);
    ASSERT_EQ(tree.Parent(child), parent);
    ASSERT_EQ(tree.Text(child), std::to_string(numbers[row]));
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
    const auto number = static_cast<std::int32_t>(upto(3'000) * 131'072);  // alike in their low bits
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
      ASSERT_NO_FATAL_FAILURE(ExpectChildren(tree, day, NodeKind::kDateMessage, dated)) << step;
      for (const auto& [number_shown, node] : naive.nodes) {
        const NodeId parent = number_shown == 0 ? top : tree.Find(NodeKind::kThreadMessage, number_shown);
        ASSERT_NO_FATAL_FAILURE(ExpectChildren(tree, parent, NodeKind::kThreadMessage, node.children)) << step;
      }
    }
  }
}

}  // namespace
