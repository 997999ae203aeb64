// Every position read from a command, a file or the host passes here before anything uses it.
#include "frontend/position_intake.h"

#include <iostream>

#include "core/bitboard.h"
#include "game/attack_queries.h"
#include "game/position.h"
#include "game/rules.h"

namespace {

// A side starts with 14 pieces and gains no more than a released Dorn; the move lists hold what so
// many pieces can do, and a board crowded beyond that would overrun them.
constexpr int MaxPiecesPerSide = 15;

// A captive that no piece carries lies in a tower: on no square at all, or on one of the tower squares.
bool placelessCaptive(const Position& pos, Square s, Bitboard towers) {
  return s != NoSquare && pos.empty(s) && !((towers >> s) & 1);
}

// Why no game reaches the position, or null when a game may.
const char* unreachableBecause(const Position& pos) {
  for (Color c : {WHITE, BLACK})
    if (popcount(pos.pieces(c)) > MaxPiecesPerSide) return "a side has more than 15 pieces";
  // do_move would have to take the leader; the game could not go on.
  if (canTakeEnemyLeader(pos)) return "the side to move can capture the enemy leader";
  // A tower is no piece and shares no square with one: a piece that steps on it dies there.
  if (pos.pieces() & pos.standingTowers()) return "a piece stands on a standing tower square";
  // Breaches open a tower, and a captive waits in one; elsewhere a piece would take it up from afar.
  const Bitboard siege2Towers = siege2TowerSquares[WHITE] | siege2TowerSquares[BLACK];
  if (siege1 && ((pos.siege1Breached & ~siege1TowerSquares) ||
                 placelessCaptive(pos, pos.siege1CaptiveSquare, siege1TowerSquares)))
    return "the captive or a breach lies outside the tower";
  for (Color c : {WHITE, BLACK})
    if (siege2 && ((pos.siege2Breached[c] & ~siege2TowerSquares[c]) ||
                   placelessCaptive(pos, pos.siege2CaptiveSquare[c], siege2Towers)))
      return "the captive or a breach lies outside the tower";
  return nullptr;
}

}  // namespace

Intake takePosition(Position& pos, const std::string& fen) {
  // The reader writes the process-wide geometry as it goes; a refusal must not leave it behind.
  const SiegeGeometry geometry = currentSiegeGeometry();
  Position fresh;
  Intake verdict = Intake::Taken;
  if (!fresh.set(fen, pos.thisThread)) {
    verdict = Intake::Unreadable;
  } else if (const char* reason = unreachableBecause(fresh)) {
    std::cout << "Illegal position: " << reason << "\n";
    verdict = Intake::Unreachable;
  }
  if (verdict == Intake::Taken) pos = fresh;
  else restoreSiegeGeometry(geometry);
  return verdict;
}
