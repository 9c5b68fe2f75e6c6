#include "explorer/delete_messages.h"

#include <algorithm>
#include <cstdint>
#include <vector>

#include "base/cat.h"
#include "base/ru_literal.h"

namespace {

constexpr std::string_view kTitle = "Удаление сообщений из базы"_ru;
constexpr std::string_view kDeleteOne = "Удалить это сообщение ?"_ru;
constexpr std::string_view kRepliesWillBreak =
    "На это сообщение есть ответы.\r\nПосле удаления этого сообщения они появятся в ветке 'Оборванные цепочки'.\r\n"_ru;
constexpr std::string_view kDeleteAll = "Удалить это сообщение вместе со всеми ответами на него ?"_ru;

/// The numbers of a node and of all under it, every reply before what it answers, the first child
/// first. Without recursion: threads may be of any depth.
std::vector<std::int32_t> RepliesFirst(const NodeTree& tree, NodeId top) {
  std::vector<std::int32_t> numbers;
  std::vector<NodeId> waiting{top};
  while (!waiting.empty()) {  // from the back: each message, then its last child
    const NodeId node = waiting.back();
    waiting.pop_back();
    numbers.push_back(tree.Number(node));
    for (std::size_t row = 0; row < tree.ChildCount(node); ++row) waiting.push_back(tree.Child(node, row));
  }
  std::reverse(numbers.begin(), numbers.end());
  return numbers;
}

}  // namespace

bool CanDelete(const NodeTree& tree, NodeId node) { return tree.Kind(node) == NodeKind::kThreadMessage; }

bool CanDeleteWithReplies(const NodeTree& tree, NodeId node) {
  return CanDelete(tree, node) && tree.ChildCount(node) > 0;
}

void DeleteMessage(const NodeTree& tree, NodeId node, MessageEdits& edits, DeletionView& view) {
  const bool has_replies = tree.ChildCount(node) > 0;
  if (!view.AskOkCancel(kTitle, has_replies ? Cat(kRepliesWillBreak, kDeleteOne) : std::string(kDeleteOne))) return;
  const std::int32_t number = tree.Number(node);
  edits.Delete({&number, 1});
  view.RemoveNode(node);
  view.SetStatus(has_replies ? "Сообщение удалено. Все ответы на него появятся в ветке 'Оборванные цепочки'"_ru
                             : "Сообщение удалено."_ru);
}

void DeleteWithReplies(const NodeTree& tree, NodeId node, MessageEdits& edits, DeletionView& view) {
  if (!view.AskOkCancel(kTitle, kDeleteAll)) return;
  const std::vector<std::int32_t> numbers = RepliesFirst(tree, node);
  edits.Delete(numbers);
  view.RemoveNode(node);
  view.SetStatus(Cat("Удалено "_ru, numbers.size(), " сообщений"_ru));
}
