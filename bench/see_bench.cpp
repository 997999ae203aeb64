// Speed of the exchange evaluation and of the move picker over positions from random games.
#include <benchmark/benchmark.h>

#include <deque>
#include <random>
#include <vector>

#include "game/piece_values.h"
#include "movegen/movegen.h"
#include "search/move_picker.h"
#include "search/engine_start.h"
#include "search/see.h"

namespace {

// Positions of random games of one game type, each with the state record it points at.
struct Sample {
  std::deque<StateInfo> states;
  std::vector<Position> positions;
};

const Sample& sample(int type) {
  static std::vector<Sample> samples = [] {
    initEngineTables();
    std::vector<Sample> all(GameTypeCount);
    std::mt19937 rng(11);
    for (int t = 0; t < GameTypeCount; ++t) {
      setSiegeModes(t);
      for (int game = 0; game < 8; ++game) {
        Position pos;
        pos.set(gameTypeTable[t].startFen, nullptr);
        setPieceValues(pos);
        for (int ply = 0; ply < 100; ++ply) {
          ScoredMove list[MaxMoves];
          ScoredMove* end = generateLegal(pos, list);
          if (end == list) break;
          all[t].positions.push_back(pos);
          pos.do_move(list[rng() % (end - list)].move, all[t].states.emplace_back());
        }
      }
    }
    return all;
  }();
  setSiegeModes(type);
  return samples[type];
}

// One see call per pseudo-legal word of every position.
void BM_See(benchmark::State& state) {
  std::vector<Position> positions = sample(int(state.range(0))).positions;
  int64_t calls = 0;
  for (auto _ : state)
    for (Position& pos : positions) {
      ScoredMove list[MaxMoves];
      ScoredMove* end = pos.inCheck() ? generateEvasions(pos, list) : generateNonEvasions(pos, list);
      for (ScoredMove* sm = list; sm != end; ++sm) benchmark::DoNotOptimize(see(pos, sm->move));
      calls += end - list;
    }
  state.counters["calls/s"] = benchmark::Counter(double(calls), benchmark::Counter::kIsRate);
  state.SetLabel(gameTypeTable[state.range(0)].name);
}
BENCHMARK(BM_See)->DenseRange(0, GameTypeCount - 1)->Unit(benchmark::kMillisecond);

// A main-search picker drained to the end in every position.
void BM_MovePicker(benchmark::State& state) {
  std::vector<Position> positions = sample(int(state.range(0))).positions;
  SearchStack ss{};
  int64_t moves = 0;
  for (auto _ : state)
    for (Position& pos : positions) {
      MovePicker picker(pos, MoveNone, 8, &ss, 0);
      for (Move m; (m = picker.nextMove()) != MoveNone; ++moves) benchmark::DoNotOptimize(m);
    }
  state.counters["moves/s"] = benchmark::Counter(double(moves), benchmark::Counter::kIsRate);
  state.SetLabel(gameTypeTable[state.range(0)].name);
}
BENCHMARK(BM_MovePicker)->DenseRange(0, GameTypeCount - 1)->Unit(benchmark::kMillisecond);

}  // namespace
