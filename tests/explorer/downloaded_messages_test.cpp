#include "explorer/downloaded_messages.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "explorer/tree_text.h"

namespace {

/// Threads 30-31-32 and 10-11, 50 broken; all under one date too.
NodeTree SmallTree() {
  NodeTree tree;
  const auto top = [&](NodeKind kind) { return tree.Add(kRootNode, Placement::kLastChild, kind, 0, ""); };
  const NodeId threads = top(NodeKind::kThreads), broken = top(NodeKind::kBroken), dates = top(NodeKind::kDates);
  const auto add = [&](NodeId parent, std::int32_t number) {
    const NodeLabel label = tree.AddLabel(number, "m");
    tree.Add(dates, Placement::kLastChild, NodeKind::kDateMessage, label);
    return tree.Add(parent, Placement::kLastChild, NodeKind::kThreadMessage, label);
  };
  add(add(add(threads, 30), 31), 32);
  add(add(threads, 10), 11);
  add(broken, 50);
  return tree;
}

TEST(MarkDownloaded, OpensThreadsThatWentOnAndFindsTheFirstInTheTree) {
  const struct {
    std::vector<std::int32_t> numbers;
    std::int32_t first;  // 0: none
    const char* threads;
  } cases[] = {
      {{}, 0, "C0000030\n  C0000031\n    C0000032\nC0000010\n  C0000011\n"},
      {{99}, 0, "C0000030\n  C0000031\n    C0000032\nC0000010\n  C0000011\n"},
      {{11, 32}, 32, "C0000030 + *\n  C0000031 +\n    C0000032\nC0000010 + *\n  C0000011\n"},
      {{10, 11}, 10, "C0000030\n  C0000031\n    C0000032\nC0000010 *\n  C0000011\n"},  // wholly new: stays closed
      {{31, 32, 50}, 31, "C0000030 + *\n  C0000031\n    C0000032\nC0000010\n  C0000011\n"},
      {{50}, 50, "C0000030\n  C0000031\n    C0000032\nC0000010\n  C0000011\n"},
  };
  for (const auto& c : cases) {
    NodeTree tree = SmallTree();
    const NodeId first = MarkDownloaded(tree, c.numbers);
    EXPECT_EQ(first == kNoNode ? 0 : tree.Number(first), c.first);
    EXPECT_EQ(TreeText(tree, tree.Find(NodeKind::kThreads)), c.threads);
    EXPECT_EQ(TreeText(tree, tree.Find(NodeKind::kBroken)), "C0000050 !\n");
    for (const std::int32_t number : {30, 31, 32, 10, 11, 50})
      EXPECT_EQ(tree.IsNewMessage(tree.Find(NodeKind::kThreadMessage, number)),
                std::count(c.numbers.begin(), c.numbers.end(), number) == 1);
    tree.Remove(tree.Find(NodeKind::kThreads));
    tree.Remove(tree.Find(NodeKind::kBroken));
    EXPECT_EQ(MarkDownloaded(tree, {31}), tree.Find(NodeKind::kDateMessage, 31)) << "the dates alone show it";
  }
}

}  // namespace
