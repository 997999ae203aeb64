// Scores of quiet moves by moving piece and destination square, learnt from cutoffs.
#pragma once

#include <atomic>

#include "core/types.h"

// One table for the whole process, shared by every search thread without a lock. The cells are
// atomics read and written with relaxed order, so a concurrent update is no data race; a
// read-modify-write of two threads may still lose one of the two updates, which only blurs the
// move order a little and is accepted.
class HistoryTable {
 public:
  // A score reaches this size in neither direction: an update that would is dropped.
  static constexpr Value Limit = 2000;

  Value get(Piece pc, Square to) const { return cells[pc][to].load(std::memory_order_relaxed); }
  // Adds `bonus` (negative for a penalty) unless the sum would reach the limit.
  void update(Piece pc, Square to, Value bonus);
  void clear();

 private:
  std::atomic<Value> cells[PieceSlots][64];  // zero from the start (value-initialised atomics)
};

extern HistoryTable history;
