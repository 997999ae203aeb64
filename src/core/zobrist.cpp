// Key drawing in a fixed order, so that keys are the same in every run.
#include "core/zobrist.h"

#include "core/prng.h"
#include "core/psqt.h"

namespace Zobrist {
Key pieceKeys[2][PieceTypeNb][64];
Key sideKey;
Key exclusionKey;
Key captiveKeys[65];
Key towerKeys[65];
}  // namespace Zobrist

void initPsqAndKeys() {
  using namespace Zobrist;
  Prng rng(KeyWarmupRounds);
  for (int c = 0; c < 2; ++c)
    for (int t = 0; t < PieceTypeNb; ++t)
      for (int s = 0; s < 64; ++s) pieceKeys[c][t][s] = rng.next();
  sideKey = rng.next();
  exclusionKey = rng.next();
  for (int i = 0; i < 65; ++i) {
    captiveKeys[i] = rng.next();
    rng.next();  // the spare member of each pair
  }
  for (int i = 0; i < 65; ++i) towerKeys[i] = rng.next();
  refreshAllPsq();
}
