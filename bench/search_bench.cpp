// Nodes per second of a single-threaded fixed-depth search from the start of every game type.
#include <benchmark/benchmark.h>

#include "bench_start.h"

#include "../tests/search/fixed_depth_search.h"
#include "game/piece_values.h"

namespace {

// Argument: the game type's index. Each iteration searches the start position to 11 plies.
void BM_SearchStart(benchmark::State& state) {
  initOnce();
  const GameType& type = gameTypeTable[state.range(0)];
  setSiegeModes(type.number);
  Position pos;
  pos.set(type.startFen, nullptr);
  setPieceValues(pos);
  uint64_t nodes = 0;
  for (auto _ : state) nodes += searchFixedDepth(pos, 11).nodes;
  state.counters["nodes/s"] = benchmark::Counter(double(nodes), benchmark::Counter::kIsRate);
  state.SetLabel(type.name);
}
BENCHMARK(BM_SearchStart)->DenseRange(0, GameTypeCount - 1)->Unit(benchmark::kMillisecond);

}  // namespace
