#include <benchmark/benchmark.h>
#include <malloc.h>

#include "tree_rows.h"

namespace {

double AllocatedBytes() {
  const auto info = mallinfo2();
  return static_cast<double>(info.uordblks + info.hblkhd);
}

void BuildThreeGroupings(benchmark::State& state) {
  const auto messages = static_cast<std::int32_t>(state.range(0));
  MadeUpRows rows(messages);
  {
    const double before = AllocatedBytes();
    const NodeTree tree = BuildFrom(rows, kEverything);
    state.counters["bytes/message"] = (AllocatedBytes() - before) / messages;
  }
  for (auto _ : state) benchmark::DoNotOptimize(BuildFrom(rows, kEverything));
  state.SetItemsProcessed(state.iterations() * messages);
}
// The items per second of ten times the messages tell whether the time is linear.
BENCHMARK(BuildThreeGroupings)->Arg(20'000)->Arg(200'000)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
