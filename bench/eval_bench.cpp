// Evaluation speed: evaluate calls per second over positions from random games of every game type.
#include <benchmark/benchmark.h>

#include "bench_start.h"

#include <memory>
#include <random>
#include <vector>

#include "eval/eval_tables.h"
#include "eval/evaluate.h"
#include "game/game_end.h"
#include "game/piece_values.h"
#include "game/position.h"
#include "game/rules.h"
#include "movegen/movegen.h"

namespace {

// Every position of a few random games from the start of the game type, each with its own state
// record, as the search would hold them.
std::vector<Position> randomGamePositions(int gameType, EvalTables* tables) {
  setSiegeModes(gameType);
  std::mt19937 rng(4242u + unsigned(gameType));
  std::vector<Position> positions;
  for (int game = 0; game < 8; ++game) {
    Position pos;
    pos.set(gameTypeTable[gameType].startFen, tables);
    setPieceValues(pos);
    pos.set(gameTypeTable[gameType].startFen, tables);
    std::vector<StateInfo> states(120);
    for (int ply = 0; ply < 120; ++ply) {
      ScoredMove legal[MaxMoves];
      ScoredMove* end = generateLegal(pos, legal);
      if (end == legal) break;
      pos.do_move(legal[rng() % (end - legal)].move, states[ply]);
      if (!pos.inCheck()) positions.emplace_back(pos, tables);
    }
  }
  return positions;
}

void BM_Evaluate(benchmark::State& state) {
  initOnce();
  const int type = int(state.range(0));
  auto tables = std::make_unique<EvalTables>();
  const std::vector<Position> positions = randomGamePositions(type, tables.get());
  Value margin, sum = 0;
  for (auto _ : state)
    for (const Position& pos : positions) sum += evaluate(pos, margin);
  benchmark::DoNotOptimize(sum);
  state.counters["evals/s"] =
      benchmark::Counter(double(state.iterations()) * double(positions.size()), benchmark::Counter::kIsRate);
  state.SetLabel(gameTypeTable[type].name);
  setSiegeModes(DefaultGameType);
}
BENCHMARK(BM_Evaluate)->DenseRange(0, GameTypeCount - 1)->Unit(benchmark::kMicrosecond)->MinTime(1.0);

}  // namespace
