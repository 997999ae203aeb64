// The search's record of one ply: the move under search, killers, reductions and the static value.
#pragma once

#include "core/types.h"

struct SplitPoint;

// Records of one thread's stack: a node at the deepest ply still writes two records ahead.
constexpr int SearchStackSize = 104;

// One record per ply, in an array owned by the thread that started the subtree. The array is
// entered at its second record, so that ss - 1 is valid at the root.
struct SearchStack {
  SplitPoint* sp;         // the split point in force, in the split forms of the search
  int ply;                // distance from the root
  Move currentMove;       // MoveNull during a null move
  Move excludedMove;      // left out in a singular search
  Move killers[2];        // quiet moves that caused cutoffs at this ply
  Depth reduction;        // in force for the current move
  Value eval;             // static value; ValueNone when in check
  Value evalMargin;
  bool skipNullMove;      // no null move or pruning by static value at this node
};
