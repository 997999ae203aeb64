// Where the captives stand and what may be done with them: the predicates the rules and the generators share.
#pragma once

#include "game/position.h"

// A captive is in its tower while its square is unknown or holds no piece.
inline bool siege1CaptiveInTower(const Position& pos) {
  Square s = pos.siege1CaptiveSquare;
  return s == NoSquare || pos.empty(s);
}
inline bool siege2CaptiveInPlay(const Position& pos, Color c) {
  return pos.siege2CaptiveAlive[c] && !pos.siege2CaptiveReleased[c];
}
inline bool siege2CaptiveInTower(const Position& pos, Color c) {
  Square s = pos.siege2CaptiveSquare[c];
  return s == NoSquare || pos.empty(s);
}
inline bool canPickupSiege1(const Position& pos) { return pos.siege1Breached && siege1CaptiveInTower(pos); }
inline bool canPickupSiege2(const Position& pos, Color c) {
  return pos.siege2Breached[c] && siege2CaptiveInTower(pos, c) && siege2CaptiveInPlay(pos, c);
}
// The piece on s carries a captive that is still in play.
inline bool carriesLive(const Position& pos, Square s) {
  return (pos.siege2CaptiveSquare[WHITE] == s && siege2CaptiveInPlay(pos, WHITE)) ||
         (pos.siege2CaptiveSquare[BLACK] == s && siege2CaptiveInPlay(pos, BLACK));
}
// Arriving on s picks a captive up in Siege 2: one stands there, or s is a breach of a tower whose
// captive is still inside.
inline bool siege2PickupSquare(const Position& pos, Square s) {
  for (Color c : {WHITE, BLACK})
    if (siege2CaptiveInPlay(pos, c) &&
        (pos.siege2CaptiveSquare[c] == s ||
         (((pos.siege2Breached[c] >> s) & 1) && siege2CaptiveInTower(pos, c))))
      return true;
  return false;
}
