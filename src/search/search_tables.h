// Reductions, futility margins and futility move counts: tables the search reads at every node.
#pragma once

#include <cstdint>

#include "core/types.h"

// [depth / 2][move count], both capped at 63; in half plies.
extern uint8_t ReductionsNonPV[64][64];
extern uint8_t ReductionsPV[64][64];
// [depth][move count]: what a quiet move may still gain at a shallow depth.
extern int32_t FutilityMargins[16][64];
// [depth]: quiet moves tried at a shallow depth before the rest are dropped.
extern int FutilityMoveCounts[32];

// Fills the tables; once at start-up, before any search.
void initSearch();

// Beyond depth 13 no margin can prune.
inline Value futilityMargin(Depth d, int moveCount) {
  if (d >= 14) return 60002;
  return FutilityMargins[d < 1 ? 1 : d][moveCount < 63 ? moveCount : 63];
}
