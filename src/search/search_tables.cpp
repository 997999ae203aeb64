// Reductions, futility margins and futility move counts, filled once at start-up.
#include "search/search_tables.h"

#include <cmath>

uint8_t ReductionsNonPV[64][64];
uint8_t ReductionsPV[64][64];
int32_t FutilityMargins[16][64];
int FutilityMoveCounts[32];

namespace {

// A reduction below one ply is none at all; above, it counts in half plies.
uint8_t halfPlies(double v) { return v >= 1.0 ? uint8_t(std::floor(2 * v)) : 0; }

}  // namespace

void initSearch() {
  for (int x = 1; x < 64; ++x)
    for (int y = 1; y < 64; ++y) {
      double l = std::log(double(x)) * std::log(double(y));
      ReductionsNonPV[x][y] = halfPlies(l / 2.25 + 0.33);
      ReductionsPV[x][y] = halfPlies(l / 3.0);
    }
  for (int d = 1; d < 16; ++d) {
    int steps = int(std::log2(d * d / 2.0) + 1.001);
    for (int m = 0; m < 64; ++m) FutilityMargins[d][m] = 112 * steps + 45 - 8 * m;
  }
  for (int d = 0; d < 32; ++d) FutilityMoveCounts[d] = int(d * d * 0.25 + 3.001);
}
