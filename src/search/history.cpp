// The process-wide history table.
#include "search/history.h"

#include <cstdlib>

HistoryTable history;

void HistoryTable::update(Piece pc, Square to, Value bonus) {
  std::atomic<Value>& cell = cells[pc][to];
  Value sum = cell.load(std::memory_order_relaxed) + bonus;
  if (std::abs(sum) < Limit) cell.store(sum, std::memory_order_relaxed);
}

void HistoryTable::clear() {
  for (auto& row : cells)
    for (auto& cell : row) cell.store(0, std::memory_order_relaxed);
}
