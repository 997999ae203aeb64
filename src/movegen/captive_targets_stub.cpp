// Stand-in for the captive extras and hand-over targets until the captive-move generator lands:
// siege pieces then list only their ordinary targets.
#include "movegen/movegen.h"

CaptiveTargets captiveTargets(const Position& pos, Square, Bitboard) {
  CaptiveTargets none;
  none.breachColor = pos.side();
  return none;
}
