// Move lists of the side to move and the move-word builders they share.
#pragma once

#include <cstdint>

#include "game/captive_state.h"
#include "game/position.h"

// A list entry: the generators write the move, the move picker the score.
struct ScoredMove {
  Move move;
  int32_t score;
};

// The capacity of a move list. Fifteen pieces a side stay well below it: thirteen Bondsmen and a
// Dorn already give 212 moves, more than an earlier limit of 192 held.
constexpr int MaxMoves = 512;

// Each writes from `list` on and returns the end. None checks bounds.
ScoredMove* generateCaptures(const Position& pos, ScoredMove* list);     // material changes, pick-ups, base arrivals
ScoredMove* generateQuiets(const Position& pos, ScoredMove* list);       // the quiet moves
ScoredMove* generateNonEvasions(const Position& pos, ScoredMove* list);  // every pseudo-legal move when not in check
ScoredMove* generateLegal(const Position& pos, ScoredMove* list);        // the legal moves, in or out of check
int legalMoveCount(const Position& pos);

// Replies to check and quiet checks; they come with the evasion generator.
ScoredMove* generateEvasions(const Position& pos, ScoredMove* list);
ScoredMove* generateQuietChecks(const Position& pos, ScoredMove* list);

// ---------------------------------------------------------------- move words
// The word of each kind for one pair of squares, with the captive kind the position gives it.
Move makePromotionMove(const Position& pos, Square from, Square to);
Move makeDemotionMove(const Position& pos, Square from, Square to);
Move makeExchangeMove(const Position& pos, Square from, Square to);
// The word the move writer of the game mode would give for this pair.
Move makePlainMove(const Position& pos, Square from, Square to);

// Move writers of the siege modes: one word per square of `targets`, lowest square first.
ScoredMove* addMovesSiege1(const Position& pos, Square from, Bitboard targets, ScoredMove* list);
ScoredMove* addMovesSiege2(const Position& pos, Square from, Bitboard targets, ScoredMove* list);

// The sole leader may not step onto a standing tower square.
inline bool towerBarred(const Position& pos, Square from) {
  Color us = pos.side();
  return from == pos.leaderSquare(us) && pos.soleLeader(us);
}

// ---------------------------------------------------------------- captive moves
// What the siege rules add to one piece's working set. `reachSet` is the piece's reach A (the
// leader's before the tower bar), or the step set M of a Magician form. Outside the siege games
// all of it is empty.
struct CaptiveTargets {
  Bitboard captiveExtras = 0;         // pick-up, win and drop-off squares: captures list, empty or not
  Bitboard siegeExchangeTargets = 0;  // own neighbours that may take over the captive
  Color breachColor = WHITE;          // Magician forms in Siege 2: whose breached squares their captures list
  bool dropoffOnly = false;           // a carrier that must drop off: the quiets list loses its moves (a Magician
                                      // form keeps its steps there)
};
CaptiveTargets captiveTargets(const Position& pos, Square from, Bitboard reachSet);
// The sole leader's siege squares when it answers a check: its pick-ups and, carrying in Siege 1,
// its win squares; never a hand-over. `attacks` is its attack set before the tower bar.
Bitboard leaderEvasionExtras(const Position& pos, Square from, Bitboard attacks);

// The own carrier's threat record for the quiet checks: the squares from which it reaches its goal,
// and the own pieces that stand in the way of an own piece to a goal square.
struct SiegeThreatInfo {
  explicit SiegeThreatInfo(const Position& pos);
  bool active = false;
  Square carrier = NoSquare;               // the own piece the record is about
  Bitboard threatSquares[TypeSlots] = {};  // only the carrier's type is filled
  Bitboard revealers = 0;                  // Siege 1 only
};
