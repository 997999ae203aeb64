// A single-threaded fixed-depth search of one position, without the time keeping, book and report
// of a real search, so that tests can look at the node search alone.
#pragma once

#include <algorithm>
#include <cstring>

#include "eval/trade_bonus.h"
#include "movegen/movegen.h"
#include "search/gain_table.h"
#include "search/history.h"
#include "search/root_search.h"
#include "search/search.h"
#include "search/thread.h"
#include "search/transposition_table.h"

struct FixedDepthResult {
  Move move = MoveNone;
  Value score = -ValueInfinite;
  uint64_t nodes = 0;
};

// The owner of the searched position's tables; never started, so nothing else runs on it.
inline Thread& testSearchThread() {
  static Thread thread;
  return thread;
}

// Iterates full-window root searches up to `plies`, from a cleared table and cleared history.
inline FixedDepthResult searchFixedDepth(const Position& from, int plies) {
  if (currentTable->clusterCount() == 0) currentTable->setSize(16);
  currentTable->clear();
  currentTable->newSearch();
  history.clear();
  maxGain.clear();
  Signals.stop = false;

  Position pos(from, &testSearchThread());
  setTradeBonusRoot(pos);
  drawValue[pos.side()] = 0;
  drawValue[~pos.side()] = 0;

  RootMoves.clear();
  ScoredMove list[MaxMoves];
  for (ScoredMove *sm = list, *end = generateLegal(pos, list); sm != end; ++sm) RootMoves.emplace_back(sm->move);
  pvIndex = 0;
  FixedDepthResult result;
  if (RootMoves.empty()) return result;

  static SearchStack stack[104];
  std::memset(static_cast<void*>(stack), 0, sizeof stack);
  SearchStack* ss = stack + 1;
  (ss - 1)->currentMove = MoveNull;

  // The searching thread is no member of the pool: it must never split.
  const Depth splitDepth = Threads.minimumSplitDepth;
  Threads.minimumSplitDepth = 1000;
  for (int depth = 1; depth <= plies; ++depth) {
    for (RootMove& rm : RootMoves) rm.prevScore = rm.score;
    result.score = searchRoot(pos, ss, -ValueInfinite, ValueInfinite, 2 * depth);
    std::stable_sort(RootMoves.begin(), RootMoves.end(), higherScore);
    RootMoves[0].insertPvInTable(pos);
  }
  Threads.minimumSplitDepth = splitDepth;
  result.move = RootMoves[0].pv[0];
  result.nodes = pos.nodes;
  return result;
}
