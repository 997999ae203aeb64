// The gain table of the search.
#include "search/gain_table.h"

GainTable maxGain;

void GainTable::clear() {
  for (auto& row : cells)
    for (auto& cell : row) cell.store(0, std::memory_order_relaxed);
}
