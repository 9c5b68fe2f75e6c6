#include "export/thread_choice.h"

#include <string_view>
#include <utility>

#include "explorer/base_rows.h"
#include "explorer/tree_builder.h"

namespace {

/// A row that cannot be read has no node: the message chosen, if it is that one, will not be found.
class NoTrouble : public TreeTrouble {
 public:
  void Tell(std::string_view) override {}
};

}  // namespace

NodeId ThreadOf(const NodeTree& tree, std::int32_t number) {
  NodeId node = tree.Find(NodeKind::kThreadMessage, number);
  if (node == kNoNode) return kNoNode;
  while (tree.Kind(tree.Parent(node)) == NodeKind::kThreadMessage) node = tree.Parent(node);
  return node;
}

NodeTree WholeArchive(sql::Connection& connection, user_settings::TreeSettings settings, const Clock& clock) {
  settings.LoadDays = user_settings::kWholeArchive;
  settings.BuildTreeByThread = true;
  settings.BuildTreeByDate = settings.BuildTreeByAuthor = false;
  BaseRows rows(connection, settings);
  NoProgress progress;
  NoTrouble trouble;
  return std::move(BuildTree(rows, settings, clock, progress, trouble).tree);
}
