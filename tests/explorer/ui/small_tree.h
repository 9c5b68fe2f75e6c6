#pragma once

#include <utility>
#include <vector>

#include "base/progress.h"
#include "explorer/row_list.h"
#include "explorer/tree_builder.h"
#include "explorer/ui/message_tree.h"
#include "explorer/ui/tree_model.h"
#include "support/fixed_clock.h"

/// All three groupings of some messages of 15 March 2002.
/// @param now  when they are seen; else on that day, when all are new
inline NodeTree TreeOf(std::vector<ListRow> list, user_settings::OpenThreads open = user_settings::OpenThreads::kNo,
                       OleDate now = OleDate{37330.5}) {
  struct : TreeTrouble {
    void Tell(std::string_view) override {}
  } trouble;
  for (ListRow& row : list) row.Дата = OleDate{37330.25};
  RowList rows(std::move(list));
  NoProgress progress;
  const user_settings::TreeSettings settings{.BuildTreeByDate = true, .BuildTreeByAuthor = true, .open_threads = open};
  return BuildTree(rows, settings, FixedClock(now), progress, trouble).tree;
}

/// Messages from 1 to `length`, each the answer to the one before.
inline std::vector<ListRow> Chain(std::int32_t length) {
  std::vector<ListRow> chain;
  for (std::int32_t number = 1; number <= length; ++number) chain.push_back({number, number - 1});
  return chain;
}

/// A tree on the screen.
struct ShownTree {
  ShownTree() {
    view.setModel(&model);
    view.resize(400, 300);
    view.show();
  }
  QModelIndex Of(NodeKind kind, int number = 0) const { return model.IndexOf(model.Tree().Find(kind, number)); }

  TreeModel model;
  MessageTree view;  // goes before the model
};
