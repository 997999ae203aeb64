// Move words with their captive kinds: the builders for one pair of squares and the siege writers.
#include <iostream>

#include "movegen/movegen.h"

namespace {

// Siege 1: the carrier's moves take the captive along; arriving on it, or on a breach while it is
// still inside, picks it up.
int siege1Kind(const Position& pos, Square from, Square to) {
  if (from == pos.siege1CaptiveSquare) return Transfer;
  if (to == pos.siege1CaptiveSquare || (((pos.siege1Breached >> to) & 1) && siege1CaptiveInTower(pos)))
    return Pickup;
  return 0;
}

// Siege 2: a carrier on its captive's drop-off square leaves it there; any other carrier takes it.
int siege2CarrierKind(const Position& pos, Square from) {
  return pos.onDropoff(WHITE, from) || pos.onDropoff(BLACK, from) ? Dropoff : Transfer;
}

int siege2Kind(const Position& pos, Square from, Square to) {
  if (carriesLive(pos, from)) return siege2CarrierKind(pos, from);
  return siege2PickupSquare(pos, to) ? Pickup : 0;
}

int captiveKindOf(const Position& pos, Square from, Square to) {
  return siege1 ? siege1Kind(pos, from, to) : siege2 ? siege2Kind(pos, from, to) : 0;
}

// Siege 1 marks a demotion or exchange landing on a breach while the captive is inside.
bool siege1BreachPickup(const Position& pos, Square to) {
  return ((pos.siege1Breached >> to) & 1) && siege1CaptiveInTower(pos);
}

// A breach is entered while the captive lies in its tower, so no piece may stand on the captive's
// square; one there is a fault of the state. The word is written all the same.
void checkInitialPickup(const Position& pos, Square captive, const char* colour) {
  if (captive == NoSquare || pos.empty(captive)) return;
  std::cout << pos.pretty(MoveNone, false, false) << "MoveGen: ?" << colour
            << "initial pickup condition with piece p=" << pos.pieceOn(captive) << " on to sq";
}

}  // namespace

Move makePromotionMove(const Position& pos, Square from, Square to) {
  return makeMove(from, to, Promotion | captiveKindOf(pos, from, to));
}

Move makeDemotionMove(const Position& pos, Square from, Square to) {
  return makeMove(from, to, Demotion | (siege1 && siege1BreachPickup(pos, to) ? Pickup : 0));
}

Move makeExchangeMove(const Position& pos, Square from, Square to) {
  bool pickup = siege1 && (to == pos.siege1CaptiveSquare || siege1BreachPickup(pos, to));
  return makeMove(from, to, Exchange | (pickup ? Pickup : 0));
}

Move makePlainMove(const Position& pos, Square from, Square to) {
  return makeMove(from, to, captiveKindOf(pos, from, to));
}

ScoredMove* addMovesSiege1(const Position& pos, Square from, Bitboard targets, ScoredMove* list) {
  Square captive = pos.siege1CaptiveSquare;
  if (from == captive) {
    while (targets) (list++)->move = makeMove(from, popLowest(targets), Transfer);
    return list;
  }
  while (targets) {
    Square to = popLowest(targets);
    int kind = siege1Kind(pos, from, to);
    if (kind == Pickup && to != captive) checkInitialPickup(pos, captive, "");
    (list++)->move = makeMove(from, to, kind);
  }
  return list;
}

ScoredMove* addMovesSiege2(const Position& pos, Square from, Bitboard targets, ScoredMove* list) {
  if (carriesLive(pos, from)) {
    int kind = siege2CarrierKind(pos, from);
    while (targets) (list++)->move = makeMove(from, popLowest(targets), kind);
    return list;
  }
  while (targets) {
    Square to = popLowest(targets);
    int kind = siege2PickupSquare(pos, to) ? Pickup : 0;
    if (kind && !carriesLive(pos, to)) {
      // Entering a breach of one of the towers.
      Color c = (pos.siege2Breached[WHITE] >> to) & 1 ? WHITE : BLACK;
      checkInitialPickup(pos, pos.siege2CaptiveSquare[c], c == WHITE ? "WHITE " : "BLACK ");
    }
    (list++)->move = makeMove(from, to, kind);
  }
  return list;
}
