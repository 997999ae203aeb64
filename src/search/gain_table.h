// The largest rise of the static value seen after a quiet move, by moving piece and destination.
#pragma once

#include <atomic>

#include "core/types.h"

// Shared by every search thread without a lock, like the history table: relaxed atomic cells, so a
// racing update may be lost, which only blunts futility pruning a little.
class GainTable {
 public:
  Value get(Piece pc, Square to) const { return cells[pc][to].load(std::memory_order_relaxed); }
  // Learns a gain seen now; an old maximum fades by 1 per visit so that stale peaks wear off.
  void update(Piece pc, Square to, Value gain) {
    Value faded = get(pc, to) - 1;
    cells[pc][to].store(gain > faded ? gain : faded, std::memory_order_relaxed);
  }
  void clear();

 private:
  std::atomic<Value> cells[PieceSlots][64];
};

extern GainTable maxGain;
