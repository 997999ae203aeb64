// The time budget of a search under a clock: an optimum to aim at and a maximum never to pass.
#pragma once

#include "core/relaxed.h"
#include "search/search_limits.h"

struct TimeManager {
  // Sets both budgets from the side to move's clock, increment and moves to go; `currentPly` is
  // the root's game ply plus its plies since the last null move.
  void init(const GoLimits& limits, int currentPly, bool whiteToMove);

  // Written by the main search thread, read by the timer: an old value delays a stop by one tick
  // at most. The extra time rises while the best move keeps changing.
  Relaxed<int> optimumTime = 0;
  Relaxed<int> maximumTime = 0;
  Relaxed<int> unstablePvExtraTime = 0;
};

extern TimeManager TimeMgr;

// The weight of the move at a game ply in the rest of the game.
int moveImportance(int ply);
// The share of the remaining time `R` that this move gets with `movesToGo` own moves left.
int remainingTime(int R, int movesToGo, int ply, int slowMover, float maxRatio, float stealRatio);

// The timer's look at the clock on each tick: sets the stop signal when a limit is reached.
void checkTime();
