// How long a user waits for the tree, and what it costs: the rows of an archive, ready in memory, become a
// view with everything open and painted. The peer is a QTreeWidget that is handed the same nodes ready-made.
// Each case runs in a process of its own.

#include <QApplication>
#include <QHeaderView>
#include <QTreeView>
#include <QTreeWidget>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <memory>

#include <malloc.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include "explorer/ui/tree_expansion.h"
#include "explorer/ui/tree_model.h"
#include "tree_rows.h"
#include "ui/text.h"

namespace {

struct Cost {
  double build_seconds, seconds, bytes;
};

double Now() { return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count(); }

double ResidentBytes() {
  malloc_trim(0);
  std::ifstream statm("/proc/self/statm");
  double pages = 0, resident = 0;
  statm >> pages >> resident;
  return resident * static_cast<double>(sysconf(_SC_PAGESIZE));
}

void Prepare(QTreeView& view) {
  view.setHeaderHidden(true);
  view.setUniformRowHeights(true);
  view.header()->setResizeContentsPrecision(0);
  view.header()->setSectionResizeMode(QHeaderView::ResizeToContents);
  view.resize(800, 600);
}

void Paint(QTreeView& view) {
  view.show();
  QApplication::processEvents();
  view.viewport()->repaint();
}

/// What the first window of a program costs, fonts and pictures, is no part of the tree.
void WarmUp() {
  MadeUpRows rows(100);
  TreeModel model;
  QTreeView view;
  Prepare(view);
  view.setModel(&model);
  model.SetTree(BuildFrom(rows, kEverything));
  view.expandAll();
  Paint(view);
}

Cost MeasureModel(MadeUpRows& rows, const user_settings::TreeSettings& settings, bool open_groups) {
  TreeModel model;
  QTreeView view;
  Prepare(view);
  view.setModel(&model);
  TreeExpansion expansion(&view, &model);
  const double memory = ResidentBytes(), start = Now();
  NodeTree tree = BuildFrom(rows, settings);
  const double built = Now();
  model.SetTree(std::move(tree));
  if (open_groups)
    expansion.ExpandAll({});
  else
    view.expand(model.IndexOf(model.Tree().Find(NodeKind::kThreads)));
  Paint(view);
  const double end = Now();
  return {built - start, end - start, ResidentBytes() - memory};
}

void AddItems(QTreeWidgetItem* parent, const NodeTree& tree, NodeId node) {
  for (std::size_t row = 0; row < tree.ChildCount(node); ++row) {
    auto* item = new QTreeWidgetItem(parent, {FromCp1251(tree.Text(tree.Child(node, row)))});
    AddItems(item, tree, tree.Child(node, row));
  }
}

Cost MeasureWidget(MadeUpRows& rows) {
  auto tree = std::make_unique<NodeTree>(BuildFrom(rows, kEverything));
  QTreeWidget view;
  Prepare(view);
  const double memory = ResidentBytes(), start = Now();
  AddItems(view.invisibleRootItem(), *tree, kRootNode);
  const double built = Now();
  view.expandAll();
  Paint(view);
  const double end = Now();
  return {built - start, end - start, ResidentBytes() - memory};
}

Cost MeasureOnce(int messages, const auto& measure) {
  auto* cost =
      static_cast<Cost*>(mmap(nullptr, sizeof(Cost), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
  if (fork() == 0) {
    char name[] = "bench";
    char* arguments[] = {name, nullptr};
    int count = 1;
    const QApplication app(count, arguments);
    WarmUp();
    MadeUpRows rows(messages);
    *cost = measure(rows);
    _exit(0);
  }
  wait(nullptr);
  return *cost;
}

/// The fastest of some runs: what else the machine does only slows it down.
Cost Measure(int messages, const auto& measure) {
  constexpr int kRuns = 5;
  Cost best = MeasureOnce(messages, measure);
  for (int run = 1; run < kRuns; ++run) {
    const Cost cost = MeasureOnce(messages, measure);
    if (cost.seconds < best.seconds) best = cost;
  }
  return best;
}

void Print(const char* what, int messages, const Cost& cost) {
  std::printf("%7d messages, %-28s build %6.3f s, shown %6.3f s, %6.1f bytes a message\n", messages, what,
              cost.build_seconds, cost.seconds, cost.bytes / messages);
}

}  // namespace

int main() {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  double small = 0;
  for (const int messages : {20'000, 200'000}) {
    const Cost plain = Measure(messages, [](MadeUpRows& rows) { return MeasureModel(rows, kThreadsOnly, false); });
    const Cost threads = Measure(messages, [](MadeUpRows& rows) { return MeasureModel(rows, kEverything, false); });
    const Cost all = Measure(messages, [](MadeUpRows& rows) { return MeasureModel(rows, kEverything, true); });
    const Cost peer = Measure(messages, MeasureWidget);
    Print("threads alone, all open", messages, plain);
    Print("3 groupings, threads open", messages, threads);
    Print("3 groupings, all open", messages, all);
    Print("QTreeWidget, all open", messages, peer);
    std::printf("        against the peer: time %.2f, memory %.2f\n", all.seconds / peer.seconds,
                all.bytes / peer.bytes);
    if (small > 0) std::printf("        ten times the messages: %.1f times the time\n", all.seconds / small);
    small = all.seconds;
  }
}
