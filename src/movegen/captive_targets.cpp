// The squares the siege rules add to one piece's moves: pick-up, win and drop-off squares that go
// to the captures list, and the own neighbours to which a carrier may hand the captive.
#include "movegen/move_sets.h"

using namespace movegen;

namespace {

// The neighbours that may take the captive over from a carrier on `from`.
Bitboard handoverSquares(const Position& pos, Square from) {
  return siegeExchanges ? pos.pieces(pos.side()) & reach[NeighbourRow][from] : 0;
}

// Siege 2: entering an empty breach of a tower whose captive waits inside. The own tower is taken
// when the piece reaches it; only then the enemy's. `color` is the tower that gave the set.
Bitboard siege2Pickups(const Position& pos, Bitboard reachSet, Color& color) {
  Color us = pos.side(), them = ~us;
  Bitboard ownBreach = reachSet & pos.siege2Breached[us] & ~pos.pieces();
  color = us;
  if (canPickupSiege2(pos, us) && ownBreach) return ownBreach;
  if (!canPickupSiege2(pos, them)) return 0;
  color = them;
  return reachSet & pos.siege2Breached[them] & ~pos.pieces();
}

// Siege 2: the colour whose captive lies on `from`, the side to move first; -1 for none.
int siege2CaptiveOn(const Position& pos, Square from) {
  Color us = pos.side();
  if (pos.siege2CaptiveSquare[us] == from) return us;
  if (pos.siege2CaptiveSquare[~us] == from) return ~us;
  return -1;
}

// Where a carrier may go: its win or drop-off squares among `allowed`. A Magician form only steps
// onto empty squares; the Sword forms leave the mounts alone unless the rule allows it.
Bitboard carrierSquares(const Position& pos, PieceType pt, Bitboard reachSet, Bitboard allowed) {
  if (isMagicianForm(pt)) return reachSet & ~pos.pieces() & allowed;
  Color us = pos.side();
  Bitboard b = reachSet & ~pos.pieces(us) & allowed;
  if ((pt == Sword || pt == Dorn_sword) && !swordsCaptureMounts) b &= ~(pos.pieces(~us) & mountSquares(pos));
  return b;
}

void siege1Targets(const Position& pos, Square from, Bitboard reachSet, CaptiveTargets& t) {
  Color us = pos.side();
  if (from == pos.siege1CaptiveSquare) {
    t.captiveExtras = carrierSquares(pos, typeOf(pos.pieceOn(from)), reachSet, goalSquares[us]);
    t.siegeExchangeTargets = handoverSquares(pos, from);
  } else if (canPickupSiege1(pos)) {
    t.captiveExtras = reachSet & pos.siege1Breached & ~pos.pieces();
  }
}

void siege2Targets(const Position& pos, Square from, Bitboard reachSet, CaptiveTargets& t) {
  Color us = pos.side();
  PieceType pt = typeOf(pos.pieceOn(from));
  int c = siege2CaptiveOn(pos, from);
  // The leader has no drop-off case and, not carrying, looks for pick-ups even on a captive's square.
  bool leader = isDornForm(pt);
  if (!leader && c >= 0 && pos.onDropoff(Color(c), from) && pos.noDorn(Color(c))) {
    t.captiveExtras = carrierSquares(pos, pt, reachSet, ~pos.standingTowers());
    t.dropoffOnly = true;
    return;
  }
  if (leader ? !carriesLive(pos, from) : c < 0) {
    t.captiveExtras = siege2Pickups(pos, reachSet, t.breachColor);
    return;
  }
  if (carriesLive(pos, from) && !(goalSquares[us] & bit(from))) t.siegeExchangeTargets = handoverSquares(pos, from);
}

}  // namespace

CaptiveTargets captiveTargets(const Position& pos, Square from, Bitboard reachSet) {
  CaptiveTargets t;
  t.breachColor = pos.side();
  if (siege1) siege1Targets(pos, from, reachSet, t);
  else if (siege2) siege2Targets(pos, from, reachSet, t);
  return t;
}

Bitboard leaderEvasionExtras(const Position& pos, Square from, Bitboard attacks) {
  if (siege1) return captiveTargets(pos, from, attacks).captiveExtras;
  if (!siege2 || carriesLive(pos, from)) return 0;
  Color unused;
  return siege2Pickups(pos, attacks, unused);
}
