// Perft speed from the start position of every game type: leaf nodes per second on one core.
#include <benchmark/benchmark.h>

#include "bench_start.h"

#include <iostream>
#include <sstream>

#include "frontend/bench.h"
#include "game/piece_values.h"
#include "game/position.h"
#include "game/rules.h"

namespace {

void BM_PerftStart(benchmark::State& state) {
  initOnce();
  const int type = int(state.range(0));
  const int plies = int(state.range(1));
  setSiegeModes(type);
  Position pos;
  pos.set(gameTypeTable[type].startFen, nullptr);
  setPieceValues(pos);
  uint64_t leaves = 0;
  for (auto _ : state) leaves += perft(pos, 2 * plies);
  state.counters["leaves/s"] = benchmark::Counter(double(leaves), benchmark::Counter::kIsRate);
  state.SetLabel(gameTypeTable[type].name);
  setSiegeModes(DefaultGameType);
}
BENCHMARK(BM_PerftStart)
    ->ArgsProduct({{0, 1, 2, 3, 4}, {4}})
    ->Unit(benchmark::kMillisecond)
    ->MinTime(2.0);

}  // namespace
